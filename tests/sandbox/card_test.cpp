#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

TEST(SandboxCard, PingIsAnswered)
{
    const SandboxUnderTest sandbox;
    const Reply reply = sandbox.service.call("Ping", "");
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body,
              "<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><PingResponse "
              "xmlns=\"http://tempuri.org/\"><PingResult>true</PingResult></PingResponse></s:Body></s:Envelope>");
}

TEST(SandboxCard, OnlyKnownCardsThatAreNotBlockedAreValid)
{
    const SandboxUnderTest sandbox;
    EXPECT_EQ(sandbox.service.result("IsCardValid", card("9000000001")), "true");
    EXPECT_EQ(sandbox.service.result("IsCardValid", card("9000000666")), "false");
    EXPECT_EQ(sandbox.service.result("IsCardValid", card("900000000")), "false");
    EXPECT_EQ(sandbox.service.result("IsCardValid", card("")), "false");
}

TEST(SandboxCard, BalanceIsADocumentInText)
{
    const SandboxUnderTest sandbox;
    EXPECT_EQ(sandbox.service.result("GetCardBalance", card("9000000001")),
              "&lt;Card&gt;&lt;Balance Value=\"500.00\"/&gt;&lt;/Card&gt;");
    EXPECT_EQ(sandbox.service.balance("9000000002"), "10.00");
}

TEST(SandboxCard, NoBalanceOfCardsThatAreNotValid)
{
    const SandboxUnderTest sandbox;
    EXPECT_EQ(sandbox.service.refusal("GetCardBalance", card("1")), "Карта 1 не найдена");
    EXPECT_EQ(sandbox.service.refusal("GetCardBalance", card("&lt;1&amp;")), "Карта &lt;1&amp; не найдена");
    EXPECT_EQ(sandbox.service.refusal("GetCardBalance", card("9000000666")), "Карта 9000000666 заблокирована");
}

TEST(SandboxCard, TelephoneGivesCodeAndCard)
{
    const SandboxUnderTest sandbox;
    for (const char* const phone : { "+79990000001", "89990000001", "9990000001", "8 (999) 000-00-01" }) {
        EXPECT_EQ(sandbox.service.result("GetVerifyCode", card(phone)), "1234:9000000001") << phone;
    }
}

TEST(SandboxCard, UnknownTelephonesAreRefused)
{
    const SandboxUnderTest sandbox;
    EXPECT_EQ(sandbox.service.refusal("GetVerifyCode", card("+79990000009")), "Карта по номеру телефона не найдена");
    EXPECT_EQ(sandbox.service.refusal("GetVerifyCode", card("")), "Карта по номеру телефона не найдена");
    EXPECT_EQ(sandbox.service.refusal("GetVerifyCode", card("+79990000666")), "Карта 9000000666 заблокирована");
}

TEST(SandboxCard, OnlyListedCouponsAreValid)
{
    const SandboxUnderTest sandbox;
    const auto valid = [&sandbox](const std::string& number) {
        return sandbox.service.result("IsCouponValid", "<tem:couponNumber>" + number + "</tem:couponNumber>");
    };
    EXPECT_EQ(valid("vantiro-10"), "true");
    EXPECT_EQ(valid("line-15"), "true");
    EXPECT_EQ(valid("vantiro-old"), "false");
    EXPECT_EQ(valid("VANTIRO-10"), "false");
    EXPECT_EQ(valid(""), "false");
}
