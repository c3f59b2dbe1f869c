#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

namespace {

/// The answer with its markup as markup.
[[nodiscard]] std::string discounts(const ChequeText& cheque)
{
    const SandboxUnderTest sandbox;
    std::string text = sandbox.service.result("GetDiscounts", cheque.parameter());
    for (const auto& [from, to] : { std::pair("&lt;", "<"), std::pair("&gt;", ">") }) {
        for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from)) {
            text.replace(at, 4, to);
        }
    }
    return text;
}

}

TEST(SandboxDiscounts, NothingIsGrantedWithoutARule)
{
    EXPECT_EQ(discounts(ChequeText()), "");
}

TEST(SandboxDiscounts, GoodsOfARuleGetTheirPercent)
{
    ChequeText cheque;
    cheque.lines = LineText { .number = "1", .item = "1001", .amount = "99.95" }.xml()
        + LineText { .number = "2", .item = "2001", .amount = "50.00" }.xml();
    EXPECT_EQ(discounts(cheque),
              "<Answer><Cheque></Cheque><ChequeLine ChequeLineNo=\"1\">"
              "<Discount DiscountID=\"11\" Type=\"Percent\" Percent=\"10\" Amount=\"10.00\"/></ChequeLine></Answer>");
}

TEST(SandboxDiscounts, RulesThatNeedACardGiveNothingWithoutOne)
{
    ChequeText cheque;
    cheque.card = "";
    cheque.lines = LineText { .item = "1001" }.xml();
    EXPECT_EQ(discounts(cheque), "");
}

TEST(SandboxDiscounts, ChequeDiscountIsTakenOfWhatLinesLeave)
{
    ChequeText cheque;
    cheque.amount = "1500.00";
    cheque.lines = LineText { .number = "1", .item = "1001", .amount = "1000.00" }.xml()
        + LineText { .number = "2", .item = "2001", .amount = "500.00" }.xml();
    // 3 percent of 900 and 500
    EXPECT_EQ(discounts(cheque),
              "<Answer><Cheque><Discount DiscountID=\"12\" Type=\"Percent\" Percent=\"3\" Amount=\"42.00\"/></Cheque>"
              "<ChequeLine ChequeLineNo=\"1\">"
              "<Discount DiscountID=\"11\" Type=\"Percent\" Percent=\"10\" Amount=\"100.00\"/></ChequeLine></Answer>");
}

TEST(SandboxDiscounts, FromIsTheChequesSum)
{
    ChequeText cheque;
    cheque.amount = "999.99";
    cheque.lines = LineText { .amount = "999.99" }.xml();
    EXPECT_EQ(discounts(cheque), "");
    cheque.amount = "1000.00";
    cheque.lines = LineText { .amount = "1000.00" }.xml();
    EXPECT_EQ(discounts(cheque),
              "<Answer><Cheque><Discount DiscountID=\"12\" Type=\"Percent\" Percent=\"3\" Amount=\"30.00\"/></Cheque>"
              "</Answer>");
}

TEST(SandboxDiscounts, LeastSumCutsADiscountDown)
{
    ChequeText cheque;
    cheque.lines = LineText { .item = "1001", .minAmount = "95.50" }.xml();
    EXPECT_EQ(discounts(cheque),
              "<Answer><Cheque></Cheque><ChequeLine ChequeLineNo=\"1\">"
              "<Discount DiscountID=\"11\" Type=\"Amount\" Percent=\"0\" Amount=\"4.50\"/></ChequeLine></Answer>");
    cheque.lines = LineText { .item = "1001", .minAmount = "100.00" }.xml();
    EXPECT_EQ(discounts(cheque), "");
}

TEST(SandboxDiscounts, LinesWithoutDiscountsAreLeftAlone)
{
    ChequeText cheque;
    cheque.lines = LineText { .item = "1001", .noDiscounts = "true" }.xml();
    cheque.coupons = coupon("vantiro-10");
    EXPECT_EQ(discounts(cheque), "");
}

TEST(SandboxDiscounts, CouponsCountWhereTheyLie)
{
    ChequeText cheque;
    cheque.card = "";
    cheque.lines = LineText { .inside = coupon("line-15") }.xml();
    cheque.coupons = coupon("vantiro-10");
    // 10 percent of the 85 that are left
    EXPECT_EQ(discounts(cheque),
              "<Answer><Cheque><Discount DiscountID=\"21\" Type=\"Percent\" Percent=\"10\" Amount=\"8.50\"/></Cheque>"
              "<ChequeLine ChequeLineNo=\"1\">"
              "<Discount DiscountID=\"22\" Type=\"Percent\" Percent=\"15\" Amount=\"15.00\"/></ChequeLine></Answer>");
    cheque.lines = LineText { .inside = coupon("vantiro-10") }.xml();
    cheque.coupons = coupon("line-15") + coupon("vantiro-old") + coupon("unknown");
    EXPECT_EQ(discounts(cheque), "");
}

TEST(SandboxDiscounts, AskingAgainGivesTheSame)
{
    ChequeText cheque;
    // The sum without our own discount is 94.50; the other discount is not ours.
    cheque.lines
        = LineText { .item = "1001",
                     .amount = "85.00",
                     .discounts = "<Discount DiscountID=\"11\" Type=\"Percent\" Percent=\"10\" Amount=\"9.50\"/>"
                                  "<Discount DiscountID=\"0\" Type=\"Amount\" Percent=\"0\" Amount=\"5.50\"/>" }
              .xml();
    EXPECT_EQ(discounts(cheque),
              "<Answer><Cheque></Cheque><ChequeLine ChequeLineNo=\"1\">"
              "<Discount DiscountID=\"11\" Type=\"Percent\" Percent=\"10\" Amount=\"9.45\"/></ChequeLine></Answer>");
}

TEST(SandboxDiscounts, NegativeSumsGetNothing)
{
    ChequeText cheque;
    cheque.amount = "-100.00";
    cheque.lines = LineText { .item = "1001", .amount = "-100.00", .minAmount = "-200.00" }.xml();
    cheque.coupons = coupon("vantiro-10");
    EXPECT_EQ(discounts(cheque), "");
}
