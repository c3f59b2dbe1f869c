#include "tests/checkout/checkout_till.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

// A cheque waits and comes back: a new number at the till, the first one at the service.

namespace {

class SetAside : public CheckoutTill {
protected:
    explicit SetAside(const Settings& settings = {})
        : CheckoutTill(settings)
    {
        openSaleWithCard();
        service.grant(discountOnPosition(1, 77, u"17.98"_s));
        EXPECT_TRUE(till().addCoupon(u"c-1"_s));
        EXPECT_TRUE(till().request());
        uid = valueBehind(service.bodies(u"GetDiscounts"_s).constLast(), u"ChequeUID=\""_s);
        till().putOut();
        static_cast<void>(told());
    }

    void closeIt()
    {
        till().payCash({});
        ASSERT_TRUE(till().close());
    }

    std::string uid;
};

class SetAsideWithState : public SetAside {
protected:
    SetAsideWithState()
        : SetAside({ { u"Vantiro:restoreLoyaltyState"_s, true } })
    {
    }
};

} // namespace

TEST_F(SetAside, KeepsItsIdentityAtTheServiceUnderANewNumber)
{
    till().reveal(1042, 1044);
    EXPECT_EQ(till().document()->getChequeNumber(), 1044);
    closeIt();
    const QString accrual = service.bodies(u"Accrual"_s).constLast();
    EXPECT_EQ(valueBehind(accrual, u"ChequeNo=\""_s), "1042");
    EXPECT_EQ(valueBehind(accrual, u"ChequeUID=\""_s), uid);
    EXPECT_EQ(states(), "1044 closed");
}

TEST_F(SetAside, KeepsItsLinesCardAndDiscounts)
{
    till().reveal(1042, {});
    EXPECT_EQ(states(), "1043 open");
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
    EXPECT_TRUE(plugin().hasCard());
}

TEST_F(SetAside, LosesItsCouponsAndTheCashierIsTold)
{
    till().reveal(1042, {});
    EXPECT_EQ(told(u"show"_s), "show Купоны чека нужно ввести снова");
    EXPECT_EQ(till().contents().coupons.size(), 0);
    EXPECT_TRUE(till().request());
    EXPECT_THAT(service.bodies(u"GetDiscounts"_s).constLast().toStdString(), Not(HasSubstr("c-1")));
}

TEST_F(SetAsideWithState, KeepsItsCouponsToo)
{
    till().reveal(1042, {});
    EXPECT_EQ(told(u"show"_s), "");
    EXPECT_EQ(till().contents().coupons.size(), 1);
    EXPECT_TRUE(till().request());
    EXPECT_THAT(service.bodies(u"GetDiscounts"_s).constLast().toStdString(), HasSubstr("c-1"));
}

TEST_F(SetAside, LeavesNothingToTheNextCheque)
{
    openSaleWithCard(1043);
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 629.80");
    closeIt();
    const QString accrual = service.bodies(u"Accrual"_s).constLast();
    EXPECT_EQ(valueBehind(accrual, u"ChequeNo=\""_s), "1043");
    EXPECT_NE(valueBehind(accrual, u"ChequeUID=\""_s), uid);
    EXPECT_THAT(accrual.toStdString(), Not(HasSubstr("c-1")));
}

TEST_F(SetAside, IsNotWhatARestartBringsBack)
{
    restart();
    EXPECT_FALSE(till().restore());
    till().reveal(1042, {});
    closeIt();
    EXPECT_EQ(valueBehind(service.bodies(u"Accrual"_s).constLast(), u"ChequeNo=\""_s), "1042");
}

TEST_F(SetAside, KeepsItsIdentityThroughARestartAfterItsReturn)
{
    till().reveal(1042, 1044);
    restart();
    ASSERT_TRUE(till().restore());
    closeIt();
    const QString accrual = service.bodies(u"Accrual"_s).constLast();
    EXPECT_EQ(valueBehind(accrual, u"ChequeNo=\""_s), "1042");
    EXPECT_EQ(valueBehind(accrual, u"ChequeUID=\""_s), uid);
}

TEST_F(SetAside, RevealThatDiedInBetweenIsMadeGoodByTheRestart)
{
    failStoreAfter(1); // the document is open again; the plug-in has saved nothing yet
    EXPECT_ANY_THROW(till().reveal(1042, 1044));
    restart();
    ASSERT_TRUE(till().restore());
    closeIt();
    EXPECT_EQ(valueBehind(service.bodies(u"Accrual"_s).constLast(), u"ChequeNo=\""_s), "1042");

    till().openReturnOf(1044, {});
    till().takeBack(2, 1.0);
    ASSERT_TRUE(till().close());
    const QString back = service.bodies(u"Accrual"_s).constLast();
    EXPECT_EQ(valueBehind(back.mid(back.indexOf(u"<SaleCheque")), u"ChequeNo=\""_s), "1042")
        << "the number that the service knows the sale by";
}

TEST_F(SetAside, RevealThatCannotBeSavedLeavesItAside)
{
    failStoreAfter(0);
    EXPECT_ANY_THROW(till().reveal(1042, 1044));
    repairStore();
    EXPECT_FALSE(till().isOpen());
    EXPECT_EQ(states(), "1042 aside");
    till().reveal(1042, 1044);
    EXPECT_EQ(states(), "1044 open");
}

TEST_F(SetAside, ThatCannotBeSavedStaysOpen)
{
    till().reveal(1042, 1044);
    failStoreAfter(0);
    EXPECT_ANY_THROW(till().putOut());
    repairStore();
    EXPECT_TRUE(till().isOpen());
    EXPECT_EQ(states(), "1044 open");
    till().putOut();
    EXPECT_EQ(states(), "1044 aside");
}

TEST_F(SetAside, LatestOfTwoOfTheSameNumberComesBack)
{
    openSale(1042);
    scan(u"9"_s, 5.0);
    till().putOut();
    EXPECT_EQ(states(), "1042 aside, 1042 aside");
    till().reveal(1042, 1050);
    EXPECT_EQ(money(), "179.80 450.00 5.00 | discount 0.00, points 0.00, due 634.80");
}
