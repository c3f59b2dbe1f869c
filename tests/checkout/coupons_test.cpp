#include "tests/checkout/checkout_till.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

// Coupons on the cheque and on its positions.

namespace {

class Coupons : public CheckoutTill {
protected:
    /// The coupons that the document carries: "c-1 p-1".
    [[nodiscard]] std::string onCheque() const
    {
        QStringList numbers;
        for (const QSharedPointer<Coupon>& coupon : till().contents().coupons) {
            numbers.append(coupon->getNumber());
        }
        return numbers.join(u' ').toStdString();
    }

    /// The cheque of a request made now.
    [[nodiscard]] std::string asked()
    {
        EXPECT_TRUE(till().request());
        return service.bodies(u"GetDiscounts"_s).constLast().toStdString();
    }
};

} // namespace

TEST_F(Coupons, AreOnTheChequeAndAtTheService)
{
    openSale();
    EXPECT_TRUE(till().addCoupon(u"c-1"_s));
    EXPECT_EQ(onCheque(), "c-1");
    EXPECT_THAT(asked(), HasSubstr(R"(<Coupon CouponNo="c-1"/>)"));
}

TEST_F(Coupons, OfAPositionGoToTheSelectedOne)
{
    openSale();
    till().selectPosition(1);
    EXPECT_TRUE(till().addCoupon(u"p-1"_s));
    const std::string cheque = asked();
    EXPECT_LT(cheque.find(R"(CouponNo="p-1")"), cheque.find(R"(ItemID="2001")")) << "before the second line begins";
}

TEST_F(Coupons, OfAPositionGoToTheLatestLineByThemselves)
{
    openSale();
    EXPECT_TRUE(till().addCoupon(u"p-1"_s));
    const std::string cheque = asked();
    EXPECT_GT(cheque.find(R"(CouponNo="p-1")"), cheque.find(R"(ItemID="2001")"));
}

TEST_F(Coupons, ThatTheServiceDoesNotKnowAreRefusedAndTheCashierIsTold)
{
    openSale();
    service.answer(u"IsCouponValid"_s, u"false"_s);
    EXPECT_FALSE(till().addCoupon(u"c-1"_s));
    EXPECT_THAT(told(), HasSubstr("show Купон c-1 не принят"));
    EXPECT_EQ(onCheque(), "");
}

TEST_F(Coupons, OfNobodyAreRefusedAndTheCashierIsTold)
{
    openSale();
    EXPECT_FALSE(till().addCoupon(u"x-1"_s));
    EXPECT_EQ(told(), "show Купон x-1 не принят");
    EXPECT_EQ(onCheque(), "");
}

TEST_F(Coupons, ThatTheServiceRefusesAreToldWithItsReason)
{
    openSale();
    service.refuse(u"IsCouponValid"_s, u"Купон погашен"_s);
    EXPECT_FALSE(till().addCoupon(u"c-1"_s));
    EXPECT_EQ(
        told(),
        "event 72\nshow Обращение к системе лояльности\npost IsCouponValid\nevent 73\nevent 127\nshow Купон погашен");
}

TEST_F(Coupons, WithoutAServerAreRefused)
{
    openSaleWithCard();
    service.down = true;
    EXPECT_FALSE(till().addCoupon(u"c-1"_s));
    EXPECT_EQ(told(u"show"_s),
              "show Обращение к системе лояльности\nshow Нет связи с сервером. Доступно только начисление баллов");
    EXPECT_EQ(onCheque(), "");
}

TEST_F(Coupons, OfAPositionNeedAPosition)
{
    till().openSale(3);
    EXPECT_FALSE(till().addCoupon(u"p-1"_s));
    EXPECT_EQ(told(u"show"_s), "show Нет позиций для добавления купона на позицию");
}

TEST_F(Coupons, AreDeletedFromTheChequeAndAtTheService)
{
    openSale();
    ASSERT_TRUE(till().addCoupon(u"c-1"_s));
    ASSERT_TRUE(till().addCoupon(u"c-2"_s));
    EXPECT_TRUE(till().deleteCoupon(u"c-1"_s));
    EXPECT_EQ(onCheque(), "c-2");
    const std::string cheque = asked();
    EXPECT_THAT(cheque, Not(HasSubstr("c-1")));
    EXPECT_THAT(cheque, HasSubstr("c-2"));
}

TEST_F(Coupons, OfOneNumberAreDeletedTogether)
{
    openSale();
    ASSERT_TRUE(till().addCoupon(u"c-1"_s));
    ASSERT_TRUE(till().addCoupon(u"c-1"_s));
    EXPECT_EQ(onCheque(), "c-1 c-1");
    EXPECT_TRUE(till().deleteCoupon(u"c-1"_s));
    EXPECT_EQ(onCheque(), "");
    EXPECT_THAT(asked(), Not(HasSubstr("c-1")));
}

TEST_F(Coupons, OfALineThatIsTakenOffGoWithIt)
{
    openSale();
    ASSERT_TRUE(till().addCoupon(u"c-1"_s));
    ASSERT_TRUE(till().addCoupon(u"p-1"_s)); // of position 2
    till().remove(2);
    EXPECT_EQ(onCheque(), "c-1");
    EXPECT_THAT(asked(), Not(HasSubstr("p-1")));
}

TEST_F(Coupons, SurviveARestart)
{
    openSale();
    ASSERT_TRUE(till().addCoupon(u"c-1"_s));
    ASSERT_TRUE(till().addCoupon(u"p-1"_s));
    restart();
    ASSERT_TRUE(till().restore());
    EXPECT_EQ(onCheque(), "c-1 p-1");
    EXPECT_THAT(asked(), HasSubstr("p-1"));
    EXPECT_TRUE(till().deleteCoupon(u"p-1"_s));
    EXPECT_EQ(onCheque(), "c-1");
}

TEST_F(Coupons, AreToldAtTheClose)
{
    openSaleWithCard();
    ASSERT_TRUE(till().addCoupon(u"c-1"_s));
    till().payCash({});
    ASSERT_TRUE(till().close());
    EXPECT_THAT(service.bodies(u"Accrual"_s).constLast().toStdString(), HasSubstr(R"(CouponNo="c-1")"));
}

TEST_F(Coupons, OfAChequeAreNotThoseOfTheNext)
{
    openSaleWithCard();
    ASSERT_TRUE(till().addCoupon(u"c-1"_s));
    till().payCash({});
    ASSERT_TRUE(till().close());
    openSale(1043);
    EXPECT_THAT(asked(), Not(HasSubstr("c-1")));
}

TEST_F(Coupons, AreToldAtTheCancel)
{
    openSaleWithCard();
    ASSERT_TRUE(till().addCoupon(u"c-1"_s));
    ASSERT_TRUE(till().cancel());
    EXPECT_THAT(service.bodies(u"Accrual"_s).constLast().toStdString(), HasSubstr(R"(CouponNo="c-1")"));
}
