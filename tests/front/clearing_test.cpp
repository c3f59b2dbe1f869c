#include "tests/front/till_at_work.h"
#include "till/document/cheque_contents.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// How the state of a cheque leaves the memory, and what stays with the document.

namespace {

/// Says which of its operations the plug-in calls through the virtual table.
class WatchedVantiro : public Vantiro {
public:
    void clearLoyaltyData() override
    {
        calls.append(u"clearLoyaltyData"_s);
        Vantiro::clearLoyaltyData();
    }

    void clearCoupons() override
    {
        calls.append(u"clearCoupons"_s);
        Vantiro::clearCoupons();
    }

    bool backOrBackBySale(const QSharedPointer<AbstractDocument>&) override
    {
        calls.append(u"backOrBackBySale"_s);
        return false;
    }

    bool restoreLoyaltySystem() override
    {
        calls.append(u"restoreLoyaltySystem"_s);
        return true;
    }

    [[nodiscard]] std::string told() const
    {
        return calls.join(u' ').toStdString();
    }

private:
    QStringList calls;
};

/// A till in the midst of a cheque: discounts, points, messages, a spending, and coupons of both kinds.
class Clearing : public testing::Test {
protected:
    Clearing()
        : till(TillAtWork::saleWithCard(), { { u"Vantiro:checkCouponPrefix"_s, u"vantiro-c"_s } })
    {
        till.requestWell("50.00");
        till.spendWell(20.0);
        till.requestWell("30.00");
        add(u"vantiro-c1"_s);
        add(u"vantiro-p1"_s);
        EXPECT_EQ(till.plugin.discountImpacts.size(), 1);
        EXPECT_EQ(till.plugin.bonusImpacts.size(), 1);
        EXPECT_EQ(till.card()->fields.pointsForSpend, 30.0);
        EXPECT_EQ(storedCoupons(), "vantiro-c1; 1: vantiro-p1");
        static_cast<void>(till.told());
        static_cast<void>(till.log());
    }

    void add(const QString& number)
    {
        till.server.answerText("IsCouponValid", u"true"_s);
        EXPECT_TRUE(till.addCoupon(number));
        EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
    }

    [[nodiscard]] std::string storedCoupons() const
    {
        return told(till.stored(u"checkCoupons"_s).toStringList())
            + "; 1: " + told(till.stored(u"positionCoupons"_s).toMap()[u"1"_s].toStringList());
    }

    void expectLoyaltyDataGone()
    {
        EXPECT_EQ(till.plugin.discountImpacts.size(), 0);
        EXPECT_EQ(till.plugin.bonusImpacts.size(), 0);
        EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
        EXPECT_EQ(till.plugin.getMessagesToCashier().join(u'|').toStdString(), "");
        EXPECT_EQ(till.plugin.getMessagesToClient().join(u'|').toStdString(), "");
        EXPECT_EQ(till.card()->fields.pointsForSpend, 0.0);
    }

    /// The coupons in memory, as the next request tells them.
    [[nodiscard]] QString couponsSent()
    {
        till.answerRequest();
        EXPECT_TRUE(till.plugin.request(till.document()));
        const QString sent = till.server.take("GetDiscounts");
        EXPECT_FALSE(till.server.take("GetMessages").isEmpty());
        EXPECT_FALSE(till.server.take("GetCardDiscountAmount").isEmpty());
        return sent;
    }

    TillAtWork till;
};

} // namespace

TEST_F(Clearing, LoyaltyDataLeavesTheMemoryAndTheCard)
{
    till.plugin.clearLoyaltyData();

    expectLoyaltyDataGone();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
}

TEST_F(Clearing, LoyaltyDataStaysWithTheDocument)
{
    till.plugin.clearLoyaltyData();

    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(30.0));
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 1);
    EXPECT_EQ(till.stored(u"bonusImpacts"_s).toList().size(), 1);
}

TEST_F(Clearing, LoyaltyDataLeavesTheDocumentWithTheNextUpdate)
{
    till.plugin.clearLoyaltyData();
    till.plugin.updatePluginData(till.document(), false);

    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(0.0));
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 0);
    EXPECT_EQ(till.stored(u"bonusImpacts"_s).toList().size(), 0);
}

TEST_F(Clearing, LoyaltyDataTakesNoCouponsWithIt)
{
    till.plugin.clearLoyaltyData();

    const QString sent = couponsSent();
    EXPECT_TRUE(sent.contains(u"CouponNo=\"vantiro-c1\""_s));
    EXPECT_TRUE(sent.contains(u"CouponNo=\"vantiro-p1\""_s));
}

TEST_F(Clearing, LoyaltyDataWithoutACardDoesNotFail)
{
    till.contents().removeCard(7);

    till.plugin.clearLoyaltyData();

    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 0);
    EXPECT_EQ(till.plugin.discountImpacts.size(), 0);
}

TEST_F(Clearing, LoyaltyDataWithoutADocumentDoesNotFail)
{
    till.open(nullptr);

    till.plugin.clearLoyaltyData();

    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 0);
}

TEST_F(Clearing, CouponsLeaveTheMemory)
{
    till.plugin.clearCoupons();

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    EXPECT_FALSE(couponsSent().contains(u"<Coupon"_s));
}

TEST_F(Clearing, CouponsStayWithTheDocumentUntilTheNextUpdate)
{
    till.plugin.clearCoupons();
    EXPECT_EQ(storedCoupons(), "vantiro-c1; 1: vantiro-p1");

    till.plugin.updateCouponsPluginData(till.document());
    EXPECT_EQ(storedCoupons(), "; 1: ");
    EXPECT_TRUE(till.stored(u"positionCoupons"_s).toMap().isEmpty());
}

TEST_F(Clearing, CouponsTakeNoLoyaltyDataWithThem)
{
    till.plugin.clearCoupons();

    EXPECT_EQ(till.plugin.discountImpacts.size(), 1);
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 1);
    EXPECT_EQ(till.plugin.pointsForSpend, 30.0);
    EXPECT_EQ(till.card()->fields.pointsForSpend, 30.0);
}

TEST_F(Clearing, CloseLeavesNothingInMemory)
{
    till.plugin.clearAfterClose();

    expectLoyaltyDataGone();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(storedCoupons(), "vantiro-c1; 1: vantiro-p1") << "the document is not touched";
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(30.0));
    EXPECT_FALSE(couponsSent().contains(u"<Coupon"_s));
}

TEST_F(Clearing, CloseDropsTheIdentityThatALaterChequeWouldInherit)
{
    till.plugin.beforePutoutCheck();
    till.contents().head.deferred = true;
    till.contents().head.number = 2000; // brought back under another number
    till.plugin.revealCheck();
    EXPECT_TRUE(couponsSent().contains(u"ChequeNo=\"1042\""_s));

    till.plugin.clearAfterClose();
    till.open(TillAtWork::saleWithCard().identity(u"2"_s).number(2001).shift(18).build());

    const QString next = couponsSent();
    EXPECT_TRUE(next.contains(u"ChequeNo=\"2001\""_s));
    EXPECT_TRUE(next.contains(u"ShiftNo=\"18\""_s));
    EXPECT_FALSE(next.contains(u"ChequeUID=\"11116E73-1C03-5DE6-9130-5F9925AE8AB4\""_s))
        << "that is of the first cheque";
}

TEST_F(Clearing, LoyaltyDataAndCouponsAloneDoNotDropTheIdentity)
{
    till.plugin.beforePutoutCheck();
    till.contents().head.deferred = true;
    till.contents().head.number = 2000;
    till.plugin.revealCheck();

    till.plugin.clearLoyaltyData();
    till.plugin.clearCoupons();

    EXPECT_TRUE(couponsSent().contains(u"ChequeNo=\"1042\""_s));
}

TEST(ClearingOrder, CloseClearsLoyaltyDataThenCoupons)
{
    WatchedVantiro plugin;
    plugin.clearAfterClose();
    EXPECT_EQ(plugin.told(), "clearLoyaltyData clearCoupons");
}

TEST(ClearingOrder, CommitOfAnOfflineSaleClearsLoyaltyDataThenCoupons)
{
    TillAtWork till;
    till.goOffline();
    WatchedVantiro plugin;
    EXPECT_TRUE(plugin.commit(till.document()));
    EXPECT_EQ(plugin.told(), "clearLoyaltyData clearCoupons");
    EXPECT_EQ(till.told(), "enqueue vantiro OfflineAccrual");
}

TEST(ClearingOrder, CommitOfAReturnGivesTheResultOfItsHookAndClearsAfterwards)
{
    const TillAtWork till(TillAtWork::saleWithCard().type(2));
    WatchedVantiro plugin;
    EXPECT_FALSE(plugin.commit(till.document()));
    EXPECT_EQ(plugin.told(), "backOrBackBySale clearLoyaltyData clearCoupons");
}

TEST(ClearingOrder, RollbackAndCancelClearLoyaltyDataAlone)
{
    const TillAtWork till;
    WatchedVantiro plugin;
    EXPECT_TRUE(plugin.rollback(till.document()));
    EXPECT_TRUE(plugin.cancel());
    EXPECT_EQ(plugin.told(), "clearLoyaltyData clearLoyaltyData");
}

TEST(ClearingOrder, Event9RestoresAndDoesNothingElse)
{
    WatchedVantiro plugin;
    plugin.handleEvent(Event(EActivityListener::restoreDocument));
    EXPECT_EQ(plugin.told(), "restoreLoyaltySystem");
}
