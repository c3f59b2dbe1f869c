#include "host/framework/coupon_logic.h"
#include "till/desk/open_document.h"
#include "till/document/cheque.h"
#include "till/document/coupon_record.h"
#include "till/document/return_by_sale.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <string>

using namespace Qt::StringLiterals;

namespace {

class CouponLogicTest : public testing::Test {
protected:
    CouponLogicTest()
    {
        till::setOpenDocument(cheque);
    }

    ~CouponLogicTest() override
    {
        till::setOpenDocument(nullptr);
    }

    static void add(till::ChequeContents& contents, const QStringList& numbers)
    {
        for (const QString& number : numbers) {
            contents.coupons.append(QSharedPointer<till::CouponRecord>::create(number));
        }
    }

    static void deleteCoupon(const QVariant& number)
    {
        control::Action action;
        action.appendArgument(number, u"couponNumber"_s);
        MockFactory<CouponLogic>::create()->deleteCoupon(action);
    }

    [[nodiscard]] static std::string left(const till::ChequeContents& contents)
    {
        QStringList numbers;
        for (const QSharedPointer<Coupon>& coupon : contents.coupons) {
            numbers.append(u'"' + coupon->getNumber() + u'"');
        }
        return numbers.join(u' ').toStdString();
    }

    const QSharedPointer<till::Cheque> cheque = QSharedPointer<till::Cheque>::create();
};

TEST_F(CouponLogicTest, TakesTheCouponOffAndLeavesTheOthersInTheirOrder)
{
    add(*cheque, { u"a"_s, u"b"_s, u"c"_s });
    deleteCoupon(u"b"_s);

    EXPECT_EQ(left(*cheque), R"("a" "c")");
}

TEST_F(CouponLogicTest, CouponsOfTheNumberGoTogether)
{
    add(*cheque, { u"a"_s, u"b"_s, u"a"_s });
    deleteCoupon(u"a"_s);

    EXPECT_EQ(left(*cheque), R"("b")");
}

TEST_F(CouponLogicTest, NumberIsComparedExactly)
{
    add(*cheque, { u"VANTIRO-1"_s, u"vantiro-1"_s, u"VANTIRO-10"_s, u" VANTIRO-1"_s });
    deleteCoupon(u"VANTIRO-1"_s);

    EXPECT_EQ(left(*cheque), R"("vantiro-1" "VANTIRO-10" " VANTIRO-1")");
}

TEST_F(CouponLogicTest, NumberMayBeHandedOverAsANumber)
{
    add(*cheque, { u"41"_s, u"42"_s });
    deleteCoupon(42);

    EXPECT_EQ(left(*cheque), R"("41")");
}

TEST_F(CouponLogicTest, UnknownNumberLeavesEverything)
{
    add(*cheque, { u"a"_s, u"b"_s });
    deleteCoupon(u"c"_s);

    EXPECT_EQ(left(*cheque), R"("a" "b")");
}

TEST_F(CouponLogicTest, ActionWithoutANumberLeavesEvenTheCouponWithoutOne)
{
    add(*cheque, { u"a"_s, QString() });
    MockFactory<CouponLogic>::create()->deleteCoupon(control::Action());

    EXPECT_EQ(left(*cheque), R"("a" "")");
}

TEST_F(CouponLogicTest, EmptyNumberTakesTheCouponWithoutOne)
{
    add(*cheque, { u"a"_s, QString() });
    deleteCoupon(QString());

    EXPECT_EQ(left(*cheque), R"("a")");
}

TEST_F(CouponLogicTest, OtherArgumentsDoNotMatter)
{
    add(*cheque, { u"a"_s, u"b"_s });
    control::Action action;
    action.appendArgument(u"b"_s, u"coupon"_s).appendArgument(u"a"_s, u"couponNumber"_s);
    MockFactory<CouponLogic>::create()->deleteCoupon(action);

    EXPECT_EQ(left(*cheque), R"("b")");
}

TEST_F(CouponLogicTest, EveryKindOfDocumentLosesItsCoupon)
{
    const auto goodsReturn = QSharedPointer<till::ReturnBySale>::create(nullptr);
    till::setOpenDocument(goodsReturn);
    add(*goodsReturn, { u"a"_s, u"b"_s });
    deleteCoupon(u"a"_s);

    EXPECT_EQ(left(*goodsReturn), R"("b")");
}

TEST_F(CouponLogicTest, OnlyTheOpenDocumentLosesItsCoupon)
{
    const auto next = QSharedPointer<till::Cheque>::create();
    add(*cheque, { u"a"_s });
    add(*next, { u"a"_s });
    till::setOpenDocument(next);
    deleteCoupon(u"a"_s);

    EXPECT_EQ(left(*cheque), R"("a")");
    EXPECT_EQ(left(*next), "");
}

TEST_F(CouponLogicTest, NothingHappensWhenNoDocumentIsOpen)
{
    add(*cheque, { u"a"_s });
    till::setOpenDocument(nullptr);
    deleteCoupon(u"a"_s);

    EXPECT_EQ(left(*cheque), R"("a")");
}

} // namespace
