#include "till/framework/action_dispatcher.h"
#include "till/framework/contract.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <thread>

namespace {

using Order = ActionTrigger::Order;
using Priority = ActionTrigger::Priority;

struct Plugin : BasicPlugin {
    bool init() override
    {
        return true;
    }

    void deinit() override { }
};

// Actions are carried out in context 6 unless a test says otherwise; what happens is noted in its order.
class ActionDispatcher : public ::testing::Test {
protected:
    void addTrigger(const QString& name, Order order, Priority priority = Priority::lowest,
                    EContext::Result answer = EContext::goOn, EContext::Code context = EContext::openDocument)
    {
        plugin->addTrigger(ActionTrigger(
            context, control::addCoupon, order,
            [this, name, answer](const control::Action&) {
                calls.append(name);
                return answer;
            },
            ActionTrigger::Result::success, priority));
    }

    void addTrigger(Order order, const std::function<void()>& work, Priority priority = Priority::lowest)
    {
        plugin->addTrigger(ActionTrigger(
            EContext::openDocument, control::addCoupon, order,
            [work](const control::Action&) {
                work();
                return EContext::goOn;
            },
            ActionTrigger::Result::success, priority));
    }

    bool carryOut(EContext::Code context = EContext::openDocument, control::EActionType type = control::addCoupon)
    {
        return Singleton<till::ActionDispatcher>::get()->carryOut(context, type, action, [this](const auto&) {
            calls.append(QStringLiteral("host"));
            return hostSucceeds;
        });
    }

    static QStringList names(const char* text)
    {
        return QString::fromLatin1(text).split(QLatin1Char(' '));
    }

    std::unique_ptr<Plugin> plugin = std::make_unique<Plugin>();
    control::Action action;
    bool hostSucceeds = true;
    QStringList calls;
};

TEST_F(ActionDispatcher, HostCarriesOutWhatNobodyWaitsFor)
{
    EXPECT_TRUE(carryOut());
    EXPECT_EQ(calls, names("host"));
}

TEST_F(ActionDispatcher, TriggersRunBeforeAndAfterTheHost)
{
    addTrigger(QStringLiteral("after"), Order::after);
    addTrigger(QStringLiteral("before"), Order::before);

    EXPECT_TRUE(carryOut());
    EXPECT_EQ(calls, names("before host after"));
}

TEST_F(ActionDispatcher, HigherPriorityRunsFirstAndEqualsAsAdded)
{
    addTrigger(QStringLiteral("low1"), Order::before);
    addTrigger(QStringLiteral("high1"), Order::before, Priority::high);
    addTrigger(QStringLiteral("low2"), Order::before);
    addTrigger(QStringLiteral("high2"), Order::before, Priority::high);
    addTrigger(QStringLiteral("afterLow"), Order::after);
    addTrigger(QStringLiteral("afterHigh"), Order::after, Priority::high);
    carryOut();

    EXPECT_EQ(calls, names("high1 high2 low1 low2 host afterHigh afterLow"));
}

TEST_F(ActionDispatcher, RefusalEndsTheAction)
{
    addTrigger(QStringLiteral("first"), Order::before);
    addTrigger(QStringLiteral("refusing"), Order::before, Priority::lowest, EContext::refused);
    addTrigger(QStringLiteral("never"), Order::before);
    addTrigger(QStringLiteral("after"), Order::after);

    EXPECT_FALSE(carryOut());
    EXPECT_EQ(calls, names("first refusing"));
}

TEST_F(ActionDispatcher, FailureOfTheHostKeepsTriggersOfSuccessOut)
{
    addTrigger(QStringLiteral("before"), Order::before);
    addTrigger(QStringLiteral("after"), Order::after);
    hostSucceeds = false;

    EXPECT_FALSE(carryOut());
    EXPECT_EQ(calls, names("before host"));
}

TEST_F(ActionDispatcher, NothingIsLeftToRefuseAfterTheHost)
{
    addTrigger(QStringLiteral("after1"), Order::after, Priority::lowest, EContext::refused);
    addTrigger(QStringLiteral("after2"), Order::after);

    EXPECT_TRUE(carryOut());
    EXPECT_EQ(calls, names("host after1 after2"));
}

TEST_F(ActionDispatcher, TriggerRunsInItsContextAndForItsActionOnly)
{
    addTrigger(QStringLiteral("before"), Order::before);
    carryOut(static_cast<EContext::Code>(5));
    carryOut(EContext::openDocument, control::deleteCoupon);

    EXPECT_EQ(calls, names("host host"));
}

TEST_F(ActionDispatcher, TriggerOfAnyContextRunsInEach)
{
    addTrigger(QStringLiteral("before"), Order::before, Priority::lowest, EContext::goOn, EContext::any);
    carryOut(EContext::openDocument);
    carryOut(static_cast<EContext::Code>(5));
    carryOut(EContext::any);

    EXPECT_EQ(calls, names("before host before host before host"));
}

TEST_F(ActionDispatcher, TriggerOfOneContextDoesNotRunInAnyContext)
{
    addTrigger(QStringLiteral("before"), Order::before);
    carryOut(EContext::any);

    EXPECT_EQ(calls, names("host"));
}

TEST_F(ActionDispatcher, HostReadsWhatAHandlerInserts)
{
    plugin->addTrigger(ActionTrigger(
        EContext::openDocument, control::addCoupon, Order::before,
        [](const control::Action& handled) {
            handled.insert(QStringLiteral("couponType"), QVariant(3));
            return EContext::goOn;
        },
        ActionTrigger::Result::success, Priority::high));
    int couponType = 0;
    Singleton<till::ActionDispatcher>::get()->carryOut(
        EContext::openDocument, control::addCoupon, action, [&couponType](const control::Action& carriedOut) {
            couponType = carriedOut.value(QStringLiteral("couponType"), QVariant()).toInt();
            return true;
        });

    EXPECT_EQ(couponType, 3);
    EXPECT_EQ(action.value(QStringLiteral("couponType"), QVariant()), QVariant(3));
}

TEST_F(ActionDispatcher, HandlerReplacesTheHostsPart)
{
    EContext::Result answer = EContext::goOn;
    plugin->addHandler(ActionHandler(EContext::openDocument, control::addCoupon, [&](const control::Action&) {
        calls.append(QStringLiteral("handler"));
        return answer;
    }));
    addTrigger(QStringLiteral("after"), Order::after);
    EXPECT_TRUE(carryOut());
    EXPECT_EQ(calls, names("handler after"));

    calls.clear();
    answer = EContext::refused;
    EXPECT_FALSE(carryOut());
    EXPECT_EQ(calls, names("handler"));
}

TEST_F(ActionDispatcher, LastHandlerCounts)
{
    for (const char* name : { "first", "last" }) {
        plugin->addHandler(ActionHandler(EContext::any, control::addCoupon, [this, name](const control::Action&) {
            calls.append(QString::fromLatin1(name));
            return EContext::goOn;
        }));
    }
    carryOut();

    EXPECT_EQ(calls, names("last"));
}

TEST_F(ActionDispatcher, TriggersEndWithTheirPlugin)
{
    addTrigger(QStringLiteral("before"), Order::before);
    plugin->addHandler(ActionHandler(EContext::any, control::addCoupon, [](const auto&) { return EContext::refused; }));
    plugin.reset();

    EXPECT_TRUE(carryOut());
    EXPECT_EQ(calls, names("host"));
}

TEST_F(ActionDispatcher, DisabledTriggersAreSkippedUntilEnabled)
{
    addTrigger(QStringLiteral("before"), Order::before);
    addTrigger(QStringLiteral("after"), Order::after);
    plugin->disableTriggers({ control::addCoupon });
    plugin->disableTriggers({ control::deleteCoupon });
    carryOut();
    EXPECT_EQ(calls, names("host"));

    calls.clear();
    plugin->enableTriggers();
    carryOut();
    EXPECT_EQ(calls, names("before host after"));
}

TEST_F(ActionDispatcher, TriggersOfOtherActionsAndPluginsStayEnabled)
{
    addTrigger(QStringLiteral("before"), Order::before);
    Plugin other;
    other.disableTriggers({ control::addCoupon });
    plugin->disableTriggers({ control::deleteCoupon });
    carryOut();

    EXPECT_EQ(calls, names("before host"));
}

TEST_F(ActionDispatcher, TriggerAddedDuringAnActionWaitsForTheNext)
{
    addTrigger(Order::before, [this] {
        addTrigger(QStringLiteral("lateBefore"), Order::before);
        addTrigger(QStringLiteral("lateAfter"), Order::after);
    });
    carryOut();
    EXPECT_EQ(calls, names("host"));

    calls.clear();
    carryOut();
    EXPECT_EQ(calls, names("lateBefore host lateAfter"));
}

TEST_F(ActionDispatcher, PluginThatEndsDuringAnActionIsNotCalledAgain)
{
    // Held outside the plug-in: the handler runs on after the plug-in's end.
    addTrigger(
        Order::before, [this] { plugin.reset(); }, Priority::high);
    addTrigger(QStringLiteral("before"), Order::before);
    addTrigger(QStringLiteral("after"), Order::after);

    EXPECT_TRUE(carryOut());
    EXPECT_EQ(calls, names("host"));
}

TEST_F(ActionDispatcher, ActionMayBeCarriedOutWithinAnother)
{
    bool nested = false;
    addTrigger(Order::before, [this, &nested] {
        if (!std::exchange(nested, true)) {
            carryOut();
        }
    });
    addTrigger(QStringLiteral("after"), Order::after);
    carryOut();

    EXPECT_EQ(calls, names("host after host after"));
}

TEST_F(ActionDispatcher, ExceptionOfATriggerPassesToTheCaller)
{
    addTrigger(Order::before, [] { throw std::runtime_error("broken"); });

    EXPECT_THROW(carryOut(), std::runtime_error);
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(ActionDispatcher, CallOffTheChequeThreadIsABreachOfTheHost)
{
    addTrigger(QStringLiteral("before"), Order::before);
    std::thread([this] {
        try {
            carryOut();
            ADD_FAILURE() << "nobody has noticed the thread";
        } catch (const till::ContractBreach& breach) {
            EXPECT_EQ(breach.getSide(), till::Side::host);
        }
        try {
            addTrigger(QStringLiteral("late"), Order::before);
            ADD_FAILURE() << "nobody has noticed the thread";
        } catch (const till::ContractBreach& breach) {
            EXPECT_EQ(breach.getSide(), till::Side::plugin);
        }
    }).join();

    EXPECT_TRUE(calls.isEmpty());
    carryOut();
    EXPECT_EQ(calls, names("before host"));
}

TEST(BasicPlugin, MatchesTheFeaturesThatTheHostHasSet)
{
    Plugin plugin;
    EXPECT_FALSE(plugin.isFeatureMatched(QStringLiteral("loyalty")));
    EXPECT_FALSE(plugin.isFeatureMatched(QString()));

    plugin.setFeature(QStringLiteral("loyalty"));
    plugin.setFeature(QStringLiteral("printing"));
    EXPECT_TRUE(plugin.isFeatureMatched(QStringLiteral("loyalty")));
    EXPECT_TRUE(plugin.isFeatureMatched(QStringLiteral("printing")));
    EXPECT_FALSE(plugin.isFeatureMatched(QStringLiteral("Loyalty")));
}

}
