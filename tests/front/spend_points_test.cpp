#include "tests/front/till_at_work.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// The host tells the system to pay with points.

namespace {

class Spending : public testing::Test {
protected:
    Spending()
    {
        till.requestWell("50.00");
    }

    /// Chooses the amount and spends it; the request is looked at and returned.
    [[nodiscard]] QString spend(double points, const QByteArray& onPosition1)
    {
        till.answerSpending(onPosition1);
        till.plugin.setPointsForSpend(till.document(), points);
        EXPECT_TRUE(till.plugin.spendPoints());
        return till.server.take("SubtractBonus45");
    }

    /// The sums of the spendings so far, each with its spread: "30 {1: 30}; 12.5 {1: 10}".
    [[nodiscard]] std::string spent()
    {
        QStringList records;
        for (const QSharedPointer<BonusImpact>& impact : till.plugin.getBonusImpactsForSpend()) {
            QStringList positions;
            const auto details = impact->getDetails();
            for (auto it = details.cbegin(); it != details.cend(); ++it) {
                positions.append(u"%1: %2"_s.arg(it.key()).arg(it.value()->getDiscountSum()));
            }
            records.append(u"%1 {%2}"_s.arg(impact->getTotals()->getDiscountSum()).arg(positions.join(u", "_s)));
        }
        return records.join(u"; "_s).toStdString();
    }

    TillAtWork till;
};

}

TEST_F(Spending, TakesThePointsAndKeepsTheRecord)
{
    till.answerSpending("30.50");
    till.plugin.setPointsForSpend(till.document(), 30.50);

    EXPECT_TRUE(till.plugin.spendPoints());

    EXPECT_EQ(till.told(), "post SubtractBonus45\nsave");
    EXPECT_EQ(till.log(), "info: Создание оплаты бонусами в виде скидки на сумму 30, по карте 9000000001")
        << "only the log line is truncated";
    const QString body = till.server.take("SubtractBonus45");
    EXPECT_TRUE(body.contains(u"<tem:discountCardNumber>9000000001</tem:discountCardNumber>"_s));
    EXPECT_TRUE(body.contains(u"<tem:amount>30.50</tem:amount>"_s));
    EXPECT_TRUE(body.contains(u"ChequeNo=\"1042\""_s));
    EXPECT_FALSE(body.contains(u"DiscountID="_s)) << "the discounts are gone by then";
    EXPECT_EQ(spent(), "30.5 {1: 30.5}");
    EXPECT_EQ(till.plugin.discountImpacts.size(), 0);
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.card()->fields.pointsForSpend, 0.0);
    EXPECT_EQ(till.card()->fields.spentSum, 0.0) << "the host's to set";
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(0.0));
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 0);
    EXPECT_EQ(till.stored(u"bonusImpacts"_s).toList().size(), 1);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_F(Spending, DropsTheDiscountsBeforeTheServerIsAsked)
{
    qsizetype whileAsking = -1;
    till.server.whilePosting([&] { whileAsking = till.plugin.discountImpacts.size(); });

    EXPECT_FALSE(spend(30.0, "30.00").isEmpty());

    till.server.whilePosting({});
    EXPECT_EQ(whileAsking, 0);
}

TEST_F(Spending, IsLoggedBeforeTheServerIsAsked)
{
    std::string whileAsking;
    till.server.whilePosting([&] { whileAsking = till.log(); });

    EXPECT_FALSE(spend(30.99, "30.99").isEmpty());

    till.server.whilePosting({});
    EXPECT_EQ(whileAsking, "info: Создание оплаты бонусами в виде скидки на сумму 30, по карте 9000000001");
}

TEST_F(Spending, NegativeAmountIsTruncatedTowardsZeroInTheLog)
{
    EXPECT_TRUE(spend(-1.99, "-1.99").contains(u"<tem:amount>-1.99</tem:amount>"_s));
    EXPECT_EQ(till.log(), "info: Создание оплаты бонусами в виде скидки на сумму -1, по карте 9000000001");
}

TEST_F(Spending, AmountBeyondTheFormatOfTheLogIsCutThereAlone)
{
    EXPECT_TRUE(spend(1e12, "1e12").contains(u"<tem:amount>1000000000000.00</tem:amount>"_s));
    EXPECT_EQ(till.log(), "info: Создание оплаты бонусами в виде скидки на сумму 2147483647, по карте 9000000001");
}

TEST_F(Spending, NumberOfTheCardIsReadAsText)
{
    till.card()->fields.number = 9000000001LL;

    EXPECT_TRUE(spend(1.0, "1.00").contains(u"<tem:discountCardNumber>9000000001</tem:discountCardNumber>"_s));
    EXPECT_EQ(till.log(), "info: Создание оплаты бонусами в виде скидки на сумму 1, по карте 9000000001");
}

TEST_F(Spending, NumberOfTheCardIsNoFormat)
{
    till.card()->fields.number = u"%1%2"_s;

    EXPECT_FALSE(spend(1.0, "1.00").isEmpty());

    EXPECT_EQ(till.log(), "info: Создание оплаты бонусами в виде скидки на сумму 1, по карте %1%2");
}

TEST_F(Spending, RemainderIsWhatWasAskedForLessTheTotals)
{
    EXPECT_TRUE(spend(40.0, "12.25").contains(u"<tem:amount>40.00</tem:amount>"_s));
    EXPECT_EQ(spent(), "40 {1: 12.25}") << "the spread is the server's, and need not add up";
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
}

TEST_F(Spending, AmountIsRoundedOnTheWireAlone)
{
    EXPECT_TRUE(spend(10.129, "10.13").contains(u"<tem:amount>10.13</tem:amount>"_s));
    EXPECT_EQ(spent(), "10.129 {1: 10.13}");
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
}

TEST_F(Spending, SecondSpendingAddsARecord)
{
    EXPECT_FALSE(spend(30.0, "30.00").isEmpty());
    EXPECT_TRUE(spend(12.5, "10.00").contains(u"<tem:amount>12.50</tem:amount>"_s));
    EXPECT_EQ(spent(), "30 {1: 30}; 12.5 {1: 10}");
    EXPECT_EQ(till.stored(u"bonusImpacts"_s).toList().size(), 2);
}

TEST_F(Spending, LaterRequestBringsTheDiscountsBack)
{
    EXPECT_FALSE(spend(30.0, "30.00").isEmpty());
    EXPECT_EQ(till.plugin.getDiscountImpacts().size(), 0);
    till.requestWell();
    EXPECT_EQ(till.plugin.getDiscountImpacts().size(), 1);
    EXPECT_EQ(spent(), "30 {1: 30}") << "the spending stays";
}

// The server alone guards what the host may have got wrong.
TEST_F(Spending, MoreThanTheBalanceIsSentAllTheSame)
{
    till.card()->setBonusBalance(60.0);
    EXPECT_TRUE(spend(500.75, "500.75").contains(u"<tem:amount>500.75</tem:amount>"_s));
    EXPECT_EQ(spent(), "500.75 {1: 500.75}");
}

TEST_F(Spending, NothingIsSentAllTheSame)
{
    EXPECT_TRUE(spend(0.0, "0").contains(u"<tem:amount>0.00</tem:amount>"_s));
    EXPECT_EQ(spent(), "0 {1: 0}");
}

TEST_F(Spending, OfferOfTheServerIsWhatIsSentWithoutAChoice)
{
    till.answerSpending("50.00");
    EXPECT_TRUE(till.plugin.spendPoints());
    EXPECT_TRUE(till.server.take("SubtractBonus45").contains(u"<tem:amount>50.00</tem:amount>"_s));
}

TEST_F(Spending, LimitedAmountIsWhatIsSentAfterTheLimit)
{
    till.card()->setBonusBalance(20.7);
    EXPECT_EQ(till.plugin.getPointsForSpend(till.document()), 20.0);
    till.answerSpending("20.00");
    EXPECT_TRUE(till.plugin.spendPoints());
    EXPECT_TRUE(till.server.take("SubtractBonus45").contains(u"<tem:amount>20.00</tem:amount>"_s));
}

TEST_F(Spending, WithoutACardIsAFailureThatLeavesTheDiscounts)
{
    till.contents().removeCard(7);

    EXPECT_FALSE(till.plugin.spendPoints());

    till.server.expectNothing();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "error: В документе отсутствует карта Vantiro");
    EXPECT_EQ(till.lastError(), "vantiroCardNotFound: В документе отсутствует карта Vantiro");
    EXPECT_EQ(till.plugin.discountImpacts.size(), 1);
    EXPECT_EQ(till.plugin.pointsForSpend, 50.0);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
}

TEST_F(Spending, WithoutACardIsAFailureOfAnOfflineDocumentToo)
{
    till.contents().removeCard(7);
    till.goOffline();

    EXPECT_FALSE(till.plugin.spendPoints());

    EXPECT_EQ(till.lastError(), "vantiroCardNotFound: В документе отсутствует карта Vantiro");
    EXPECT_EQ(till.log(), "error: В документе отсутствует карта Vantiro");
}

TEST_F(Spending, OfAnOfflineDocumentDoesNothingAndIsFine)
{
    till.goOffline();

    EXPECT_TRUE(till.plugin.spendPoints());

    till.server.expectNothing();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(spent(), "");
    EXPECT_EQ(till.plugin.discountImpacts.size(), 1);
    EXPECT_EQ(till.plugin.pointsForSpend, 50.0);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.0));
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(PartialSpending, IsAlwaysAllowed)
{
    TillAtWork till(TillAtWork::saleWithoutCard());
    EXPECT_TRUE(till.plugin.isAllowPartialPointsSpend());
    till.goOffline();
    EXPECT_TRUE(till.plugin.isAllowPartialPointsSpend());
    till.open(nullptr);
    EXPECT_TRUE(till.plugin.isAllowPartialPointsSpend());
}

namespace {

struct Choice {
    const char* rule;
    double points;
};

void PrintTo(const Choice& row, std::ostream* out)
{
    *out << row.points;
}

class ChosenPoints : public testing::TestWithParam<Choice> { };

}

INSTANTIATE_TEST_SUITE_P(Amounts, ChosenPoints,
                         testing::Values(Choice { "Some", 12.345 }, Choice { "Nothing", 0.0 },
                                         Choice { "MoreThanTheBalance", 1e6 }, Choice { "Negative", -3.0 }),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST_P(ChosenPoints, AreKeptAsTheyAreAndNowhereElse)
{
    TillAtWork till;
    till.requestWell("50.00");
    till.card()->setBonusBalance(60.0);

    till.plugin.setPointsForSpend(till.document(), GetParam().points);

    EXPECT_EQ(till.plugin.pointsForSpend, GetParam().points);
    till.server.expectNothing();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(till.card()->fields.pointsForSpend, 50.0);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.0));
}

TEST(ChosenPointsDocument, IsNotUsed)
{
    TillAtWork till;
    till.plugin.setPointsForSpend(nullptr, 12.5);
    EXPECT_EQ(till.plugin.pointsForSpend, 12.5);
}
