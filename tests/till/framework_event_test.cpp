#include "host/facilities/tr.h"
#include "host/framework/event.h"

#include <QSharedPointer>

#include <gtest/gtest.h>

namespace {

const QString text = QStringLiteral("text");

TEST(Event, EmptyEventHasACodeThatNobodyKnows)
{
    EXPECT_EQ(Event().getCode(), 0);
}

TEST(Event, KeepsItsCodeAndArguments)
{
    const Event event(EActivityListener::couponRefused, { { text, QVariant(5) } });

    EXPECT_EQ(event.getCode(), 127);
    EXPECT_TRUE(event.contains(text));
    EXPECT_EQ(event.value(text, QVariant(1)), QVariant(5));
}

TEST(Event, AbsentArgumentGivesTheDefault)
{
    const Event event(EActivityListener::processFinished);

    EXPECT_EQ(event.getCode(), 73);
    EXPECT_FALSE(event.contains(text));
    EXPECT_EQ(event.value(text, QVariant(1)), QVariant(1));
}

TEST(Event, ArgumentIsAddedOrReplaced)
{
    Event event(EActivityListener::couponRefused);
    Event& returned = event.addArgument(text, QVariant(5)).addArgument(text, QVariant(6));

    EXPECT_EQ(&returned, &event);
    EXPECT_EQ(event.value(text, QVariant()), QVariant(6));
}

TEST(Event, CopyIsIndependent)
{
    const Event event(EActivityListener::couponRefused, { { text, QVariant(5) } });
    Event copy(event);
    copy.addArgument(text, QVariant(6));

    EXPECT_EQ(event.value(text, QVariant()), QVariant(5));
}

TEST(Event, EqualsAnEventOfTheSameCodeAndArguments)
{
    const Event event(EActivityListener::couponRefused, { { text, QVariant(5) } });

    EXPECT_TRUE(event == Event(EActivityListener::couponRefused).addArgument(text, QVariant(5)));
    EXPECT_FALSE(event == Event(EActivityListener::processStarted, { { text, QVariant(5) } }));
    EXPECT_FALSE(event == Event(EActivityListener::couponRefused, { { text, QVariant(6) } }));
    EXPECT_FALSE(event == Event(EActivityListener::couponRefused, { { QStringLiteral("other"), QVariant(5) } }));
    EXPECT_FALSE(event == Event(EActivityListener::couponRefused));
    EXPECT_FALSE(Event(EActivityListener::couponRefused) == event);
}

TEST(Event, TextsAreComparedByTheirKeyAndWording)
{
    const auto event = [](const tr::Tr& argument) {
        return Event(EActivityListener::couponRefused, { { text, argument } });
    };
    const tr::Tr refused(QStringLiteral("couponRefused"), QStringLiteral("Купон отклонен"));

    EXPECT_TRUE(event(refused) == event(tr::Tr(QStringLiteral("couponRefused"), QStringLiteral("Купон отклонен"))));
    EXPECT_FALSE(event(refused) == event(tr::Tr(QStringLiteral("couponRefused"), QStringLiteral("Купон принят"))));
    EXPECT_FALSE(event(refused) == event(tr::Tr(QStringLiteral("otherKey"), QStringLiteral("Купон отклонен"))));
}

TEST(Event, ObjectsAreComparedByIdentity)
{
    const auto first = QVariant::fromValue(QSharedPointer<QObject>::create());
    const auto second = QVariant::fromValue(QSharedPointer<QObject>::create());

    EXPECT_TRUE(Event(EActivityListener::documentClosed, { { text, first } })
                == Event(EActivityListener::documentClosed, { { text, first } }));
    EXPECT_FALSE(Event(EActivityListener::documentClosed, { { text, first } })
                 == Event(EActivityListener::documentClosed, { { text, second } }));
}

}
