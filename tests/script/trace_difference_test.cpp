#include "till/script/trace.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using till::Trace;

// What counts as a difference between what was recorded and what was done again.

namespace {

[[nodiscard]] QJsonObject exchange(const QString& request, const QString& reply = u"<a/>"_s)
{
    return { { u"event"_s, u"exchange"_s }, { u"step"_s, 0 },           { u"action"_s, u"Accrual"_s },
             { u"request"_s, request },     { u"reply"_s, reply }, { u"milliseconds"_s, 5 } };
}

[[nodiscard]] Trace of(const QList<QJsonObject>& events)
{
    return { u"close\n"_s, {}, {}, events };
}

[[nodiscard]] std::string difference(const QList<QJsonObject>& recorded, const QList<QJsonObject>& repeated)
{
    return till::firstDifference(of(recorded), of(repeated)).join(u'|').toStdString();
}

} // namespace

TEST(TraceDifference, OrderOfAttributesIsNone)
{
    EXPECT_EQ(difference({ exchange(uR"(<C A="1" B="2" xmlns:x="u"/>)"_s) },
                         { exchange(uR"(<C xmlns:x="u" B="2" A="1"/>)"_s) }),
              "");
}

TEST(TraceDifference, ValueOfAnAttributeIsOne)
{
    EXPECT_EQ(difference({ exchange(uR"(<C A="1" B="2"/>)"_s) }, { exchange(uR"(<C A="1" B="3"/>)"_s) }),
              R"(0|exchange Accrual, request|recorded: <C A="1" B="2"/>|now:      <C A="1" B="3"/>)");
}

TEST(TraceDifference, TimesAndDurationsAreNone)
{
    QJsonObject slow = exchange(u"<C T=\"2026-11-21T12:00:01.5Z\"/>"_s);
    slow[u"milliseconds"_s] = 900;
    EXPECT_EQ(difference({ exchange(u"<C T=\"2026-11-21T11:00:00\"/>"_s) }, { slow }), "");
}

TEST(TraceDifference, OtherIdentityInTheSamePlacesIsNone)
{
    const QString first = u"<C U=\"4082DBA8-8FC4-5728-ABBE-68CA1E769E28\"/>"_s;
    const QString second = u"<C U=\"05995FDE-4ADD-5922-A380-ED3ACEE99466\"/>"_s;
    EXPECT_EQ(difference({ exchange(first), exchange(first) }, { exchange(second), exchange(second) }), "");
}

// A repeat under another identity would be a second cheque for the service.
TEST(TraceDifference, IdentityThatChangesOnTheWayIsOne)
{
    const QString first = u"<C U=\"4082DBA8-8FC4-5728-ABBE-68CA1E769E28\"/>"_s;
    const QString second = u"<C U=\"05995FDE-4ADD-5922-A380-ED3ACEE99466\"/>"_s;
    EXPECT_EQ(difference({ exchange(first), exchange(first) }, { exchange(first), exchange(second) }),
              "0|exchange Accrual, request|recorded: <C U=\"(identity 1)\"/>|now:      <C U=\"(identity 2)\"/>");
}

TEST(TraceDifference, SearchForAServerIsNone)
{
    QJsonObject search = exchange(u"<p/>"_s);
    search[u"event"_s] = u"search"_s;
    EXPECT_EQ(difference({ exchange(u"<a/>"_s) }, { search, exchange(u"<a/>"_s), search }), "");
}

TEST(TraceDifference, EventThatIsMissingIsOne)
{
    EXPECT_EQ(difference({ exchange(u"<a/>"_s), exchange(u"<b/>"_s) }, { exchange(u"<a/>"_s) }),
              "0|exchange Accrual|recorded, and not done now");
}

TEST(TraceDifference, EventThatIsNewIsOne)
{
    EXPECT_EQ(difference({ exchange(u"<a/>"_s) }, { exchange(u"<a/>"_s), exchange(u"<b/>"_s) }),
              "0|exchange Accrual|done now, and not recorded");
}

TEST(TraceDifference, WhatWasDoneBehindTheLastStepIsNone)
{
    QJsonObject later = exchange(u"<b/>"_s);
    later[u"step"_s] = 1;
    EXPECT_EQ(difference({ exchange(u"<a/>"_s) }, { exchange(u"<a/>"_s), later }), "");
}

TEST(TraceAnswers, GiveEachReplyOnceAndToItsStepAlone)
{
    QJsonObject first = exchange(u"<a/>"_s, u"<one/>"_s);
    first[u"status"_s] = 200;
    QJsonObject second = exchange(u"<a/>"_s, u"<two/>"_s);
    second[u"status"_s] = 500;
    QJsonObject later = exchange(u"<a/>"_s, u"<three/>"_s);
    later[u"step"_s] = 1;
    later[u"status"_s] = 200;
    till::TraceAnswers answers(of({ first, second, later }));

    const auto ask = [&answers] {
        till::ExchangeEvent event;
        event.action = u"Accrual"_s;
        answers.answer(event);
        return u"%1 %2"_s.arg(QString::number(event.status), QString::fromUtf8(event.reply)).toStdString();
    };
    EXPECT_EQ(ask(), "200 <one/>");
    EXPECT_EQ(ask(), "500 <two/>");
    EXPECT_EQ(ask(), "0 ") << "nobody has answered";
    answers.step(1);
    EXPECT_EQ(ask(), "200 <three/>");
}
