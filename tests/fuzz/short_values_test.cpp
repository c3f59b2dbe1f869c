#include "tests/fuzz/judge.h"
#include "tests/fuzz/short_texts.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

// What stands in a value decides over money: every text of a few signs is read as a number, as a piece of a text that
// is escaped once more, and as a number of the stored cheque, and held against the other reading.

namespace {

using fuzz::Pieces;

const Pieces numbers { "0", "1", ".", ",", "-", "e", " ", "x", "nan", "\xC2\xA0" };
const Pieces escapes { "&", "amp;", "lt;", "quot;", "#xD;", "#13;", "a", "<", "b/>", "\xC2\xA0" };
const Pieces json { "0", "1", ".", "-", "e", " ", ",", "\"", "a", "{", "null" };

struct Value {
    const char* name;
    const char* target;
    const char* before;
    const char* behind;
    const Pieces* pieces;
    int most;
};

void PrintTo(const Value& value, std::ostream* out)
{
    *out << value.name;
}

class ShortValues : public testing::TestWithParam<Value> { };

} // namespace

TEST_P(ShortValues, AreReadAsTheOtherReaderReadsThem)
{
    const Value& value = GetParam();
    const fuzz::Target& target = fuzz::targetOf(value.target);
    target.read({}); // what is made at the first use must not count as the time of an input
    std::string problems;
    fuzz::eachText(*value.pieces, value.most, [&](const std::string& text) {
        const std::string whole = value.before + text + value.behind;
        try {
            fuzz::judge(target, whole);
        } catch (const fuzz::BrokenPromise& promise) {
            problems += whole + "\n  " + promise.what() + '\n';
        }
    });
    EXPECT_EQ(problems, "");
}

INSTANTIATE_TEST_SUITE_P(
    Places, ShortValues,
    testing::Values(
        Value { "Balance", "balance", "<a><Balance Value=\"", "\"/></a>", &numbers, 3 },
        Value { "SumOfADiscount", "discounts", "<Answer><Cheque><Discount DiscountID=\"7\" Amount=\"",
                "\"/></Cheque></Answer>", &numbers, 3 },
        Value { "CodeOfADiscount", "discounts", "<Answer><Cheque><Discount DiscountID=\"",
                "\" Amount=\"5\"/></Cheque></Answer>", &numbers, 3 },
        Value { "LineOfADiscount", "discounts", "<ChequeLine ChequeLineNo=\"",
                "\"><Discount DiscountID=\"8\" Type=\"Percent\" Percent=\"5\" Amount=\"5\"/></ChequeLine>", &numbers,
                3 },
        Value { "RateOfADiscount", "discounts",
                "<ChequeLine ChequeLineNo=\"3\"><Discount DiscountID=\"8\" Type=\"Percent\" Percent=\"",
                "\" Amount=\"5\"/></ChequeLine>", &numbers, 3 },
        Value { "Device", "messages", "<Messages><Msg Device=\"", "\" Body=\"text\"/></Messages>", &numbers, 3 },
        Value { "PointsOnALine", "subtraction", "<Answer><ChequeLine ChequeLineNo=\"1\" Amount=\"", "\"/></Answer>",
                &numbers, 3 },
        Value { "LineOfPoints", "subtraction", "<Answer><ChequeLine ChequeLineNo=\"", "\" Amount=\"40\"/></Answer>",
                &numbers, 3 },
        Value { "TextOfABalance", "balance", "<a><Balance Value=\"1\"/>", "</a>", &escapes, 3 },
        Value { "TextOfAMessage", "messages", "<Messages><Msg Device=\"1\" Body=\"", "\"/></Messages>", &escapes, 3 },
        Value { "TextOfASpread", "subtraction", "<Answer>", "<ChequeLine ChequeLineNo=\"1\" Amount=\"4\"/></Answer>",
                &escapes, 3 },
        Value { "TextOfASlip", "report", "<doc><f1>", "</f1></doc>", &escapes, 3 },
        Value { "SlipOfNoMarkup", "report", "", "", &escapes, 3 },
        Value { "StoredPoints", "restore", "{\"Vantiro\":{\"pointsForSpend\":", "}}", &json, 3 },
        Value { "StoredDiscount", "restore",
                "{\"Vantiro\":{\"discountImpacts\":[{\"totals\":{\"discountSum\":", "},\"details\":{}}]}}", &json, 2 },
        Value { "StoredFlag", "restore", "{\"Vantiro\":{\"offlineMode\":", "}}", &json, 2 }),
    [](const auto& row) { return std::string(row.param.name); });
