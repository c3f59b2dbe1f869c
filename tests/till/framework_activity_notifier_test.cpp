#include "host/document/abstract_document.h"
#include "host/framework/activity_notifier.h"
#include "host/framework/task.h"
#include "tests/support/log_recorder.h"
#include "till/document/cheque.h"
#include "till/framework/contract.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

class Listener : public BaseActivityListener {
public:
    Listener(const QString& listenerName, QStringList& told)
        : BaseActivityListener(nullptr)
        , name(listenerName)
        , calls(told)
    {
    }

    void handleEvent(const Event& event) override
    {
        calls.append(QStringLiteral("%1 %2").arg(name).arg(event.getCode()));
        if (work) {
            work();
        }
    }

    std::function<void()> work;

private:
    QString name;
    QStringList& calls;
};

class Notifier : public ::testing::Test {
protected:
    std::unique_ptr<Listener> subscribed(const char* name)
    {
        auto listener = std::make_unique<Listener>(QString::fromLatin1(name), calls);
        notifier.subscribe(listener.get());
        return listener;
    }

    void notify()
    {
        notifier.notify(Event(EActivityListener::processFinished));
    }

    QStringList calls;
    ActivityNotifier notifier;
};

TEST_F(Notifier, TellsAllInTheOrderOfTheirSubscription)
{
    const auto first = subscribed("first");
    const auto second = subscribed("second");
    notify();

    EXPECT_EQ(calls, (QStringList { QStringLiteral("first 73"), QStringLiteral("second 73") }));
}

TEST_F(Notifier, TellsAListenerThatSubscribesTwiceOnce)
{
    const auto listener = subscribed("first");
    notifier.subscribe(listener.get());
    notify();

    EXPECT_EQ(calls, QStringList { QStringLiteral("first 73") });
}

TEST_F(Notifier, DestroyedListenerDropsOut)
{
    auto first = subscribed("first");
    const auto second = subscribed("second");
    first.reset();
    notify();

    EXPECT_EQ(calls, QStringList { QStringLiteral("second 73") });
}

TEST_F(Notifier, ListenerDestroyedByAnotherIsNotTold)
{
    const auto first = subscribed("first");
    auto second = subscribed("second");
    const auto third = subscribed("third");
    first->work = [&second] { second.reset(); };
    notify();

    EXPECT_EQ(calls, (QStringList { QStringLiteral("first 73"), QStringLiteral("third 73") }));
}

TEST_F(Notifier, ListenerMayDestroyItself)
{
    auto first = subscribed("first");
    const auto second = subscribed("second");
    // The function outlives the listener that calls it.
    const auto work = std::make_shared<std::function<void()>>([&first] { first.reset(); });
    first->work = [work] { (*work)(); };
    notify();
    notify();

    EXPECT_EQ(calls,
              (QStringList { QStringLiteral("first 73"), QStringLiteral("second 73"), QStringLiteral("second 73") }));
}

TEST_F(Notifier, ListenerSubscribedMeanwhileGetsTheNextEvent)
{
    const auto first = subscribed("first");
    const auto second = subscribed("second");
    std::vector<std::unique_ptr<Listener>> late;
    first->work = [this, &late] {
        // Many, so that the notifier's list moves in memory.
        while (late.size() < 100) {
            late.push_back(subscribed("late"));
        }
    };
    notify();
    EXPECT_EQ(calls, (QStringList { QStringLiteral("first 73"), QStringLiteral("second 73") }));

    calls.clear();
    notify();
    EXPECT_EQ(calls.size(), 102);
    EXPECT_EQ(calls.constLast(), QStringLiteral("late 73"));
}

TEST_F(Notifier, EventMaySendAnother)
{
    const auto first = subscribed("first");
    const auto second = subscribed("second");
    bool sent = false;
    first->work = [this, &sent] {
        if (!std::exchange(sent, true)) {
            notifier.notify(Event(EActivityListener::processStarted));
        }
    };
    notify();

    EXPECT_EQ(calls,
              (QStringList { QStringLiteral("first 73"), QStringLiteral("first 72"), QStringLiteral("second 72"),
                             QStringLiteral("second 73") }));
}

TEST_F(Notifier, ExceptionPassesToTheSenderWhenAllHaveBeenTold)
{
    const LogRecorder log;
    const auto first = subscribed("first");
    const auto second = subscribed("second");
    first->work = [] { throw std::runtime_error("broken"); };

    EXPECT_THROW(notify(), std::runtime_error);
    EXPECT_EQ(calls, (QStringList { QStringLiteral("first 73"), QStringLiteral("second 73") }));
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(Notifier, FirstExceptionPassesAndFurtherOnesAreLogged)
{
    const LogRecorder log;
    const auto first = subscribed("first");
    const auto second = subscribed("second");
    const auto third = subscribed("third");
    first->work = [] { throw std::runtime_error("first"); };
    second->work = [] { throw std::logic_error("сбой"); };
    third->work = [] { throw 5; };

    EXPECT_THROW(notify(), std::runtime_error);
    EXPECT_EQ(log.of(QStringLiteral("activitynotifier")),
              (QStringList { QStringLiteral("error: Ошибка обработки события: сбой"),
                             QStringLiteral("error: Ошибка обработки события: неизвестное исключение") }));
}

TEST_F(Notifier, NullListenerIsABreachOfThePlugin)
{
    try {
        notifier.subscribe(nullptr);
        ADD_FAILURE() << "a null listener is taken";
    } catch (const till::ContractBreach& breach) {
        EXPECT_EQ(breach.getSide(), till::Side::plugin);
    }
}

TEST_F(Notifier, CallOffTheChequeThreadIsABreachOfTheSender)
{
    const auto listener = subscribed("first");
    const auto breakingSide = [this](EActivityListener::Event code) {
        try {
            notifier.notify(Event(code));
            ADD_FAILURE() << "nobody has noticed the thread";
            return till::Side::host;
        } catch (const till::ContractBreach& breach) {
            return breach.getSide();
        }
    };
    std::thread([&breakingSide] {
        EXPECT_EQ(breakingSide(EActivityListener::restoreDocument), till::Side::host);
        EXPECT_EQ(breakingSide(EActivityListener::processFinished), till::Side::plugin);
        EXPECT_EQ(breakingSide(EActivityListener::couponRefused), till::Side::plugin);
    }).join();

    EXPECT_TRUE(calls.isEmpty());
}

class DocumentEvent : public Notifier, public ::testing::WithParamInterface<EActivityListener::Event> {
protected:
    void expectBreachOfTheHost(const Event& event)
    {
        try {
            notifier.notify(event);
            ADD_FAILURE() << "the event goes round without its document";
        } catch (const till::ContractBreach& breach) {
            EXPECT_EQ(breach.getSide(), till::Side::host);
            const std::string text = "the host has broken the contract: event " + std::to_string(event.getCode())
                + " comes without its document";
            EXPECT_EQ(breach.what(), text);
        }
        EXPECT_TRUE(calls.isEmpty());
    }
};

TEST_P(DocumentEvent, WithoutItsDocumentIsABreachOfTheHost)
{
    const auto listener = subscribed("first");

    expectBreachOfTheHost(Event(GetParam()));
    expectBreachOfTheHost(Event(GetParam(), { { QStringLiteral("document"), QVariant(QStringLiteral("text")) } }));
    expectBreachOfTheHost(
        Event(GetParam(), { { QStringLiteral("document"), QVariant::fromValue(QSharedPointer<AbstractDocument>()) } }));
}

TEST_P(DocumentEvent, GoesRoundWithItsDocument)
{
    const auto listener = subscribed("first");
    const QSharedPointer<AbstractDocument> document = QSharedPointer<till::Cheque>::create();
    notifier.notify(Event(GetParam(), { { QStringLiteral("document"), QVariant::fromValue(document) } }));

    EXPECT_EQ(calls, QStringList { QStringLiteral("first %1").arg(GetParam()) });
}

INSTANTIATE_TEST_SUITE_P(Notifier, DocumentEvent,
                         ::testing::Values(EActivityListener::documentClosed, EActivityListener::documentCancelled,
                                           EActivityListener::positionRemoved,
                                           EActivityListener::documentCancelledBeforeClose),
                         [](const auto& tested) { return "Event" + std::to_string(tested.param); });

TEST_F(Notifier, TaskEventWithoutItsTaskIsABreachOfThePlugin)
{
    const auto listener = subscribed("first");
    try {
        notifier.notify(Event(EActivityListener::runTask));
        ADD_FAILURE() << "the event goes round without its task";
    } catch (const till::ContractBreach& breach) {
        EXPECT_STREQ(breach.what(), "the plug-in has broken the contract: event 245 comes without its task");
    }
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(Notifier, EventThatNobodyKnowsGoesRound)
{
    const auto listener = subscribed("first");
    notifier.notify(Event(static_cast<EActivityListener::Event>(11)));
    notifier.notify(Event(EActivityListener::restoreDocument));

    EXPECT_EQ(calls, (QStringList { QStringLiteral("first 11"), QStringLiteral("first 9") }));
}

TEST(ActivityNotifierSingleton, IsOne)
{
    EXPECT_EQ(Singleton<ActivityNotifier>::get(), Singleton<ActivityNotifier>::get());
    EXPECT_NE(Singleton<ActivityNotifier>::get(), nullptr);
}

}
