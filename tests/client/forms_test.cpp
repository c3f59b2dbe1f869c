#include "client/forms.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using vantiro::forms::dateTime;
using vantiro::forms::money;
using vantiro::forms::quantity;

namespace {

struct Sum {
    const char* name;
    double value;
    const char* form;
};

class MoneyForm : public testing::TestWithParam<Sum> { };
class QuantityForm : public testing::TestWithParam<Sum> { };

}

TEST_P(MoneyForm, HasTwoDecimals)
{
    EXPECT_EQ(money(GetParam().value).toStdString(), GetParam().form);
}

// The doubles next to 0.125, 1.005 and 2.675 lie on it, below and below: their exact values decide.
INSTANTIATE_TEST_SUITE_P(Forms, MoneyForm,
                         testing::Values(Sum { "Nothing", 0.0, "0.00" }, Sum { "Price", 89.9, "89.90" },
                                         Sum { "OneKopeck", 0.01, "0.01" }, Sum { "NextRouble", 0.996, "1.00" },
                                         Sum { "Returned", -1042.25, "-1042.25" },
                                         Sum { "BelowTheMiddle", 1.005, "1.00" },
                                         Sum { "BelowTheMiddleToo", 2.675, "2.67" },
                                         Sum { "AboveTheMiddle", 1.0050000000000003, "1.01" },
                                         Sum { "InTheMiddleAbove", 0.125, "0.13" },
                                         Sum { "InTheMiddleBelow", 0.375, "0.38" },
                                         Sum { "JustBelowAMillion", 999999.99, "999999.99" },
                                         Sum { "AMillion", 1000000.0, "1000000.00" },
                                         Sum { "Large", 123456789012.34, "123456789012.34" }),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(QuantityForm, HasThreeDecimals)
{
    EXPECT_EQ(quantity(GetParam().value).toStdString(), GetParam().form);
}

INSTANTIATE_TEST_SUITE_P(Forms, QuantityForm,
                         testing::Values(Sum { "Nothing", 0.0, "0.000" }, Sum { "One", 1.0, "1.000" },
                                         Sum { "Weight", 0.35, "0.350" }, Sum { "Gram", 0.001, "0.001" },
                                         Sum { "LessThanAGram", 0.0004, "0.000" },
                                         Sum { "BelowTheMiddle", 1.0005, "1.000" },
                                         Sum { "Large", 1234567.8, "1234567.800" }),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FixedForms, AreThoseOfTheExactValue)
{
    std::mt19937_64 random(20241105);
    std::uniform_real_distribution<double> size(-7.0, 9.0);
    for (int i = 0; i < 200000; ++i) {
        double value = std::pow(10.0, size(random)) * (i % 2 == 0 ? 1.0 : -1.0);
        if (i % 4 >= 2) { // a half of the last digit, and what lies next to it
            value = (std::floor(value * 100.0) + 0.5) / 100.0;
            value = i % 8 >= 6 ? std::nextafter(value, std::numeric_limits<double>::infinity()) : value;
        }
        ASSERT_EQ(money(value).toStdString(), QString::number(value, 'f', 2).toStdString()) << i;
        ASSERT_EQ(quantity(value).toStdString(), QString::number(value, 'f', 3).toStdString()) << i;
    }
}

TEST(DateTimeForm, IsThatOfTheTimeZoneThatTheValueHolds)
{
    const QDate date(2024, 3, 5);
    const QTime time(14, 7, 9, 987);
    EXPECT_EQ(dateTime(QDateTime(date, time)).toStdString(), "2024-03-05T14:07:09");
    EXPECT_EQ(dateTime(QDateTime(date, time, Qt::UTC)).toStdString(), "2024-03-05T14:07:09");
    EXPECT_EQ(dateTime(QDateTime(date, time, Qt::OffsetFromUTC, 5 * 3600)).toStdString(), "2024-03-05T14:07:09");
}

TEST(DateTimeForm, HasZerosBeforeShortNumbers)
{
    EXPECT_EQ(dateTime(QDateTime(QDate(812, 1, 2), QTime(0, 0, 0))).toStdString(), "0812-01-02T00:00:00");
    EXPECT_EQ(dateTime(QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59))).toStdString(), "9999-12-31T23:59:59");
}

TEST(DateTimeForm, HasAsManyDigitsAsTheYear)
{
    EXPECT_EQ(dateTime(QDateTime(QDate(10000, 1, 2), QTime(3, 4, 5))).toStdString(), "10000-01-02T03:04:05");
    EXPECT_EQ(dateTime(QDateTime(QDate(-44, 3, 15), QTime(12, 0, 0))).toStdString(), "-0044-03-15T12:00:00");
}

TEST(DateTimeForm, IsEmptyForAnInvalidValue)
{
    EXPECT_EQ(dateTime(QDateTime()).toStdString(), "");
}
