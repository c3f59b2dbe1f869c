#include "sandbox/points.h"
#include "sandbox/slip.h"

#include <gmock/gmock.h>

using sandbox::Cheque;
using sandbox::PointRule;
using sandbox::Rounding;
using ::testing::ElementsAre;

namespace {

[[nodiscard]] Cheque chequeOf(const std::vector<sandbox::Kopecks>& amounts)
{
    Cheque cheque;
    for (const sandbox::Kopecks amount : amounts) {
        sandbox::ChequeLine line;
        line.earnsPoints = true;
        line.takesPoints = true;
        line.amount = amount;
        cheque.lines.push_back(line);
        cheque.amount += amount;
    }
    return cheque;
}

[[nodiscard]] PointRule rule(std::int64_t perRouble, sandbox::Kopecks step, Rounding rounding)
{
    return { 5000, perRouble, step, rounding };
}

}

TEST(SandboxPoints, EarningIsAMultipleOfTheStep)
{
    const Cheque cheque = chequeOf({ 15'550 }); // 155.50, of which 5 percent is 7.775
    EXPECT_THAT(earnedByLine(cheque, rule(50'000, 1, Rounding::down)), ElementsAre(777));
    EXPECT_THAT(earnedByLine(cheque, rule(50'000, 1, Rounding::nearest)), ElementsAre(778));
    EXPECT_THAT(earnedByLine(cheque, rule(50'000, 100, Rounding::down)), ElementsAre(700));
    EXPECT_THAT(earnedByLine(cheque, rule(50'000, 100, Rounding::nearest)), ElementsAre(800));
    EXPECT_THAT(earnedByLine(cheque, rule(50'000, 500, Rounding::up)), ElementsAre(1000));
    EXPECT_THAT(earnedByLine(cheque, rule(50'000, 1000, Rounding::down)), ElementsAre(0));
}

TEST(SandboxPoints, EarningIsSpreadByWhatWasPaid)
{
    EXPECT_THAT(earnedByLine(chequeOf({ 10'000, 20'000, 0 }), rule(100'000, 100, Rounding::down)),
                ElementsAre(1000, 2000, 0));
    EXPECT_THAT(earnedByLine(chequeOf({ 19, 19, 19 }), rule(50'000, 1, Rounding::down)), ElementsAre(1, 1, 0));
}

TEST(SandboxPoints, NothingIsEarnedOnNothing)
{
    EXPECT_THAT(earnedByLine(chequeOf({}), rule(50'000, 1, Rounding::up)), ElementsAre());
    EXPECT_THAT(earnedByLine(chequeOf({ 0, -500 }), rule(50'000, 1, Rounding::up)), ElementsAre(0, 0));
    EXPECT_THAT(earnedByLine(chequeOf({ 100 }), rule(0, 1, Rounding::up)), ElementsAre(0));
}

TEST(SandboxPoints, LargestChequeDoesNotOverflow)
{
    const Cheque cheque = chequeOf({ sandbox::moneyLimit });
    EXPECT_THAT(earnedByLine(cheque, rule(1'000'000, 1, Rounding::down)), ElementsAre(sandbox::moneyLimit));
    EXPECT_EQ(spendable(cheque, rule(0, 1, Rounding::down), sandbox::moneyLimit, 0), sandbox::moneyLimit / 2);
}

TEST(SandboxSlip, BarcodeHoldsTheNumberAndItsCheckDigit)
{
    EXPECT_EQ(sandbox::chequeBarcode("1042"), "2000000010427");
    EXPECT_EQ(sandbox::chequeBarcode(""), "2000000000008");
    EXPECT_EQ(sandbox::chequeBarcode("12345678901"), "2023456789013");
}

TEST(SandboxSlip, LinesOfASlipEndAsTheServiceEndsThem)
{
    EXPECT_EQ(sandbox::slipText("<doc>\n<f0>{cheque}</f0>\n</doc>", { { "cheque", "7 & 8" } }),
              "&lt;doc&gt;&#xD;\n&lt;f0&gt;7 &amp;amp; 8&lt;/f0&gt;&#xD;\n&lt;/doc&gt;");
}

TEST(SandboxSlip, ValuesAreFilledInOneStep)
{
    EXPECT_EQ(sandbox::slipText("{cheque} {uid} {other}", { { "cheque", "{uid}" }, { "uid", "U" } }),
              "{uid} U {other}");
}
