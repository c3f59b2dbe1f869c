#include "front/vantiro.h"
#include "host/framework/activity_notifier.h"
#include "tests/support/scripted_config.h"
#include "till/framework/action_dispatcher.h"

#include <gtest/gtest.h>

#include <QMetaMethod>

// The plug-in from its construction to the end of `init`, as the host sees it.

namespace {

/// The plug-in with its virtual handlers opened to view.
class WatchedVantiro : public Vantiro {
public:
    void handleEvent(const Event& event) override
    {
        calls.append(QStringLiteral("event %1").arg(static_cast<int>(event.getCode())));
    }

    EContext::Result addCoupon(const control::Action&) override
    {
        calls.append(QStringLiteral("addCoupon"));
        return answer;
    }

    EContext::Result deleteCoupons(const control::Action&) override
    {
        calls.append(QStringLiteral("deleteCoupons"));
        return answer;
    }

    QStringList calls;
    EContext::Result answer = EContext::goOn;
};

/// Carries the action out as the till does; the host's own part is told as "host".
[[nodiscard]] bool carryOut(WatchedVantiro& plugin, int context, int action)
{
    return Singleton<till::ActionDispatcher>::get()->carryOut(
        static_cast<EContext::Code>(context), static_cast<control::EActionType>(action), control::Action(),
        [&plugin](const control::Action&) {
            plugin.calls.append(QStringLiteral("host"));
            return true;
        });
}

[[nodiscard]] std::string told(const WatchedVantiro& plugin)
{
    return plugin.calls.join(u' ').toStdString();
}

} // namespace

TEST(Startup, ConstructorSwitchesOnTheFourOptionsAndNoOther)
{
    const Vantiro plugin;
    for (int bit = 0; bit < 31; ++bit) {
        const int option = 1 << bit;
        const bool expected = option == 4 || option == 256 || option == 2048 || option == 131072;
        EXPECT_EQ(plugin.checkOption(static_cast<LoyaltySystemOption>(option)), expected) << option;
    }
}

TEST(Startup, CardModeIsSeven)
{
    EXPECT_EQ(Vantiro().getCardMode(), 7);
}

TEST(Startup, ConstructorReadsNoConfiguration)
{
    const ScriptedConfig config;
    const Vantiro plugin;
    EXPECT_FALSE(plugin.isCheckCouponNumber(QStringLiteral("vantiro-1"))) << "the prefix is read by init";
}

TEST(Startup, EmptyConfigurationGivesBothKindsThePrefixVantiroAndNoMask)
{
    const ScriptedConfig config;
    Vantiro plugin;
    EXPECT_TRUE(plugin.init());
    EXPECT_TRUE(plugin.isCheckCouponNumber(QStringLiteral("vantiro-1")));
    EXPECT_TRUE(plugin.isPositionCouponNumber(QStringLiteral("vantiro-1")));
    EXPECT_FALSE(plugin.isCheckCouponNumber(QStringLiteral("other-1")));
    EXPECT_FALSE(plugin.isPositionCouponNumber(QStringLiteral("other-1")));
}

TEST(Startup, EventsArriveFromInitOn)
{
    const ScriptedConfig config;
    WatchedVantiro plugin;
    const Event event(static_cast<EActivityListener::Event>(11));
    Singleton<ActivityNotifier>::get()->notify(event);
    EXPECT_EQ(told(plugin), "");
    EXPECT_TRUE(plugin.init());
    Singleton<ActivityNotifier>::get()->notify(event);
    EXPECT_EQ(told(plugin), "event 11");
}

TEST(Startup, AddingACouponAsksThePluginBeforeTheHost)
{
    const ScriptedConfig config;
    WatchedVantiro plugin;
    EXPECT_TRUE(plugin.init());
    EXPECT_TRUE(carryOut(plugin, 6, 198));
    EXPECT_EQ(told(plugin), "addCoupon host");
}

TEST(Startup, RefusedCouponNeverReachesTheHost)
{
    const ScriptedConfig config;
    WatchedVantiro plugin;
    EXPECT_TRUE(plugin.init());
    plugin.answer = EContext::refused;
    EXPECT_FALSE(carryOut(plugin, 6, 198));
    EXPECT_EQ(told(plugin), "addCoupon");
}

TEST(Startup, DeletingACouponAsksThePluginBeforeTheHost)
{
    const ScriptedConfig config;
    WatchedVantiro plugin;
    EXPECT_TRUE(plugin.init());
    EXPECT_TRUE(carryOut(plugin, 6, 199));
    EXPECT_EQ(told(plugin), "deleteCoupons host");
}

TEST(Startup, CouponActionsOfAnotherContextAreNoneOfItsBusiness)
{
    const ScriptedConfig config;
    WatchedVantiro plugin;
    EXPECT_TRUE(plugin.init());
    EXPECT_TRUE(carryOut(plugin, 7, 198));
    EXPECT_EQ(told(plugin), "host");
}

TEST(Startup, InitGivesTheResultOfTheRegistration)
{
    const ScriptedConfig config;
    Vantiro plugin;
    EXPECT_TRUE(plugin.init());
    Vantiro second; // the card mode is taken
    EXPECT_FALSE(second.init());
}

TEST(ConnectionCheck, AbsentPluginNameLeavesTheActionUntouched)
{
    const Vantiro plugin;
    const control::Action action;
    EXPECT_EQ(plugin.checkConnection(action), 2);
    EXPECT_FALSE(action.value(QStringLiteral("pingTask"), QVariant()).isValid());
}

TEST(ConnectionCheck, NameInAnotherCaseGetsATaskThatOutlivesThePlugin)
{
    control::Action action;
    action.appendArgument(QStringLiteral("vAnTiRo"), QStringLiteral("pluginName"));
    {
        const Vantiro plugin; // no servers: the ping of the task ends at once
        EXPECT_EQ(plugin.checkConnection(action), 2);
    }
    const auto task = action.value(QStringLiteral("pingTask"), QVariant()).value<QSharedPointer<BasicTask>>();
    ASSERT_TRUE(task);
    EXPECT_EQ(task->run()->toString().toStdString(), "сервер доступен - false");
}

TEST(MetaObject, HasTheOneMethodHandleEvent)
{
    const QMetaObject& meta = Vantiro::staticMetaObject;
    ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 1);
    EXPECT_EQ(meta.method(meta.methodOffset()).methodSignature(), "handleEvent(Event)");

    WatchedVantiro plugin;
    EXPECT_TRUE(QMetaObject::invokeMethod(&plugin, "handleEvent",
                                          Q_ARG(Event, Event(static_cast<EActivityListener::Event>(11)))));
    EXPECT_EQ(told(plugin), "event 11") << "the virtual operation is called";
}
