#include "till/script/arguments.h"
#include "till/script/script_line.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;
using till::Arguments;

// What a verb takes of its line, one after the other, and what it refuses.

namespace {

[[nodiscard]] std::string refusal(const std::function<void()>& call)
{
    try {
        call();
    } catch (const till::ScriptError& error) {
        return error.text().toStdString();
    }
    return "(none)";
}

struct Row {
    const char* rule;
    const char* text;
    double value; // below zero: refused
};

class MoneyOf : public testing::TestWithParam<Row> { };
class QuantityOf : public testing::TestWithParam<Row> { };
class NumberOf : public testing::TestWithParam<Row> { };

void expectValue(const Row& row, const std::string& wanted, const std::function<double(const QString&)>& read)
{
    const QString text = QString::fromUtf8(row.text);
    if (row.value < 0) {
        EXPECT_EQ(refusal([&] { (void)read(text); }), "NAME must be " + wanted + ", not \"" + row.text + '"');
    } else {
        EXPECT_EQ(read(text), row.value);
    }
}

} // namespace

TEST_P(MoneyOf, Text)
{
    expectValue(GetParam(), "a number with at most 2 decimals",
                [](const QString& text) { return Arguments({ text }).money(u"NAME"_s); });
}

INSTANTIATE_TEST_SUITE_P(
    Texts, MoneyOf,
    testing::Values(Row { "Whole", "5", 5.0 }, Row { "Nothing", "0", 0.0 }, Row { "OneDecimal", "5.5", 5.5 },
                    Row { "TwoDecimals", "89.90", 89.90 }, Row { "LeadingZeros", "007.10", 7.10 },
                    Row { "Largest", "999999999.99", 999999999.99 }, Row { "ThreeDecimals", "1.234", -1 },
                    Row { "TooManyDigits", "1000000000", -1 }, Row { "Comma", "1,5", -1 }, Row { "Sign", "-1", -1 },
                    Row { "Plus", "+1", -1 }, Row { "PointAlone", ".", -1 }, Row { "NoWholePart", ".5", -1 },
                    Row { "NoDecimals", "5.", -1 }, Row { "Empty", "", -1 }, Row { "Blank", " 5", -1 },
                    Row { "Power", "1e3", -1 }, Row { "Word", "ten", -1 }, Row { "NotANumber", "nan", -1 },
                    Row { "Endless", "inf", -1 }, Row { "OtherDigits", "٥", -1 }, Row { "LineFeed", "5\n", -1 }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(QuantityOf, Text)
{
    expectValue(GetParam(), "a number with at most 3 decimals",
                [](const QString& text) { return Arguments({ text }).quantity(u"NAME"_s); });
}

INSTANTIATE_TEST_SUITE_P(Texts, QuantityOf,
                         testing::Values(Row { "Whole", "2", 2.0 }, Row { "ThreeDecimals", "0.335", 0.335 },
                                         Row { "FourDecimals", "0.3350", -1 }, Row { "Sign", "-2", -1 },
                                         Row { "Empty", "", -1 }),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST_P(NumberOf, Text)
{
    expectValue(GetParam(), "a whole number",
                [](const QString& text) { return Arguments({ text }).number(u"NAME"_s); });
}

INSTANTIATE_TEST_SUITE_P(Texts, NumberOf,
                         testing::Values(Row { "Whole", "1042", 1042 }, Row { "Nothing", "0", 0 },
                                         Row { "Largest", "999999999", 999999999 },
                                         Row { "TooLarge", "2147483648", -1 }, Row { "Sign", "-1", -1 },
                                         Row { "Plus", "+1", -1 }, Row { "Decimals", "1.0", -1 },
                                         Row { "Blank", " 1", -1 }, Row { "Word", "one", -1 }, Row { "Empty", "", -1 }),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST(Arguments, AreTakenInTheirOrder)
{
    Arguments arguments({ u"a"_s, u"7"_s, u"1.50"_s, u"0.125"_s });
    EXPECT_FALSE(arguments.isEmpty());
    EXPECT_EQ(arguments.word(u"W"_s).toStdString(), "a");
    EXPECT_EQ(arguments.number(u"N"_s), 7);
    EXPECT_EQ(arguments.money(u"M"_s), 1.5);
    EXPECT_EQ(arguments.quantity(u"Q"_s), 0.125);
    EXPECT_TRUE(arguments.isEmpty());
    arguments.requireEnd();
}

TEST(Arguments, OneThatIsMissingIsNamed)
{
    Arguments none({});
    EXPECT_EQ(refusal([&] { (void)none.word(u"CARD"_s); }), "CARD is missing");
    EXPECT_EQ(refusal([&] { (void)none.number(u"NUMBER"_s); }), "NUMBER is missing");
    EXPECT_EQ(refusal([&] { (void)none.money(u"AMOUNT"_s); }), "AMOUNT is missing");
    EXPECT_EQ(refusal([&] { (void)none.quantity(u"QUANTITY"_s); }), "QUANTITY is missing");
}

TEST(Arguments, OneTooManyIsQuoted)
{
    const Arguments left({ u"now"_s, u"then"_s });
    EXPECT_EQ(refusal([&] { left.requireEnd(); }), "\"now\" is not understood here");
}

TEST(Arguments, OptionalOnesMayBeMissingButNotWrong)
{
    Arguments none({});
    EXPECT_FALSE(none.numberIfAny(u"N"_s).has_value());
    EXPECT_FALSE(none.moneyIfAny(u"M"_s).has_value());
    EXPECT_EQ(Arguments({ u"7"_s }).numberIfAny(u"N"_s), 7);
    EXPECT_EQ(Arguments({ u"7.5"_s }).moneyIfAny(u"M"_s), 7.5);
    EXPECT_EQ(refusal([] { (void)Arguments({ u"x"_s }).numberIfAny(u"N"_s); }), "N must be a whole number, not \"x\"");
    EXPECT_EQ(refusal([] { (void)Arguments({ u"x"_s }).moneyIfAny(u"M"_s); }),
              "M must be a number with at most 2 decimals, not \"x\"");
}

TEST(Arguments, WordIsTakenOnlyWhenItIsTheOne)
{
    Arguments arguments({ u"code"_s, u"1"_s });
    EXPECT_FALSE(arguments.take(u"cod"_s));
    EXPECT_FALSE(arguments.take(u"Code"_s));
    EXPECT_TRUE(arguments.take(u"code"_s));
    EXPECT_FALSE(arguments.take(u"code"_s));
    EXPECT_EQ(arguments.word(u"W"_s).toStdString(), "1");
    EXPECT_FALSE(arguments.take(u"code"_s));
}

TEST(Arguments, MarkIsTakenOffItsWord)
{
    Arguments arguments({ u"x2"_s, u"@"_s, u"=a=b"_s });
    EXPECT_FALSE(arguments.takeAfter(u'@').has_value());
    EXPECT_EQ(arguments.takeAfter(u'x')->toStdString(), "2");
    EXPECT_EQ(arguments.takeAfter(u'@')->toStdString(), "");
    EXPECT_EQ(arguments.takeAfter(u'=')->toStdString(), "a=b");
    EXPECT_FALSE(arguments.takeAfter(u'x').has_value());
}
