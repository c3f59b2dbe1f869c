#include "tests/sandbox/cheque_text.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

TEST(SandboxMessages, TextsAreFilledAndEscapedTwice)
{
    const SandboxUnderTest sandbox;
    EXPECT_EQ(sandbox.service.result("GetMessages", ChequeText().parameter()),
              "&lt;Messages&gt;&lt;Msg Device=\"2\" Body=\"Карта 9000000001: 500.00 &amp;quot;баллов&amp;quot; "
              "&amp;amp; &amp;lt;скидки&amp;gt;\"/&gt;&lt;/Messages&gt;");
}

TEST(SandboxMessages, ConditionsHold)
{
    const SandboxUnderTest sandbox;
    ChequeText cheque;
    cheque.card = "";
    cheque.amount = "299.99";
    EXPECT_EQ(sandbox.service.result("GetMessages", cheque.parameter()), "");
    cheque.amount = "300.00";
    EXPECT_EQ(sandbox.service.result("GetMessages", cheque.parameter()),
              "&lt;Messages&gt;&lt;Msg Device=\"1\" Body=\"Сумма 300.00\"/&gt;&lt;/Messages&gt;");
}

TEST(SandboxMessages, ClosedChequesAreRefused)
{
    const SandboxUnderTest sandbox;
    EXPECT_EQ(sandbox.service.refusal("GetMessages", closedSale().parameter()), "Неверный чек: чек не открыт");
    EXPECT_EQ(sandbox.service.refusal("GetDiscounts", closedSale().parameter()), "Неверный чек: чек не открыт");
}
