#include "tests/checkout/checkout_till.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

// Discounts that the service grants, on the cheque to the kopeck.

namespace {

class Discounts : public CheckoutTill {
protected:
    /// A line with its minimum price, and whether it takes discounts.
    void scanWith(double price, double quantity, double minPrice, bool takesDiscounts = true)
    {
        till::Checkout::Article article;
        article.code = u"1"_s;
        article.price = price;
        article.quantity = quantity;
        article.minPrice = minPrice;
        article.takesDiscounts = takesDiscounts;
        till().scan(article);
    }

    void requestWith(const QString& discounts)
    {
        service.grant(discounts);
        ASSERT_TRUE(till().request());
    }
};

} // namespace

TEST_F(Discounts, OnAPositionLowersThatLine)
{
    openSale();
    requestWith(discountOnPosition(1, 77, u"17.98"_s));
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
}

TEST_F(Discounts, OnTheChequeIsSpreadByWhatTheLinesCost)
{
    openSale(); // 179.80 and 450.00: 62.98 is 17.98 and 45.00
    requestWith(discountOnCheque(5, u"62.98"_s));
    EXPECT_EQ(money(), "161.82 405.00 | discount 62.98, points 0.00, due 566.82");
}

TEST_F(Discounts, OddKopeckGoesToWhoLostMostByRounding)
{
    till().openSale(1);
    for (int i = 0; i < 3; ++i) {
        scan(u"1"_s, 10.00);
    }
    requestWith(discountOnCheque(5, u"10.00"_s));
    EXPECT_EQ(money(), "6.66 6.67 6.67 | discount 10.00, points 0.00, due 20.00");
}

TEST_F(Discounts, OneKopeckIsTakenOffOneLine)
{
    openSale();
    requestWith(discountOnCheque(5, u"0.01"_s));
    EXPECT_EQ(money(), "179.80 449.99 | discount 0.01, points 0.00, due 629.79");
}

TEST_F(Discounts, BeyondTheRoomTakeWhatThereIs)
{
    till().openSale(1);
    scanWith(100.0, 1.0, 60.0);
    scanWith(50.0, 1.0, 50.0);
    requestWith(discountOnCheque(5, u"45.00"_s));
    EXPECT_EQ(money(), "60.00 50.00 | discount 40.00, points 0.00, due 110.00");
}

TEST_F(Discounts, OfAFullLinePassToTheOthers)
{
    till().openSale(1);
    scanWith(100.0, 1.0, 95.0);
    scanWith(100.0, 1.0, 0.0);
    requestWith(discountOnCheque(5, u"40.00"_s));
    EXPECT_EQ(money(), "95.00 65.00 | discount 40.00, points 0.00, due 160.00");
}

TEST_F(Discounts, NeverGoBelowZero)
{
    till().openSale(1);
    scan(u"1"_s, 10.0);
    requestWith(discountOnPosition(1, 7, u"10.01"_s));
    EXPECT_EQ(money(), "0.00 | discount 10.00, points 0.00, due 0.00");
}

TEST_F(Discounts, MinimumPriceIsOfEachUnit)
{
    till().openSale(1);
    scanWith(10.0, 3.0, 9.99);
    requestWith(discountOnPosition(1, 7, u"5.00"_s));
    EXPECT_EQ(money(), "29.97 | discount 0.03, points 0.00, due 29.97");
}

TEST_F(Discounts, MinimumPriceAboveThePriceLeavesNoRoom)
{
    till().openSale(1);
    scanWith(10.0, 1.0, 12.0);
    requestWith(discountOnPosition(1, 7, u"5.00"_s));
    EXPECT_EQ(money(), "10.00 | discount 0.00, points 0.00, due 10.00");
}

TEST_F(Discounts, LineThatTakesNoneIsLeftOut)
{
    till().openSale(1);
    scanWith(100.0, 1.0, 0.0, false);
    scanWith(100.0, 1.0, 0.0);
    requestWith(discountOnCheque(5, u"30.00"_s) + discountOnPosition(1, 7, u"5.00"_s));
    EXPECT_EQ(money(), "100.00 70.00 | discount 30.00, points 0.00, due 170.00");
}

TEST_F(Discounts, SecondOneFindsLessRoom)
{
    till().openSale(1);
    scanWith(100.0, 1.0, 80.0);
    requestWith(discountOnCheque(5, u"15.00"_s) + discountOnPosition(1, 7, u"15.00"_s));
    EXPECT_EQ(money(), "80.00 | discount 20.00, points 0.00, due 80.00");
}

TEST_F(Discounts, OnAPositionThatIsNotThereTakesNothing)
{
    openSale();
    requestWith(discountOnPosition(9, 7, u"5.00"_s));
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 629.80");
}

TEST_F(Discounts, OfLessThanNothingTakesNothing)
{
    openSale();
    requestWith(discountOnPosition(1, 7, u"-5.00"_s) + discountOnCheque(8, u"0.00"_s));
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 629.80");
}

TEST_F(Discounts, OfTheNextRequestTakeThePlaceOfTheFormer)
{
    openSale();
    requestWith(discountOnPosition(1, 77, u"17.98"_s));
    requestWith(discountOnPosition(2, 78, u"50.00"_s));
    EXPECT_EQ(money(), "179.80 400.00 | discount 50.00, points 0.00, due 579.80");
    requestWith(QString());
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 629.80");
}

TEST_F(Discounts, AreAskedForWithoutThoseThatTheChequeCarries)
{
    openSale();
    requestWith(discountOnPosition(1, 77, u"17.98"_s));
    requestWith(discountOnPosition(1, 77, u"17.98"_s));
    const QStringList asked = service.bodies(u"GetDiscounts"_s);
    ASSERT_EQ(asked.size(), 2);
    EXPECT_EQ(asked.at(0).toStdString(), asked.at(1).toStdString()) << "they would be granted on top of themselves";
    EXPECT_EQ(valueBehind(asked.at(1), u" Amount=\""_s), "629.80");
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
}

TEST_F(Discounts, ThatAreRefusedLeaveTheFormerOnes)
{
    openSale();
    requestWith(discountOnPosition(1, 77, u"17.98"_s));
    service.refuse(u"GetDiscounts"_s, u"Отказ"_s);
    static_cast<void>(told());
    EXPECT_FALSE(till().request());
    EXPECT_EQ(told(), "hook request\npost GetDiscounts\nshow Отказ");
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
}

TEST_F(Discounts, ThatNobodyAnswersLeaveTheFormerOnesAndAreNotAskedForAgain)
{
    openSaleWithCard();
    requestWith(discountOnPosition(1, 77, u"17.98"_s));
    service.down = true;
    static_cast<void>(told());
    EXPECT_FALSE(till().request());
    EXPECT_EQ(told(), "hook request\npost GetDiscounts\nshow Нет связи с сервером. Доступно только начисление баллов");
    EXPECT_TRUE(till().request());
    EXPECT_EQ(told(), "hook request");
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
}

TEST_F(Discounts, ThatThePluginCannotSaveLeaveTheFormerOnes)
{
    openSale();
    requestWith(discountOnPosition(1, 77, u"17.98"_s));
    failStoreAfter(0);
    EXPECT_ANY_THROW((void)till().request());
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
    repairStore();
    EXPECT_TRUE(till().request());
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
}

TEST_F(Discounts, OfALineThatIsTakenOffGoWithIt)
{
    openSale();
    requestWith(discountOnCheque(5, u"62.98"_s));
    till().remove(2);
    EXPECT_EQ(money(), "161.82 | discount 17.98, points 0.00, due 161.82");
    till().remove(1);
    EXPECT_EQ(money(), " | discount 0.00, points 0.00, due 0.00");
}

TEST_F(Discounts, OfALineThatIsTakenOffStayOffAfterARestartWithoutAServer)
{
    openSale();
    requestWith(discountOnCheque(5, u"62.98"_s));
    till().remove(2);
    restart();
    service.down = true;
    ASSERT_TRUE(till().restore());
    EXPECT_EQ(money(), "161.82 | discount 17.98, points 0.00, due 161.82")
        << "the till died, the customer did not notice";
}

TEST_F(Discounts, OfAChequeThatIsPaidInPartStayAsTheyAreAfterARestart)
{
    openSale();
    requestWith(discountOnCheque(5, u"62.98"_s));
    service.down = true;
    scan(u"3"_s, 1000.0); // on which a discount on the cheque could lie as well
    till().payCash(500.0);
    const std::string before = money();
    EXPECT_EQ(before, "161.82 405.00 1000.00 | discount 62.98, points 0.00, due 1066.82");
    restart();
    ASSERT_TRUE(till().restore());
    EXPECT_EQ(money(), before);
}

TEST_F(Discounts, ThatThePluginHasSavedButTheTillHasNotComeWithARestart)
{
    openSale();
    service.grant(discountOnPosition(1, 77, u"17.98"_s));
    failStoreAfter(1); // the plug-in's own save
    EXPECT_ANY_THROW((void)till().request());
    restart();
    ASSERT_TRUE(till().restore());
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 0.00, due 611.82");
}

TEST_F(Discounts, OfARequestAfterARestartAreTheServersWord)
{
    openSale();
    requestWith(discountOnPosition(1, 77, u"17.98"_s));
    restart();
    ASSERT_TRUE(till().restore());
    requestWith(QString());
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 629.80");
}

TEST_F(Discounts, AreToldAtTheCloseOnTheirLines)
{
    openSaleWithCard();
    requestWith(discountOnPosition(1, 77, u"17.98"_s));
    till().payCash({});
    ASSERT_TRUE(till().close());
    const QString told = service.bodies(u"Accrual"_s).constFirst();
    EXPECT_EQ(valueBehind(told, u" Amount=\""_s), "611.82");
    EXPECT_THAT(told.toStdString(), HasSubstr(R"(DiscountID="77")"));
}
