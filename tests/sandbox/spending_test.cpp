#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* customer = "9000000001";

class SandboxSpending : public ::testing::Test {
protected:
    [[nodiscard]] std::string limit(const ChequeText& cheque) const
    {
        return sandbox.service.result("GetCardDiscountAmount", card(cheque.card) + cheque.parameter());
    }

    [[nodiscard]] static std::string parameters(const std::string& sum, const ChequeText& cheque)
    {
        return card(cheque.card) + amount(sum) + cheque.parameter();
    }

    [[nodiscard]] std::string subtract(const std::string& sum, const ChequeText& cheque = {}) const
    {
        return sandbox.service.result("SubtractBonus45", parameters(sum, cheque));
    }

    [[nodiscard]] std::string subtractRefused(const std::string& sum, const ChequeText& cheque = {}) const
    {
        return sandbox.service.refusal("SubtractBonus45", parameters(sum, cheque));
    }

    void cancel(const std::string& sum, const ChequeText& cheque = {}) const
    {
        const Reply reply = sandbox.service.call("CancelSubtractBonus", parameters(sum, cheque));
        EXPECT_EQ(reply.status, 200);
        EXPECT_EQ(reply.body,
                  "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body>"
                  "<CancelSubtractBonusResponse xmlns=\"http://tempuri.org/\"></CancelSubtractBonusResponse></s:Body>"
                  "</s:Envelope>");
    }

    [[nodiscard]] std::string cancelRefused(const std::string& sum, const ChequeText& cheque = {}) const
    {
        return sandbox.service.refusal("CancelSubtractBonus", parameters(sum, cheque));
    }

    [[nodiscard]] std::string balance() const
    {
        return sandbox.service.balance(customer);
    }

    SandboxUnderTest sandbox;
};

}

TEST_F(SandboxSpending, LimitIsTheShareOfTheCheque)
{
    EXPECT_EQ(limit(ChequeText()), "50.00");
}

TEST_F(SandboxSpending, LimitIsTheBalance)
{
    ChequeText cheque;
    cheque.card = "9000000002";
    EXPECT_EQ(limit(cheque), "10.00");
}

TEST_F(SandboxSpending, LimitLeavesOutLinesThatTakeNoPoints)
{
    ChequeText cheque;
    cheque.amount = "160.00";
    cheque.lines = LineText { .number = "1", .amount = "60.01" }.xml()
        + LineText { .number = "2", .amount = "99.99", .noPayBonus = "true" }.xml();
    EXPECT_EQ(limit(cheque), "30.00"); // the share of a line is rounded down
}

TEST_F(SandboxSpending, LimitKeepsLeastSums)
{
    ChequeText cheque;
    cheque.lines = LineText { .minAmount = "80.00" }.xml();
    EXPECT_EQ(limit(cheque), "20.00");
    cheque.lines = LineText { .minAmount = "120.00" }.xml();
    EXPECT_EQ(limit(cheque), "0.00");
}

TEST_F(SandboxSpending, LimitCountsADiscountThatNoLineShows)
{
    ChequeText cheque;
    cheque.amount = "90.00";
    EXPECT_EQ(limit(cheque), "45.00");
}

TEST_F(SandboxSpending, LimitCountsWhatWasSpent)
{
    ChequeText cheque;
    EXPECT_EQ(subtract("30.00", cheque),
              "&amp;lt;Answer&amp;gt;&amp;lt;ChequeLine ChequeLineNo=\"1\" "
              "Amount=\"30.00\"/&amp;gt;&amp;lt;/Answer&amp;gt;");
    EXPECT_EQ(limit(cheque), "20.00"); // of a cheque that does not show it yet
    cheque.amount = "70.00";
    cheque.spent = "30.00";
    cheque.lines = LineText { .bonus = "30.00" }.xml();
    EXPECT_EQ(limit(cheque), "20.00");
}

TEST_F(SandboxSpending, LimitOfAnotherCardIsRefused)
{
    EXPECT_EQ(sandbox.service.refusal("GetCardDiscountAmount", card("9000000002") + ChequeText().parameter()),
              "Карта 9000000002 не совпадает с картой чека");
    EXPECT_EQ(sandbox.service.refusal("GetCardDiscountAmount", card("77") + ChequeText().parameter()),
              "Карта 77 не найдена");
    ChequeText cheque;
    cheque.card = "9000000666";
    EXPECT_EQ(sandbox.service.refusal("GetCardDiscountAmount", card("9000000666") + cheque.parameter()),
              "Карта 9000000666 заблокирована");
}

TEST_F(SandboxSpending, SpreadIsExactAndLeavesOutLinesWithoutRoom)
{
    ChequeText cheque;
    cheque.amount = "400.00";
    cheque.lines = LineText { .number = "1" }.xml() + LineText { .number = "2", .noPayBonus = "true" }.xml()
        + LineText { .number = "3" }.xml() + LineText { .number = "7" }.xml();
    EXPECT_EQ(subtract("100.00", cheque),
              "&amp;lt;Answer&amp;gt;&amp;lt;ChequeLine ChequeLineNo=\"1\" Amount=\"33.34\"/&amp;gt;"
              "&amp;lt;ChequeLine ChequeLineNo=\"3\" Amount=\"33.33\"/&amp;gt;"
              "&amp;lt;ChequeLine ChequeLineNo=\"7\" Amount=\"33.33\"/&amp;gt;&amp;lt;/Answer&amp;gt;");
    EXPECT_EQ(balance(), "400.00");
}

TEST_F(SandboxSpending, MoreThanTheLimitIsRefusedAndTakesNothing)
{
    EXPECT_EQ(subtractRefused("50.01"), "Сумма списания больше допустимой: 50.00");
    EXPECT_EQ(balance(), "500.00");
}

TEST_F(SandboxSpending, MoreThanTheBalanceIsRefused)
{
    ChequeText cheque;
    cheque.card = "9000000002";
    EXPECT_EQ(subtractRefused("10.01", cheque), "Недостаточно баллов: на карте 10.00");
}

TEST_F(SandboxSpending, BadSumsAreRefused)
{
    EXPECT_EQ(subtractRefused("0.00"), "Неверный запрос: сумма баллов должна быть больше нуля");
    EXPECT_EQ(subtractRefused("-5.00"), "Неверный запрос: сумма баллов должна быть больше нуля");
    for (const char* const sum : { "", "5", "5.5", "5,50", "много", "1e1", "5.000" }) {
        EXPECT_EQ(subtractRefused(sum), "Неверный запрос: amount не число с двумя знаками") << sum;
    }
    EXPECT_EQ(balance(), "500.00");
}

TEST_F(SandboxSpending, RequestsHaveNoKeySoARepeatIsASecondSpending)
{
    static_cast<void>(subtract("10.00"));
    static_cast<void>(subtract("10.00"));
    EXPECT_EQ(balance(), "480.00");
}

TEST_F(SandboxSpending, OneCancelGivesBackSeveralSpendings)
{
    static_cast<void>(subtract("10.00"));
    static_cast<void>(subtract("15.50"));
    cancel("25.50");
    EXPECT_EQ(balance(), "500.00");
}

TEST_F(SandboxSpending, RepeatedCancelIsAnsweredAndGivesNothing)
{
    static_cast<void>(subtract("10.00"));
    cancel("10.00");
    cancel("10.00");
    EXPECT_EQ(balance(), "500.00");
    EXPECT_EQ(sandbox.control.get("/requests?operation=CancelSubtractBonus")[0]["outcome"], "answered");
    EXPECT_EQ(sandbox.control.get("/requests?operation=CancelSubtractBonus")[1]["outcome"], "repeat");
}

TEST_F(SandboxSpending, CancelAfterANewSpendingIsANewOne)
{
    static_cast<void>(subtract("10.00"));
    cancel("10.00");
    static_cast<void>(subtract("10.00"));
    EXPECT_EQ(balance(), "490.00");
    cancel("10.00");
    EXPECT_EQ(balance(), "500.00");
}

TEST_F(SandboxSpending, CancelOfMoreThanWasSpentIsRefused)
{
    EXPECT_EQ(cancelRefused("1.00"), "Отмена больше списанного по чеку: 0.00");
    static_cast<void>(subtract("10.00"));
    EXPECT_EQ(cancelRefused("10.01"), "Отмена больше списанного по чеку: 10.00");
    EXPECT_EQ(balance(), "490.00");
}

TEST_F(SandboxSpending, ClosedChequesSpendNothingAndGiveNothingBack)
{
    static_cast<void>(subtract("10.00"));
    ChequeText closed = closedSale();
    closed.amount = "90.00";
    closed.spent = "10.00";
    closed.lines = LineText { .bonus = "10.00" }.xml();
    static_cast<void>(sandbox.service.result("Accrual", closed.parameter()));
    EXPECT_EQ(balance(), "494.50"); // 5 percent of 90 earned
    EXPECT_EQ(subtractRefused("5.00"), "Чек уже закрыт, списание баллов невозможно");
    EXPECT_EQ(cancelRefused("10.00"), "Чек уже закрыт, отмена списания невозможна");
    EXPECT_EQ(balance(), "494.50");
}

TEST_F(SandboxSpending, WithoutUidNothingIsSpent)
{
    ChequeText cheque;
    cheque.uid = "";
    EXPECT_EQ(limit(cheque), "50.00");
    EXPECT_EQ(subtractRefused("5.00", cheque), "Неверный чек: пустой ChequeUID");
}
