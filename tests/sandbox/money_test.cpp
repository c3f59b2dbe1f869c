#include "sandbox/money.h"

#include <gtest/gtest.h>

using sandbox::Rounding;

TEST(Money, FixedTextsHaveExactlyTheirDecimals)
{
    EXPECT_EQ(sandbox::parseFixed("12.50", 2), 1250);
    EXPECT_EQ(sandbox::parseFixed("-0.01", 2), -1);
    EXPECT_EQ(sandbox::parseFixed("-0.00", 2), 0);
    EXPECT_EQ(sandbox::parseFixed("1.500", 3), 1500);
    EXPECT_EQ(sandbox::parseFixed("10000000000.00", 2), 1'000'000'000'000);
}

TEST(Money, OtherTextsAreNoNumbers)
{
    for (const char* const text :
         { "", "12", "12.5", "12.500", "12,50", "+1.00", "01.00", ".50", "1.", "-", "1e2.00", " 1.00", "1.00 ",
           "10000000000.01", "99999999999999999999.00", "0x1.00", "--1.00" }) {
        EXPECT_FALSE(sandbox::parseFixed(text, 2).has_value()) << text;
    }
}

TEST(Money, PeopleMayLeaveDecimalsOut)
{
    EXPECT_EQ(sandbox::parseDecimal("5", 2), 500);
    EXPECT_EQ(sandbox::parseDecimal("5.5", 2), 550);
    EXPECT_EQ(sandbox::parseDecimal("0.05", 6), 50'000);
    EXPECT_FALSE(sandbox::parseDecimal("5.555", 2).has_value());
    EXPECT_FALSE(sandbox::parseDecimal("5.", 2).has_value());
    EXPECT_FALSE(sandbox::parseDecimal("1.0", 0).has_value());
}

TEST(Money, TextsHaveTwoDecimals)
{
    EXPECT_EQ(sandbox::moneyText(0), "0.00");
    EXPECT_EQ(sandbox::moneyText(5), "0.05");
    EXPECT_EQ(sandbox::moneyText(-5), "-0.05");
    EXPECT_EQ(sandbox::moneyText(123'450), "1234.50");
}

TEST(Money, RoundingWorksOnTheDistanceFromZero)
{
    EXPECT_EQ(sandbox::multiplyDivide(5, 1, 2, Rounding::down), 2);
    EXPECT_EQ(sandbox::multiplyDivide(5, 1, 2, Rounding::nearest), 3);
    EXPECT_EQ(sandbox::multiplyDivide(5, 1, 4, Rounding::nearest), 1);
    EXPECT_EQ(sandbox::multiplyDivide(5, 1, 4, Rounding::up), 2);
    EXPECT_EQ(sandbox::multiplyDivide(4, 1, 4, Rounding::up), 1);
    EXPECT_EQ(sandbox::multiplyDivide(-5, 1, 2, Rounding::down), -2);
    EXPECT_EQ(sandbox::multiplyDivide(-5, 1, 2, Rounding::nearest), -3);
}

TEST(Money, LargeProductsAreExact)
{
    EXPECT_EQ(sandbox::multiplyDivide(1'000'000'000'000, 999'999'999'999, 1'000'000'000'000, Rounding::down),
              999'999'999'999);
}
