#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

namespace {

const std::string codeNotFound = "VantiroException vantiroConfirmCodeNotFound: В ответе от сервера не найден код "
                                 "подтверждения для добавления карты";

class PhoneLookup : public testing::Test {
protected:
    /// What the look-up throws, and what it leaves: "failure; card 'card', code 'code'".
    [[nodiscard]] std::string lookUp(const QByteArray& content)
    {
        service.answer(content);
        QString card = QStringLiteral("old card");
        QString code = QStringLiteral("old code");
        const std::string failure
            = failureOf([&] { client.getCardNumberAndCodeByPhone(QStringLiteral("+79990000001"), card, code); });
        service.expect("GetVerifyCode", "   <tem:discountCardNumber>+79990000001</tem:discountCardNumber>\n");
        return failure + "; card '" + readable(card) + "', code '" + readable(code) + '\'';
    }

    [[nodiscard]] std::string lookUpText(const QByteArray& text)
    {
        return lookUp(R"(<GetVerifyCodeResponse xmlns="http://tempuri.org/"><GetVerifyCodeResult>)" + text
                      + "</GetVerifyCodeResult></GetVerifyCodeResponse>");
    }

    ScriptedService service;
    ClientUnderTest client { { ScriptedService::address } };
    const LogRecorder log;
};

}

TEST_F(PhoneLookup, CodeStandsBeforeTheCard)
{
    EXPECT_EQ(lookUpText("1234:5555"), "nothing; card '5555', code '1234'");
    EXPECT_EQ(readable(log.lines()), "") << "the look-up has no line of its own";
}

TEST_F(PhoneLookup, PartsAreTakenAsTheyStand)
{
    EXPECT_EQ(lookUpText(" 12 34 : 55&amp;55 "), "nothing; card ' 55&55 ', code ' 12 34 '");
}

TEST_F(PhoneLookup, NumberIsSentAsItWasEntered)
{
    service.answer("<GetVerifyCodeResult>1:2</GetVerifyCodeResult>");
    QString card;
    QString code;

    client.getCardNumberAndCodeByPhone(QStringLiteral(" 8 (999) <1> "), card, code);

    service.expect("GetVerifyCode", "   <tem:discountCardNumber> 8 (999) &lt;1> </tem:discountCardNumber>\n");
}

TEST_F(PhoneLookup, ResultMustStandOnce)
{
    EXPECT_EQ(lookUp(R"(<GetVerifyCodeResponse xmlns="http://tempuri.org/"/>)"),
              codeNotFound + "; card 'old card', code 'old code'");
    EXPECT_EQ(lookUp("<GetVerifyCodeResult>1:2</GetVerifyCodeResult><GetVerifyCodeResult>1:2</GetVerifyCodeResult>"),
              codeNotFound + "; card 'old card', code 'old code'");
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(PhoneLookup, TextMustHaveTwoParts)
{
    EXPECT_EQ(lookUpText("1234"), failure::incorrectAnswer + "; card 'old card', code 'old code'");
    EXPECT_EQ(lookUpText(""), failure::incorrectAnswer + "; card 'old card', code 'old code'");
    EXPECT_EQ(lookUpText("1:2:3"), failure::incorrectAnswer + "; card 'old card', code 'old code'");
    EXPECT_EQ(lookUpText("1::2"), failure::incorrectAnswer + "; card 'old card', code 'old code'");
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(PhoneLookup, EmptyPartIsRefusedAfterItWasHandedOver)
{
    EXPECT_EQ(lookUpText(":5555"), failure::incorrectAnswer + "; card '5555', code ''");
    EXPECT_EQ(lookUpText("1234:"), failure::incorrectAnswer + "; card '', code '1234'");
    EXPECT_EQ(lookUpText(":"), failure::incorrectAnswer + "; card '', code ''");
}

TEST_F(PhoneLookup, FailuresOfTheExchangePassThrough)
{
    QString card = QStringLiteral("old card");
    QString code = QStringLiteral("old code");
    const auto call = [&] { client.getCardNumberAndCodeByPhone(QStringLiteral("1"), card, code); };

    service.fault("Номер неизвестен");
    EXPECT_EQ(failureOf(call), failure::fault("Номер неизвестен"));
    service.expect("GetVerifyCode", "   <tem:discountCardNumber>1</tem:discountCardNumber>\n");
    service.refuse();
    EXPECT_EQ(failureOf(call), failure::noConnection);
    service.expect("GetVerifyCode", "   <tem:discountCardNumber>1</tem:discountCardNumber>\n");

    EXPECT_EQ(readable(card), "old card");
    EXPECT_EQ(readable(code), "old code");
}
