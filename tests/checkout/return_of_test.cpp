#include "tests/checkout/checkout_till.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace Qt::StringLiterals;

// Goods come back against their sale, at what was paid for them.

namespace {

class ReturnOf : public CheckoutTill {
protected:
    /// Closes a sale of one line of so many at that price, with so much discount and points on it.
    void sell(double price, double quantity, const QString& discount, const QString& points = {})
    {
        till().openSale(1);
        scan(u"1"_s, price, quantity);
        ASSERT_TRUE(till().presentCard(u"9000000001"_s));
        service.grant(discount.isEmpty() ? QString() : discountOnPosition(1, 7, discount));
        ASSERT_TRUE(till().request());
        if (!points.isEmpty()) {
            service.answer(u"SubtractBonus45"_s, spreadOf({ { 1, points } }));
            ASSERT_TRUE(till().payPoints(points.toDouble()));
        }
        till().payCash({});
        ASSERT_TRUE(till().close());
        static_cast<void>(told());
    }

    /// Takes so much of position 1 back in a return of its own, and closes it; what it comes to.
    [[nodiscard]] std::string takeBackAlone(double quantity)
    {
        till().openReturnOf(1, {});
        till().takeBack(1, quantity);
        const std::string sum = QString::number(till().due(), 'f', 2).toStdString();
        EXPECT_TRUE(till().close());
        return sum;
    }
};

} // namespace

TEST_F(ReturnOf, GivesBackWhatWasPaidWithDiscountAndPoints)
{
    sell(100.0, 3.0, u"30.00"_s, u"50.00"_s); // 220.00 paid for three
    till().openReturnOf(1, 5);
    till().takeBack(1, 1.0);
    EXPECT_EQ(money(), "73.33 | discount 26.67, points 0.00, due 73.33");
}

TEST_F(ReturnOf, WithoutDiscountIsAtThePrice)
{
    sell(89.90, 2.0, QString());
    till().openReturnOf(1, {});
    till().takeBack(1, 2.0);
    EXPECT_EQ(money(), "179.80 | discount 0.00, points 0.00, due 179.80");
}

TEST_F(ReturnOf, PartsAddUpToWhatWasPaid)
{
    sell(100.0, 3.0, u"200.00"_s); // 100.00 for three
    till().openReturnOf(1, {});
    till().takeBack(1, 1.0);
    till().takeBack(1, 1.0);
    till().takeBack(1, 1.0);
    EXPECT_EQ(money(), "33.33 33.34 33.33 | discount 200.00, points 0.00, due 100.00");
}

TEST_F(ReturnOf, PartsOfSeveralReturnsAddUpToWhatWasPaid)
{
    sell(100.0, 3.0, u"100.00"_s); // 200.00 for three
    EXPECT_EQ(takeBackAlone(1.0), "66.67");
    EXPECT_EQ(takeBackAlone(1.0), "66.66");
    EXPECT_EQ(takeBackAlone(1.0), "66.67");
}

TEST_F(ReturnOf, MoreThanIsLeftIsRefused)
{
    sell(10.0, 2.0, QString());
    till().openReturnOf(1, {});
    EXPECT_EQ(refusal([this] { till().takeBack(1, 3.0); }), "of position 1 the sale has 2 left, not 3");
    EXPECT_EQ(refusal([this] { till().takeBack(1, 0.0); }), "of position 1 the sale has 2 left, not 0");
    EXPECT_EQ(refusal([this] { till().takeBack(2, 1.0); }), "the cheque has no position 2");
    till().takeBack(1, 1.5);
    EXPECT_EQ(refusal([this] { till().takeBack(1, 1.0); }), "of position 1 the sale has 0.5 left, not 1");
    EXPECT_EQ(money(), "15.00 | discount 0.00, points 0.00, due 15.00");
}

TEST_F(ReturnOf, NothingIsTakenBackTwice)
{
    sell(10.0, 2.0, QString());
    EXPECT_EQ(takeBackAlone(2.0), "20.00");
    till().openReturnOf(1, {});
    EXPECT_EQ(refusal([this] { till().takeBack(1, 1.0); }), "of position 1 the sale has 0 left, not 1");
}

TEST_F(ReturnOf, ReturnThatWasCancelledHasTakenNothing)
{
    sell(10.0, 2.0, QString());
    till().openReturnOf(1, {});
    till().takeBack(1, 2.0);
    ASSERT_TRUE(till().cancel());
    EXPECT_EQ(takeBackAlone(2.0), "20.00");
}

TEST_F(ReturnOf, LineThatIsTakenOffTheReturnCanBeTakenAgain)
{
    sell(10.0, 2.0, u"5.00"_s);
    till().openReturnOf(1, {});
    till().takeBack(1, 2.0);
    till().remove(1);
    EXPECT_EQ(money(), " | discount 0.00, points 0.00, due 0.00");
    till().takeBack(1, 2.0);
    EXPECT_EQ(money(), "15.00 | discount 5.00, points 0.00, due 15.00");
}

TEST_F(ReturnOf, SurvivesARestart)
{
    sell(100.0, 3.0, u"200.00"_s);
    till().openReturnOf(1, 5);
    till().takeBack(1, 1.0);
    restart();
    ASSERT_TRUE(till().restore());
    EXPECT_EQ(money(), "33.33 | discount 66.67, points 0.00, due 33.33");
    till().takeBack(1, 2.0);
    EXPECT_EQ(money(), "33.33 66.67 | discount 200.00, points 0.00, due 100.00");
}

TEST_F(ReturnOf, FractionsOfAKilogram)
{
    sell(333.33, 1.005, QString()); // 335.00
    EXPECT_EQ(takeBackAlone(0.335), "111.67");
    EXPECT_EQ(takeBackAlone(0.67), "223.33");
}

TEST_F(ReturnOf, NamesItsSaleAndTakesItsCard)
{
    sell(10.0, 1.0, QString());
    till().openReturnOf(1, 5);
    till().takeBack(1, 1.0);
    ASSERT_TRUE(till().close());
    EXPECT_EQ(told(u"hook commit"_s), "hook commit");
    const QString back = service.bodies(u"Accrual"_s).constLast();
    EXPECT_EQ(valueBehind(back, u"DiscountCardNo=\""_s), "9000000001");
    EXPECT_EQ(valueBehind(back.mid(back.indexOf(u"<SaleCheque")), u"ChequeNo=\""_s), "1");
    EXPECT_EQ(valueBehind(back, u" Amount=\""_s), "10.00");
    EXPECT_EQ(states(), "1 closed, 5 closed");
}

TEST_F(ReturnOf, WithoutAServerIsQueued)
{
    sell(10.0, 1.0, QString());
    till().openReturnOf(1, 5);
    till().takeBack(1, 1.0);
    service.down = true;
    EXPECT_TRUE(till().close());
    ASSERT_EQ(queued().size(), 1);
    EXPECT_THAT(queued().constFirst().toStdString(), testing::HasSubstr("<SaleCheque"));
}

TEST_F(ReturnOf, GeneratedSalesComeBackToTheKopeck)
{
    unsigned state = 20261121; // the seed
    const auto next = [&state](unsigned below) {
        state = state * 1664525U + 1013904223U;
        return (state >> 8) % below;
    };
    int whole = 0;
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(round);
        const double price = 1 + next(50'000) / 100;
        const unsigned pieces = 2 + next(5);
        const qint64 full = std::llround(price * 100) * pieces;
        const qint64 off = next(static_cast<unsigned>(full));
        till().openSale(100 + round);
        scan(u"1"_s, price, pieces);
        service.grant(discountOnPosition(1, 7, QString::number(static_cast<double>(off) / 100.0, 'f', 2)));
        ASSERT_TRUE(till().request());
        till().payCash({});
        ASSERT_TRUE(till().close());

        qint64 back = 0;
        for (unsigned piece = 0; piece < pieces; ++piece) {
            till().openReturnOf(100 + round, {});
            till().takeBack(1, 1.0);
            back += std::llround(till().due() * 100);
            ASSERT_LE(back, full - off) << "never more than was paid";
            ASSERT_TRUE(till().close());
        }
        EXPECT_EQ(back, full - off);
        whole += back == full - off ? 1 : 0;
    }
    EXPECT_EQ(whole, 12);
}
