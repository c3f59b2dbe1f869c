#include "tests/front/till_at_work.h"
#include "till/document/cheque_contents.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

using namespace Qt::StringLiterals;

// How much can points pay? The offer, cut down to the cheque, the balance and the step. Money rules live here alone, so
// each constant is held from both sides.

namespace {

struct Limit {
    const char* rule;
    double offer;
    double toPay;
    double balance;
    double precision;
    double result;
};

void PrintTo(const Limit& row, std::ostream* out)
{
    *out << "offer " << row.offer << ", to pay " << row.toPay << ", balance " << row.balance << ", precision "
         << row.precision;
}

std::string ruleOf(const testing::TestParamInfo<Limit>& row)
{
    return row.param.rule;
}

class PointsLimit : public testing::Test {
protected:
    void prepare(double offer, double toPay, const QVariant& balance, double precision)
    {
        till.plugin.pointsForSpend = offer;
        till.contents().head.sumToPay = toPay;
        till.card()->setBonusBalance(balance);
        till.plugin.setRoundPrecisionForSpend(precision);
    }

    [[nodiscard]] double limit()
    {
        const double result = till.plugin.getPointsForSpend(till.document());
        EXPECT_EQ(till.plugin.pointsForSpend, result) << "the result is kept";
        return result;
    }

    TillAtWork till;
};

class PointsLimitTable : public PointsLimit, public testing::WithParamInterface<Limit> { };

}

INSTANTIATE_TEST_SUITE_P(Amounts, PointsLimitTable,
                         testing::Values(Limit { "BalanceIsCutDownToTheStep", 100, 80, 60.7, 1, 60 },
                                         Limit { "NoPrecisionActsAsOne", 100, 80, 60.7, 0, 60 },
                                         Limit { "OfferIsCutDownToHalves", 10.25, 100, 100, 0.5, 10 },
                                         Limit { "OfferIsCutDownToKopecks", 12.349, 100, 100, 0.01, 12.34 },
                                         Limit { "WholeKopecksStay", 12.34, 100, 100, 0.01, 12.34 },
                                         Limit { "QuotientThatFallsJustShortIsWhole", 3.3, 100, 100, 0.1, 3.3 },
                                         Limit { "CloseToTheStepKeepsItsDigits", 100, 100, 59.99995, 1, 59.99995 },
                                         Limit { "NearTheStepMovesUpAboveTheBalance", 100, 100, 59.9995, 1, 60 },
                                         Limit { "NothingMovesAboveTheOffer", 59.9995, 100, 100, 1, 59.9995 },
                                         Limit { "NegativeBalanceGivesANegativeAmount", 100, 100, -1.5, 1, -1 }),
                         ruleOf);

INSTANTIATE_TEST_SUITE_P(
    SmallestOfThree, PointsLimitTable,
    testing::Values(Limit { "Offer", 30, 40, 50, 1, 30 }, Limit { "ToPay", 50, 30, 40, 1, 30 },
                    Limit { "Balance", 40, 50, 30, 1, 30 }, Limit { "AllTheSame", 30, 30, 30, 1, 30 },
                    Limit { "NothingOffered", 0, 100, 100, 1, 0 }, Limit { "NothingToPay", 100, 0, 100, 1, 0 },
                    Limit { "NothingOnTheCard", 100, 100, 0, 1, 0 }, Limit { "LessThanAStep", 0.98, 100, 100, 1, 0 },
                    Limit { "NegativeOffer", -7.25, 100, 100, 0.5, -7.25 },
                    Limit { "NegativeToPay", 100, -7.25, 100, 0.5, -7 }, Limit { "StepOfTens", 100, 95, 100, 10, 90 },
                    Limit { "Large", 1e9, 1e9, 123456789.87, 1, 123456789 },
                    Limit { "LargeInKopecks", 1e9, 1e9, 123456789.879, 0.01, 123456789.87 }),
    ruleOf);

// A thousandth of a step below a multiple is where an amount moves up to it.
INSTANTIATE_TEST_SUITE_P(Thousandth, PointsLimitTable,
                         testing::Values(Limit { "MoreBelowFallsAWholeStep", 100, 100, 59.9989, 1, 59 },
                                         Limit { "LessBelowMovesUp", 100, 100, 59.9991, 1, 60 },
                                         Limit { "MovesUpAboveTheSumToPay", 100, 59.9991, 100, 1, 60 },
                                         Limit { "MoreBelowInHalvesFallsAWholeStep", 100, 100, 59.9994, 0.5, 59.5 },
                                         Limit { "LessBelowInHalvesMovesUp", 100, 100, 59.9996, 0.5, 60 },
                                         Limit { "LessBelowInTensMovesUp", 200, 200, 99.9905, 10, 100 },
                                         Limit { "MoreBelowInTensFallsAWholeStep", 200, 200, 99.9895, 10, 90 },
                                         Limit { "NegativeMoreAboveRisesAWholeStep", 100, 100, -1.9989, 1, -1 },
                                         Limit { "NegativeLessAboveMovesDown", 100, 100, -1.9991, 1, -2 },
                                         Limit { "NegativeBelowIsCutTowardsZero", 100, 100, -1.0011, 1, -1 }),
                         ruleOf);

// A ten-thousandth of a step off a multiple, on either side, is where an amount keeps its digits.
INSTANTIATE_TEST_SUITE_P(TenThousandth, PointsLimitTable,
                         testing::Values(Limit { "JustBelowKeepsItsDigits", 100, 100, 59.99991, 1, 59.99991 },
                                         Limit { "FurtherBelowMovesUp", 100, 100, 59.99989, 1, 60 },
                                         Limit { "JustAboveKeepsItsDigits", 100, 100, 60.00009, 1, 60.00009 },
                                         Limit { "FurtherAboveIsCutDown", 100, 100, 60.00011, 1, 60 },
                                         Limit { "JustBelowInTensKeepsItsDigits", 200, 200, 99.9991, 10, 99.9991 },
                                         Limit { "FurtherBelowInTensMovesUp", 200, 200, 99.9989, 10, 100 },
                                         Limit { "NegativeJustAboveKeepsItsDigits", 100, 100, -1.99991, 1, -1.99991 },
                                         Limit { "NegativeFurtherAboveMovesDown", 100, 100, -1.99989, 1, -2 },
                                         Limit { "NegativeJustBelowKeepsItsDigits", 100, 100, -2.00009, 1, -2.00009 },
                                         Limit { "NextToNothingKeepsItsDigits", 100, 100, 0.00009, 1, 0.00009 }),
                         ruleOf);

// Nothing but the offer caps the result.
INSTANTIATE_TEST_SUITE_P(Cap, PointsLimitTable,
                         testing::Values(Limit { "OfferBetweenBalanceAndStep", 59.9997, 100, 59.9995, 1, 59.9997 },
                                         Limit { "OfferAtTheStep", 60, 100, 59.9995, 1, 60 },
                                         Limit { "NegativeOfferIsNotRaised", -1.5, 100, 100, 1, -1.5 }),
                         ruleOf);

TEST_P(PointsLimitTable, IsThisAmount)
{
    const Limit& row = GetParam();
    prepare(row.offer, row.toPay, row.balance, row.precision);

    EXPECT_DOUBLE_EQ(limit(), row.result);
}

TEST_F(PointsLimit, TellsThePointsInTheLogBeforeTheyAreLimited)
{
    prepare(100, 80, 60.7, 1);

    EXPECT_EQ(limit(), 60.0);

    EXPECT_EQ(till.log(), "debug: Доступно баллов для списания: 100.00");
}

TEST_F(PointsLimit, AsksNobodyAndStoresNothing)
{
    prepare(100, 80, 60.7, 1);
    till.card()->setPointsForSpend(33.0);

    EXPECT_EQ(limit(), 60.0);

    till.server.expectNothing();
    EXPECT_EQ(till.told(), "");
    EXPECT_FALSE(till.stored(u"pointsForSpend"_s).isValid());
    EXPECT_EQ(till.card()->fields.pointsForSpend, 33.0);
    EXPECT_EQ(till.card()->fields.bonusBalance, QVariant(60.7));
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_F(PointsLimit, OfTheLimitIsTheLimit)
{
    prepare(100, 80, 60.7, 1);
    EXPECT_EQ(limit(), 60.0);
    till.card()->setBonusBalance(1000.0);

    EXPECT_EQ(limit(), 60.0) << "the offer of the server is gone: the limited amount took its place";

    EXPECT_EQ(till.log(),
              "debug: Доступно баллов для списания: 100.00\n"
              "debug: Доступно баллов для списания: 60.00");
}

TEST_F(PointsLimit, SumToPayIsThatOfTheGivenDocument)
{
    prepare(100, 80, 60.7, 1);
    const auto given = TillAtWork::saleWithoutCard().identity(u"2"_s).build();
    given->head.sumToPay = 20.5;

    EXPECT_EQ(till.plugin.getPointsForSpend(given), 20.0) << "the balance is that of the card on the open document";
}

TEST_F(PointsLimit, BalanceThatIsNotKnownIsNothing)
{
    prepare(100, 80, QVariant(), 1);
    EXPECT_EQ(limit(), 0.0);
}

TEST_F(PointsLimit, BalanceIsReadAsANumberWhateverItsType)
{
    prepare(100, 80, u"60.7"_s, 1);
    EXPECT_EQ(limit(), 60.0);
    prepare(100, 80, 60, 1);
    EXPECT_EQ(limit(), 60.0);
}

TEST_F(PointsLimit, OfflineDocumentIsLimitedLikeAnyOther)
{
    prepare(100, 80, 60.7, 1);
    till.goOffline();
    EXPECT_EQ(limit(), 60.0);
}

// Minus nothing would go out as "-0.00".
TEST_F(PointsLimit, DebtOfLessThanAStepIsPlainNothing)
{
    prepare(100, 100, -0.4, 1);

    const double result = limit();

    EXPECT_EQ(result, 0.0);
    EXPECT_FALSE(std::signbit(result));
}
