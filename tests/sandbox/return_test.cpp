#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

namespace {

class SandboxReturn : public ::testing::Test {
protected:
    void accrue(const ChequeText& cheque) const
    {
        static_cast<void>(sandbox.service.result("Accrual", cheque.parameter()));
    }

    [[nodiscard]] std::string balance() const
    {
        return sandbox.service.balance("9000000001");
    }

    /// Three of one thing for 100, one of another for 50, 40 of it paid with points: 24 and 16.
    [[nodiscard]] static ChequeText sale()
    {
        ChequeText cheque = closedSale();
        cheque.amount = "110.00";
        cheque.spent = "40.00";
        cheque.lines
            = LineText { .number = "1", .item = "A", .amount = "100.00", .bonus = "24.00", .quantity = "3.000" }.xml()
            + LineText { .number = "2", .item = "B", .amount = "50.00", .bonus = "16.00" }.xml();
        return cheque;
    }

    [[nodiscard]] static ChequeText returnOf(const std::string& uidStart, const std::string& lines)
    {
        ChequeText cheque = closedReturn();
        cheque.uid = uidStart + cheque.uid.substr(uidStart.size());
        cheque.lines = lines;
        return cheque;
    }

    SandboxUnderTest sandbox;
};

}

TEST_F(SandboxReturn, WholeReturnUndoesTheSale)
{
    accrue(sale());
    EXPECT_EQ(balance(), "465.50"); // 40 spent, 5 percent of 110 earned
    accrue(returnOf("3",
                    LineText { .number = "1", .item = "A", .quantity = "3.000" }.xml()
                        + LineText { .number = "2", .item = "B" }.xml()));
    EXPECT_EQ(balance(), "500.00");
}

TEST_F(SandboxReturn, PartsAddUpToTheWholeHoweverTheyCome)
{
    accrue(sale());
    // Line A has earned 3.80 and spent 24: a third each time.
    accrue(returnOf("3", LineText { .item = "A" }.xml()));
    EXPECT_EQ(balance(), "472.24"); // 465.50 + 8.00 - 1.26
    accrue(returnOf("4", LineText { .item = "A" }.xml()));
    EXPECT_EQ(balance(), "478.97"); // + 8.00 - 1.27
    accrue(returnOf("5", LineText { .item = "A" }.xml()));
    EXPECT_EQ(balance(), "485.70"); // + 8.00 - 1.27
    accrue(returnOf("6", LineText { .item = "B" }.xml()));
    EXPECT_EQ(balance(), "500.00"); // + 16.00 - 1.70
}

TEST_F(SandboxReturn, MoreThanWasSoldChangesNothing)
{
    accrue(sale());
    accrue(returnOf("3", LineText { .item = "B", .quantity = "5.000" }.xml()));
    EXPECT_EQ(balance(), "479.80"); // + 16.00 - 1.70
    const ChequeText second = returnOf("4", LineText { .item = "B" }.xml());
    accrue(second);
    EXPECT_EQ(balance(), "479.80");
    EXPECT_EQ(sandbox.control.cheque(second.uid)["note"],
              "more is returned than the sale has left: the rest changes no points");
}

TEST_F(SandboxReturn, BooksNameTheSaleAndWhatCameBack)
{
    accrue(sale());
    const ChequeText back = returnOf("3", LineText { .item = "B" }.xml());
    accrue(back);
    const nlohmann::json cheque = sandbox.control.cheque(back.uid);
    EXPECT_EQ(cheque["sale"], sale().uid);
    EXPECT_EQ(cheque["earned"], "-1.70");
    EXPECT_EQ(cheque["spent"], "-16.00");
}

TEST_F(SandboxReturn, ReturnWithoutACardGoesToTheCardOfTheSale)
{
    accrue(sale());
    ChequeText back = returnOf("3", LineText { .item = "B" }.xml());
    back.card = "";
    accrue(back);
    EXPECT_EQ(balance(), "479.80");
}

TEST_F(SandboxReturn, ReturnOfASaleWithoutACardChangesNoPoints)
{
    ChequeText cheque = closedSale();
    cheque.card = "";
    accrue(cheque);
    accrue(closedReturn());
    EXPECT_EQ(balance(), "500.00");
    EXPECT_EQ(sandbox.control.cheque(closedReturn().uid)["sale"], cheque.uid);
}

TEST_F(SandboxReturn, ReturnWithoutAKnownSaleTakesBackByTheRules)
{
    ChequeText back = closedReturn();
    back.saleOpenTime = "2024-03-05T14:07:10"; // a second off
    accrue(back);
    EXPECT_EQ(balance(), "495.00");
    EXPECT_EQ(sandbox.control.cheque(back.uid)["note"],
              "the sale is not known: points are taken back by the present rules");
    back = returnOf("3", LineText().xml());
    back.saleNumber = "";
    accrue(back);
    EXPECT_EQ(balance(), "490.00");
}

TEST_F(SandboxReturn, BalanceMayGoBelowZero)
{
    ChequeText back = closedReturn();
    back.card = "9000000002";
    back.amount = "1000.00";
    back.lines = LineText { .amount = "1000.00" }.xml();
    accrue(back);
    EXPECT_EQ(sandbox.service.balance("9000000002"), "-40.00");
    EXPECT_EQ(sandbox.service.result("GetCardDiscountAmount",
                                     card("9000000002") + ChequeText { .card = "9000000002" }.parameter()),
              "0.00");
}

TEST_F(SandboxReturn, CanceledReturnChangesNoPoints)
{
    accrue(sale());
    ChequeText back = closedReturn();
    back.status = "Canceled";
    back.lines = LineText { .item = "B" }.xml();
    accrue(back);
    EXPECT_EQ(balance(), "465.50");
}

TEST_F(SandboxReturn, ReturnPrintsNothing)
{
    EXPECT_EQ(sandbox.service.result("Accrual", closedReturn().parameter()), "");
}
