#include "tests/checkout/checkout_till.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

// The spending undone, and what a till that dies around it brings back: points that were given back never, points that
// were spent always.

namespace {

struct Crash : std::runtime_error {
    Crash()
        : std::runtime_error("the till dies here")
    {
    }
};

class Rollback : public CheckoutTill {
protected:
    Rollback()
    {
        openSaleWithCard();
        service.answer(u"SubtractBonus45"_s, spreadOf({ { 1, u"30.00"_s } }));
        EXPECT_TRUE(till().payPoints(30.0));
        static_cast<void>(told());
    }

    static inline const std::string spent = "149.80 450.00 | discount 0.00, points 30.00, due 599.80";
    static inline const std::string unspent = "179.80 450.00 | discount 0.00, points 0.00, due 629.80";
};

} // namespace

TEST_F(Rollback, GivesThePointsBack)
{
    EXPECT_TRUE(till().rollback());
    EXPECT_EQ(told(), "hook rollback\npost CancelSubtractBonus");
    EXPECT_EQ(money(), unspent);
    EXPECT_EQ(valueBehind(service.bodies(u"CancelSubtractBonus"_s).constFirst(), u"<tem:amount>"_s), "30.00");
}

TEST_F(Rollback, ThatIsRefusedLeavesThemSpentAndCanBeRepeated)
{
    service.refuse(u"CancelSubtractBonus"_s, u"Занято"_s);
    EXPECT_FALSE(till().rollback());
    EXPECT_EQ(told(), "hook rollback\npost CancelSubtractBonus\nshow Занято");
    EXPECT_EQ(money(), spent);
    service.answer(u"CancelSubtractBonus"_s, QString());
    EXPECT_TRUE(till().rollback());
    EXPECT_EQ(money(), unspent);
}

TEST_F(Rollback, LetsTheChequeChangeAgain)
{
    ASSERT_TRUE(till().rollback());
    scan(u"3"_s, 1.0);
    EXPECT_TRUE(till().payPoints(30.0));
    EXPECT_EQ(money(), "149.80 450.00 1.00 | discount 0.00, points 30.00, due 600.80");
}

TEST_F(Rollback, KeepsTheDiscountsOfAChequeThatCannotBeAskedAbout)
{
    ASSERT_TRUE(till().rollback());
    service.grant(discountOnPosition(1, 77, u"17.98"_s));
    ASSERT_TRUE(till().request());
    ASSERT_TRUE(till().payPoints(30.0));
    ASSERT_TRUE(till().rollback());
    service.down = true;
    EXPECT_FALSE(till().request());
    EXPECT_TRUE(till().request()) << "offline: nothing is asked";
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
}

TEST_F(Rollback, SpentPointsComeBackWithARestart)
{
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(told(), "event 9\nshow Восстановлен чек 1042");
    EXPECT_EQ(money(), spent);
    EXPECT_TRUE(plugin().hasBonusImpacts());
}

TEST_F(Rollback, PointsThatWereGivenBackDoNotComeBackWithARestart)
{
    ASSERT_TRUE(till().rollback());
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(told(), "event 9\nhook cancel\nshow Восстановлен чек 1042");
    EXPECT_EQ(money(), unspent);
    EXPECT_FALSE(plugin().hasBonusImpacts());
    till().payCash({});
    ASSERT_TRUE(till().close());
    EXPECT_EQ(valueBehind(service.bodies(u"Accrual"_s).constFirst(), u"SubtractedBonus=\""_s), "0.00");
}

TEST_F(Rollback, NorWithASecondRestart)
{
    ASSERT_TRUE(till().rollback());
    for (int i = 0; i < 2; ++i) {
        restart();
        EXPECT_TRUE(till().restore());
    }
    EXPECT_EQ(money(), unspent);
    EXPECT_EQ(service.bodies(u"CancelSubtractBonus"_s).size(), 1);
}

TEST_F(Rollback, ThatDiedBeforeItsReplyIsRepeated)
{
    service.within = [](const QString& action) {
        if (action == u"CancelSubtractBonus") {
            throw Crash();
        }
    };
    EXPECT_THROW((void)till().rollback(), Crash);
    service.within = {};
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(service.bodies(u"CancelSubtractBonus"_s).size(), 2);
    EXPECT_EQ(money(), unspent);
}

TEST_F(Rollback, ThatDiedBehindItsReplyIsRepeated)
{
    failStoreAfter(1); // the save before it
    EXPECT_ANY_THROW((void)till().rollback());
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(service.bodies(u"CancelSubtractBonus"_s).size(), 2);
    EXPECT_EQ(service.bodies(u"CancelSubtractBonus"_s).at(0).toStdString(),
              service.bodies(u"CancelSubtractBonus"_s).at(1).toStdString())
        << "the service can tell that it is the same one";
    EXPECT_EQ(money(), unspent);
}

TEST_F(Rollback, ThatIsRepeatedInVainLeavesThePointsSpent)
{
    failStoreAfter(1);
    EXPECT_ANY_THROW((void)till().rollback());
    restart();
    service.down = true;
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(
        told(),
        "event 9\nhook rollback\npost CancelSubtractBonus\nshow Нет связи с сервером\nshow Восстановлен чек 1042");
    EXPECT_EQ(money(), spent);
}

TEST_F(Rollback, ThatWasRefusedIsNotRepeatedByARestart)
{
    service.refuse(u"CancelSubtractBonus"_s, u"Занято"_s);
    EXPECT_FALSE(till().rollback());
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(service.bodies(u"CancelSubtractBonus"_s).size(), 1);
    EXPECT_EQ(money(), spent);
}

TEST_F(Rollback, ThatNeverBeganIsNotRepeatedByARestart)
{
    failStoreAfter(0);
    EXPECT_ANY_THROW((void)till().rollback());
    repairStore();
    EXPECT_EQ(service.bodies(u"CancelSubtractBonus"_s).size(), 0);
    till().payCash({});
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(service.bodies(u"CancelSubtractBonus"_s).size(), 0) << "the points have paid for the goods";
    EXPECT_EQ(money(), "149.80 450.00 | discount 0.00, points 30.00, due 0.00");
}

TEST_F(Rollback, PointsThatAreSpentAnewComeBackWithARestart)
{
    ASSERT_TRUE(till().rollback());
    service.answer(u"SubtractBonus45"_s, spreadOf({ { 2, u"7.00"_s } }));
    ASSERT_TRUE(till().payPoints(7.0));
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(money(), "179.80 443.00 | discount 0.00, points 7.00, due 622.80");
}

TEST_F(Rollback, PointsThatAreSpentAnewAndNotYetOnTheChequeComeBackWithARestart)
{
    ASSERT_TRUE(till().rollback());
    ASSERT_TRUE(till().request());
    failStoreAfter(3); // of the plug-in's question, the till's, and the plug-in's spending
    EXPECT_ANY_THROW((void)till().payPoints(30.0));
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(money(), spent);
}

TEST_F(Rollback, SpendingThatIsRefusedAfterwardsDoesNotBringTheOldPointsBack)
{
    ASSERT_TRUE(till().rollback());
    service.refuse(u"SubtractBonus45"_s, u"Отказ"_s);
    EXPECT_FALSE(till().payPoints(7.0));
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(money(), unspent);
}

TEST_F(Rollback, DiscountsOfARequestAfterwardsOutliveARestart)
{
    ASSERT_TRUE(till().rollback());
    service.grant(discountOnPosition(1, 77, u"17.98"_s));
    failStoreAfter(1); // the plug-in's own save
    EXPECT_ANY_THROW((void)till().request());
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
}

TEST_F(Rollback, CancelThatCannotGiveThePointsBackChangesNothing)
{
    service.refuse(u"CancelSubtractBonus"_s, u"Занято"_s);
    EXPECT_FALSE(till().cancel());
    EXPECT_EQ(states(), "1042 open");
    EXPECT_EQ(money(), spent);
    EXPECT_TRUE(till().cancel(true));
    EXPECT_EQ(states(), "1042 cancelled");
}
