#include "tests/front/kept_state.h"
#include "tests/front/passed_on.h"
#include "till/document/coupon_record.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// A coupon that the cashier takes off the cheque.

namespace {

[[nodiscard]] DocumentBuilder saleOfThreePositions()
{
    return TillAtWork::saleWithCard().line(Goods(2, u"1043"_s, 50.0)).line(Goods(3, u"1044"_s, 20.0));
}

/// The cheque holds a coupon of the number, whatever the plug-in knows of it.
void putOnCheque(const TillAtWork& till, const QString& number)
{
    till.contents().coupons.append(QSharedPointer<till::CouponRecord>::create(number));
}

/// A coupon that tells whether it was looked at.
class WatchedCoupon : public till::CouponRecord {
public:
    explicit WatchedCoupon(const QString& couponNumber)
        : CouponRecord(couponNumber)
    {
    }

    [[nodiscard]] QString getNumber() const override
    {
        ++looks;
        return CouponRecord::getNumber();
    }

    mutable int looks = 0;
};

[[nodiscard]] control::Action deletionOf(const CouponPtr& coupon)
{
    return control::Action().appendArgument(QVariant::fromValue(coupon), u"coupon"_s);
}

} // namespace

TEST(CouponDeletion, CouponOfTheChequeIsForgottenAndThatSavedAtOnce)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    for (const QString& number : { u"cheque-1"_s, u"cheque-2"_s, u"item-1"_s }) {
        addWell(till, number);
    }

    EXPECT_TRUE(till.deleteCoupon(u"cheque-1"_s));

    EXPECT_EQ(till.told(), "save\nhost deletes cheque-1");
    EXPECT_EQ(till.log(),
              "info: Удаление купона/купонов Vantiro\n"
              "info: Удаление купона с номером cheque-1\n"
              "info: Купон Vantiro удален");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-2; 1: item-1");
    EXPECT_EQ(couponsStored(till), "cheque: cheque-2; 1: item-1");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(CouponDeletion, CouponOfAPositionIsForgottenAndThatSavedAtOnce)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    for (const QString& number : { u"cheque-1"_s, u"item-1"_s, u"item-2"_s }) {
        addWell(till, number);
    }

    EXPECT_TRUE(till.deleteCoupon(u"item-1"_s));

    EXPECT_EQ(till.told(), "save\nhost deletes item-1");
    EXPECT_EQ(till.log(),
              "info: Удаление купона/купонов Vantiro\n"
              "info: Удаление купона с номером item-1\n"
              "info: Купон Vantiro удален");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1; 1: item-2");
    EXPECT_EQ(couponsStored(till), "cheque: cheque-1; 1: item-2");
}

TEST(CouponDeletion, OneDeletionTakesEveryEntryOfTheNumber)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    for (const QString& number :
         { u"cheque-1"_s, u"cheque-2"_s, u"cheque-1"_s, u"item-1"_s, u"item-2"_s, u"item-1"_s }) {
        addWell(till, number);
    }

    EXPECT_TRUE(till.deleteCoupon(u"cheque-1"_s));
    EXPECT_EQ(couponsStored(till), "cheque: cheque-2; 1: item-1 item-2 item-1");

    EXPECT_TRUE(till.deleteCoupon(u"item-1"_s));
    EXPECT_EQ(couponsStored(till), "cheque: cheque-2; 1: item-2");
}

TEST(CouponDeletion, CouponGoesFromEveryPositionAndAKeyLeftEmptyGoesWithIt)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 1, { u"item-1"_s } }, { 2, { u"item-2"_s, u"item-1"_s } }, { 3, { u"item-1"_s } } });
    putOnCheque(till, u"item-1"_s);

    EXPECT_TRUE(till.deleteCoupon(u"item-1"_s));

    EXPECT_EQ(couponsInMemory(till.plugin), "2: item-2");
    EXPECT_EQ(couponsStored(till), "2: item-2");
}

TEST(CouponDeletion, LastCouponLeavesBothStoresEmpty)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"item-1"_s);

    EXPECT_TRUE(till.deleteCoupon(u"item-1"_s));

    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(couponsStored(till), "");
}

TEST(CouponDeletion, NumberOfBothKindsGoesFromTheChequeAlone)
{
    TillAtWork till; // both prefixes are "vantiro"
    giveCoupons(till, { u"vantiro-1"_s, u"vantiro-2"_s }, { { 1, { u"vantiro-1"_s } } });
    putOnCheque(till, u"vantiro-1"_s);

    EXPECT_TRUE(till.deleteCoupon(u"vantiro-1"_s));

    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: vantiro-2; 1: vantiro-1");
}

TEST(CouponDeletion, NumberOfAPositionGoesFromThePositionsAlone)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveCoupons(till, { u"item-1"_s }, { { 1, { u"item-1"_s } } });
    putOnCheque(till, u"item-1"_s);

    EXPECT_TRUE(till.deleteCoupon(u"item-1"_s));

    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: item-1");
}

TEST(CouponDeletion, WithBothStoresEmptyTheHostDeletesItsOwnUndisturbed)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    putOnCheque(till, u"cheque-1"_s);

    EXPECT_TRUE(till.deleteCoupon(u"cheque-1"_s));

    EXPECT_EQ(till.told(), "host deletes cheque-1");
    EXPECT_EQ(till.log(), "info: Удаление купона/купонов Vantiro");
    EXPECT_EQ(couponsStored(till), "none stored");
}

TEST(CouponDeletion, WithBothStoresEmptyTheCouponIsNotEvenRead)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    const auto coupon = QSharedPointer<WatchedCoupon>::create(u"cheque-1"_s);

    EXPECT_EQ(till.plugin.deleteCoupons(deletionOf(coupon)), 2);
    EXPECT_EQ(coupon->looks, 0);

    addWell(till, u"cheque-2"_s);
    EXPECT_EQ(till.plugin.deleteCoupons(deletionOf(coupon)), 0) << "not on the cheque";
    EXPECT_GT(coupon->looks, 0);
}

TEST(CouponDeletion, OneStoreIsEnoughToLookAtTheCoupon)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"item-1"_s);
    EXPECT_TRUE(till.deleteCoupon(u"item-1"_s));
    addWell(till, u"cheque-1"_s);
    EXPECT_TRUE(till.deleteCoupon(u"cheque-1"_s));
    EXPECT_EQ(couponsInMemory(till.plugin), "");
}

TEST(CouponDeletion, CouponOfAnotherSystemIsLeftToTheHost)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"cheque-1"_s);
    putOnCheque(till, u"other-1"_s);

    EXPECT_TRUE(till.deleteCoupon(u"other-1"_s));

    EXPECT_EQ(till.told(), "host deletes other-1");
    EXPECT_EQ(till.log(), "info: Удаление купона/купонов Vantiro");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1");
}

TEST(CouponDeletion, AbsentCouponIsNoneOfThisSystems)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"cheque-1"_s);
    EXPECT_EQ(till.plugin.deleteCoupons(control::Action()), 2);
    EXPECT_EQ(till.log(), "info: Удаление купона/купонов Vantiro");
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1");
}

TEST(CouponDeletion, OwnNumberThatTheStoresLackIsStillSaved)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"cheque-1"_s);
    putOnCheque(till, u"cheque-2"_s);

    EXPECT_TRUE(till.deleteCoupon(u"cheque-2"_s));

    EXPECT_EQ(till.told(), "save\nhost deletes cheque-2");
    EXPECT_EQ(couponsStored(till), "cheque: cheque-1");
}

TEST(CouponDeletion, CouponThatTheChequeLacksIsRefusedOnTheScreen)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"cheque-1"_s);
    addWell(till, u"item-1"_s);
    till.contents().coupons.clear();

    EXPECT_FALSE(till.deleteCoupon(u"cheque-1"_s));

    EXPECT_EQ(till.told(), "message 1 0 0 vantiroNoCoupon: Купон отсутствует в чеке");
    EXPECT_EQ(till.log(),
              "info: Удаление купона/купонов Vantiro\n"
              "info: Удаление купона с номером cheque-1");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1; 1: item-1");
    EXPECT_EQ(couponsStored(till), "cheque: cheque-1; 1: item-1");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(CouponDeletion, CouponOfAPositionThatTheChequeLacksIsRefusedLikewise)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"item-1"_s);
    till.contents().coupons.clear();

    EXPECT_FALSE(till.deleteCoupon(u"item-1"_s));

    EXPECT_EQ(till.told(), "message 1 0 0 vantiroNoCoupon: Купон отсутствует в чеке");
    EXPECT_EQ(couponsInMemory(till.plugin), "1: item-1");
}

TEST(CouponDeletion, WorksOfflineToo)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"cheque-1"_s);
    till.goOffline();

    EXPECT_TRUE(till.deleteCoupon(u"cheque-1"_s));

    EXPECT_EQ(till.told(), "save\nhost deletes cheque-1");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
}

// The document of the hooks is asked for the coupon, the session's is saved.
TEST(CouponDeletion, WatchedDocumentIsAskedAndTheSessionsIsSaved)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"cheque-1"_s);
    const auto watched = DocumentBuilder().identity(u"2"_s).build();
    till.plugin.setDocument(watched);

    EXPECT_FALSE(till.deleteCoupon(u"cheque-1"_s));
    EXPECT_EQ(till.told(), "message 1 0 0 vantiroNoCoupon: Купон отсутствует в чеке");

    watched->coupons = till.contents().coupons;
    EXPECT_TRUE(till.deleteCoupon(u"cheque-1"_s));
    EXPECT_EQ(till.told(), "save\nhost deletes cheque-1");
    EXPECT_EQ(couponsStored(till), "");
    EXPECT_FALSE(watched->getValue(u"Vantiro"_s, u"checkCoupons"_s, QVariant()).isValid());
}

TEST(CouponDeletion, FailedSavePassesOnWithTheCouponForgotten)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    addWell(till, u"cheque-1"_s);
    addWell(till, u"item-1"_s);
    till.failSaves(u"диск полон"_s);

    EXPECT_EQ(passedOn([&till] { return till.deleteCoupon(u"cheque-1"_s); }), "диск полон");

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(),
              "info: Удаление купона/купонов Vantiro\n"
              "info: Удаление купона с номером cheque-1\n"
              "info: Купон Vantiro удален");
    EXPECT_EQ(couponsInMemory(till.plugin), "1: item-1");
    EXPECT_EQ(till.contents().coupons.size(), 2) << "the host has not deleted it";
}
