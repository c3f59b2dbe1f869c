#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

namespace {

class SandboxAccrual : public ::testing::Test {
protected:
    std::string accrue(const ChequeText& cheque) const
    {
        return sandbox.service.result("Accrual", cheque.parameter());
    }

    [[nodiscard]] std::string balance(const std::string& number = "9000000001") const
    {
        return sandbox.service.balance(number);
    }

    void subtract(const std::string& sum, const ChequeText& cheque = {}) const
    {
        const std::string parameters = card(cheque.card) + amount(sum) + cheque.parameter();
        ASSERT_EQ(sandbox.service.call("SubtractBonus45", parameters).status, 200);
    }

    SandboxUnderTest sandbox;
};

}

TEST_F(SandboxAccrual, SaleEarnsAndPrints)
{
    EXPECT_EQ(accrue(closedSale()),
              "&amp;lt;doc&amp;gt;&amp;lt;pair left=\"1042/17\" right=\"100.00\"/&amp;gt;&amp;lt;f0&amp;gt;"
              "5.00 0.00 505.00 &amp;amp;amp; 9000000001&amp;lt;/f0&amp;gt;&amp;lt;/doc&amp;gt;");
    EXPECT_EQ(balance(), "505.00");
}

TEST_F(SandboxAccrual, OfflineSaleIsTheSame)
{
    EXPECT_EQ(sandbox.service.result("OfflineAccrual", closedSale().parameter()),
              "&amp;lt;doc&amp;gt;&amp;lt;pair left=\"1042/17\" right=\"100.00\"/&amp;gt;&amp;lt;f0&amp;gt;"
              "5.00 0.00 505.00 &amp;amp;amp; 9000000001&amp;lt;/f0&amp;gt;&amp;lt;/doc&amp;gt;");
    EXPECT_EQ(balance(), "505.00");
}

TEST_F(SandboxAccrual, EarningIsRoundedOnceForTheCheque)
{
    ChequeText cheque = closedSale();
    cheque.amount = "0.57";
    cheque.lines = LineText { .number = "1", .amount = "0.19" }.xml()
        + LineText { .number = "2", .amount = "0.19" }.xml() + LineText { .number = "3", .amount = "0.19" }.xml();
    accrue(cheque);
    EXPECT_EQ(balance(), "500.02"); // 0.0285 rounded down, not three times nothing
}

TEST_F(SandboxAccrual, LinesWithoutEarningAndPointsEarnNothing)
{
    ChequeText cheque = closedSale();
    cheque.amount = "180.00";
    cheque.spent = "20.00";
    cheque.lines
        = LineText { .number = "1", .bonus = "20.00" }.xml() + LineText { .number = "2", .noAddBonus = "true" }.xml();
    subtract("20.00");
    accrue(cheque);
    EXPECT_EQ(balance(), "484.00"); // 5 percent of 80
}

TEST_F(SandboxAccrual, DiscountThatNoLineShowsIsTakenOffAllAlike)
{
    ChequeText cheque = closedSale();
    cheque.amount = "180.00"; // 10 percent off 200
    cheque.lines = LineText { .number = "1" }.xml() + LineText { .number = "2", .noAddBonus = "true" }.xml();
    accrue(cheque);
    EXPECT_EQ(balance(), "504.50"); // 5 percent of 90
}

TEST_F(SandboxAccrual, CertificatesAreMoneyAndNoCards)
{
    ChequeText cheque = closedSale();
    cheque.certificate = "40.00";
    accrue(cheque);
    EXPECT_EQ(balance(), "505.00");
    EXPECT_EQ(sandbox.control.cheque(cheque.uid)["card"], "9000000001");
}

TEST_F(SandboxAccrual, SpendingStandsWhenTheChequeShowsIt)
{
    ChequeText cheque = closedSale();
    cheque.amount = "70.00";
    cheque.spent = "30.00";
    cheque.lines = LineText { .bonus = "30.00" }.xml();
    subtract("30.00");
    accrue(cheque);
    EXPECT_EQ(balance(), "473.50"); // 5 percent of 70
    EXPECT_EQ(sandbox.control.cheque(cheque.uid)["spent"], "30.00");
    EXPECT_EQ(sandbox.control.cheque(cheque.uid)["note"], "");
}

TEST_F(SandboxAccrual, SpendingThatTheTillNeverLearntOfIsGivenBack)
{
    subtract("30.00");
    accrue(closedSale());
    EXPECT_EQ(balance(), "505.00");
    EXPECT_EQ(sandbox.control.cheque(closedSale().uid)["note"],
              "points that were subtracted before are given back: the cheque does not show them");
}

TEST_F(SandboxAccrual, SpendingThatWasCancelledUnnoticedIsTakenAgain)
{
    ChequeText cheque = closedSale();
    cheque.amount = "70.00";
    cheque.spent = "30.00";
    cheque.lines = LineText { .bonus = "30.00" }.xml();
    accrue(cheque);
    EXPECT_EQ(balance(), "473.50");
    EXPECT_EQ(sandbox.control.cheque(cheque.uid)["note"],
              "points that the cheque shows are taken: they were not subtracted before");
}

TEST_F(SandboxAccrual, SaleWithoutACardIsBookedAndPrintsPlainText)
{
    ChequeText cheque = closedSale();
    cheque.card = "";
    EXPECT_EQ(accrue(cheque), "Чек 1042 на 100.00 &amp; &lt;без карты&gt;");
    EXPECT_EQ(sandbox.control.cheque(cheque.uid)["amount"], "100.00");
    EXPECT_EQ(sandbox.control.cheque(cheque.uid)["earned"], "0.00");
    EXPECT_TRUE(sandbox.control.cheque(cheque.uid)["card"].is_null());
    EXPECT_EQ(balance(), "500.00");
}

TEST_F(SandboxAccrual, BlockedCardIsBookedAndEarnsNothing)
{
    ChequeText cheque = closedSale();
    cheque.card = "9000000666";
    accrue(cheque);
    EXPECT_EQ(sandbox.control.cheque(cheque.uid)["earned"], "0.00");
    EXPECT_EQ(sandbox.control.cheque(cheque.uid)["note"], "the card is blocked and earns nothing");
}

TEST_F(SandboxAccrual, CanceledChequeIsBookedAndGivesItsSpendingBack)
{
    subtract("30.00");
    EXPECT_EQ(balance(), "470.00");
    ChequeText cheque = closedSale();
    cheque.status = "Canceled";
    cheque.spent = "30.00";
    EXPECT_EQ(accrue(cheque), "");
    EXPECT_EQ(balance(), "500.00");
    EXPECT_EQ(sandbox.control.cheque(cheque.uid)["status"], "Canceled");
    EXPECT_EQ(sandbox.control.get("/books")["totals"]["canceled"], 1);
}

TEST_F(SandboxAccrual, CanceledChequeAfterItsCancelGivesNothingTwice)
{
    subtract("30.00");
    const std::string parameters = card("9000000001") + amount("30.00") + ChequeText().parameter();
    ASSERT_EQ(sandbox.service.call("CancelSubtractBonus", parameters).status, 200);
    ChequeText cheque = closedSale();
    cheque.status = "Canceled";
    accrue(cheque);
    EXPECT_EQ(balance(), "500.00");
    // and the other way round: the cancel comes late
    EXPECT_EQ(sandbox.service.call("CancelSubtractBonus", parameters).status, 200);
    EXPECT_EQ(balance(), "500.00");
}

TEST_F(SandboxAccrual, ChequeOfNoTypeIsBookedOnly)
{
    ChequeText cheque = closedSale();
    cheque.type = "";
    EXPECT_EQ(accrue(cheque), "");
    EXPECT_EQ(balance(), "500.00");
    EXPECT_EQ(sandbox.control.get("/books")["totals"]["others"], 1);
}

TEST_F(SandboxAccrual, UnfinishedAndNamelessChequesAreRefused)
{
    EXPECT_EQ(sandbox.service.refusal("Accrual", ChequeText().parameter()), "Неверный чек: чек ещё открыт");
    ChequeText cheque = closedSale();
    cheque.uid = "";
    EXPECT_EQ(sandbox.service.refusal("OfflineAccrual", cheque.parameter()), "Неверный чек: пустой ChequeUID");
    cheque = closedSale();
    cheque.card = "9000000009";
    EXPECT_EQ(sandbox.service.refusal("Accrual", cheque.parameter()), "Карта 9000000009 не найдена");
    EXPECT_EQ(sandbox.control.get("/books")["cheques"].size(), 0U);
}
