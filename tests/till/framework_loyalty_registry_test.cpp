#include "till/framework/action_dispatcher.h"
#include "till/framework/contract.h"
#include "till/framework/loyalty_registry.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace {

struct System : BasicLoyaltySystem {
    explicit System(int mode)
    {
        cardMode = mode;
    }
};

QList<BasicLoyaltySystem*> announced()
{
    return Singleton<till::LoyaltyRegistry>::get()->systems();
}

TEST(LoyaltyRegistry, SystemsAnnounceThemselvesWhileTheyStart)
{
    System first(7);
    System second(8);
    EXPECT_TRUE(announced().isEmpty());

    EXPECT_TRUE(first.init());
    EXPECT_TRUE(second.init());
    EXPECT_EQ(announced(), (QList<BasicLoyaltySystem*> { &first, &second }));
    EXPECT_EQ(Singleton<till::LoyaltyRegistry>::get()->systemOf(8), &second);
    EXPECT_EQ(Singleton<till::LoyaltyRegistry>::get()->systemOf(9), nullptr);
}

TEST(LoyaltyRegistry, SystemIsAnnouncedOnce)
{
    System system(7);

    EXPECT_TRUE(system.registerLoyaltySystem());
    EXPECT_TRUE(system.registerLoyaltySystem());
    EXPECT_EQ(announced(), QList<BasicLoyaltySystem*> { &system });
}

TEST(LoyaltyRegistry, SecondSystemOfACardModeIsRefused)
{
    System first(7);
    System second(7);
    EXPECT_TRUE(first.init());

    EXPECT_FALSE(second.init());
    EXPECT_EQ(announced(), QList<BasicLoyaltySystem*> { &first });
}

TEST(LoyaltyRegistry, SystemDropsOutAtShutdown)
{
    System system(7);
    EXPECT_TRUE(system.init());
    system.deinit();

    EXPECT_TRUE(announced().isEmpty());
}

TEST(LoyaltyRegistry, SystemDropsOutWhenItEnds)
{
    auto system = std::make_unique<System>(7);
    EXPECT_TRUE(system->init());
    system.reset();

    EXPECT_TRUE(announced().isEmpty());
}

TEST(LoyaltyRegistry, TriggersEndAtShutdown)
{
    System system(7);
    bool called = false;
    system.addTrigger(ActionTrigger(
        EContext::any, control::checkConnection, ActionTrigger::Order::before,
        [&called](const control::Action&) {
            called = true;
            return EContext::goOn;
        },
        ActionTrigger::Result::success, ActionTrigger::Priority::high));
    system.deinit();
    Singleton<till::ActionDispatcher>::get()->carryOut(EContext::openDocument, control::checkConnection,
                                                       control::Action(), [](const auto&) { return true; });

    EXPECT_FALSE(called);
}

TEST(LoyaltyRegistry, AnnouncementOffTheChequeThreadIsABreachOfThePlugin)
{
    System system(7);
    std::thread([&system] {
        try {
            system.registerLoyaltySystem();
            ADD_FAILURE() << "nobody has noticed the thread";
        } catch (const till::ContractBreach& breach) {
            EXPECT_EQ(breach.getSide(), till::Side::plugin);
        }
    }).join();

    EXPECT_TRUE(announced().isEmpty());
}

}
