#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

const QString card = QStringLiteral("1234567");
const QByteArray cardLine = "   <tem:discountCardNumber>1234567</tem:discountCardNumber>\n";

struct Answer {
    const char* rule;
    QByteArray content;
    bool valid;
};

void PrintTo(const Answer& row, std::ostream* out)
{
    *out << row.content.toStdString();
}

class CardValidAnswer : public testing::TestWithParam<Answer> { };

struct Useless {
    const char* rule;
    QByteArray content;
};

void PrintTo(const Useless& row, std::ostream* out)
{
    *out << row.content.toStdString();
}

class CardValidUselessAnswer : public testing::TestWithParam<Useless> { };

/// Answers by itself, without a server.
class WithoutExchange : public ClientUnderTest {
public:
    WithoutExchange()
        : ClientUnderTest({})
    {
    }

    QDomDocument processSoapMessage(QDomDocument& document, const QDomNode& body, const QString& action) override
    {
        document.appendChild(body);
        asked = action + QLatin1Char(' ') + document.toString(-1);
        QDomDocument reply;
        QDomElement result = reply.createElement(QStringLiteral("IsCardValidResult"));
        result.appendChild(reply.createTextNode(QStringLiteral("true")));
        reply.appendChild(result);
        return reply;
    }

    QString asked;
};

}

INSTANTIATE_TEST_SUITE_P(
    Results, CardValidAnswer,
    testing::Values(Answer { "True", "<IsCardValidResult>true</IsCardValidResult>", true },
                    Answer { "TrueInAResponse",
                             R"(<IsCardValidResponse xmlns="http://tempuri.org/"><IsCardValidResult>true)"
                             "</IsCardValidResult></IsCardValidResponse>",
                             true },
                    Answer { "TrueAnywhere", "<a><b><IsCardValidResult>true</IsCardValidResult></b></a>", true },
                    Answer { "TrueAsCdata", "<IsCardValidResult><![CDATA[true]]></IsCardValidResult>", true },
                    Answer { "TrueBesideAnotherPrefix",
                             "<a:IsCardValidResult>false</a:IsCardValidResult>"
                             "<IsCardValidResult>true</IsCardValidResult>",
                             true },
                    Answer { "False", "<IsCardValidResult>false</IsCardValidResult>", false },
                    Answer { "CapitalTrue", "<IsCardValidResult>True</IsCardValidResult>", false },
                    Answer { "UpperCaseTrue", "<IsCardValidResult>TRUE</IsCardValidResult>", false },
                    Answer { "LeadingBlank", "<IsCardValidResult> true</IsCardValidResult>", false },
                    Answer { "TrailingBlank", "<IsCardValidResult>true </IsCardValidResult>", false },
                    Answer { "LineFeed", "<IsCardValidResult>\ntrue\n</IsCardValidResult>", false },
                    Answer { "One", "<IsCardValidResult>1</IsCardValidResult>", false },
                    Answer { "LongerThanTrue", "<IsCardValidResult>trueish</IsCardValidResult>", false },
                    Answer { "EmptyText", "<IsCardValidResult></IsCardValidResult>", false },
                    Answer { "EmptyTag", "<IsCardValidResult/>", false },
                    Answer { "TrueAsAttribute", R"(<IsCardValidResult Value="true"/>)", false }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(CardValidAnswer, IsRead)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.answer(GetParam().content);

    EXPECT_EQ(client.isCardValid(card), GetParam().valid);

    server.expect("IsCardValid", cardLine);
    EXPECT_EQ(readable(log.lines()), "info vantiro: Валидация карты на сервере");
}

INSTANTIATE_TEST_SUITE_P(
    Results, CardValidUselessAnswer,
    testing::Values(Useless { "NoResult", "<IsCardValidResponse/>" }, Useless { "EmptyBody", "" },
                    Useless { "ResultOfAnotherOperation", "<IsCouponValidResult>true</IsCouponValidResult>" },
                    Useless { "ResultUnderAPrefix", "<a:IsCardValidResult>true</a:IsCardValidResult>" },
                    Useless { "ResultInLowerCase", "<iscardvalidresult>true</iscardvalidresult>" },
                    Useless {
                        "TwoResults",
                        "<IsCardValidResult>true</IsCardValidResult><IsCardValidResult>true</IsCardValidResult>" },
                    Useless { "TwoResultsApart",
                              "<a><IsCardValidResult>true</IsCardValidResult></a>"
                              "<b><IsCardValidResult>false</IsCardValidResult></b>" },
                    Useless { "TwoResultsNested",
                              "<IsCardValidResult><IsCardValidResult>true</IsCardValidResult></IsCardValidResult>" },
                    Useless { "FaultUnderAnotherPrefix", "<soap:Fault><faultstring>Отказ</faultstring></soap:Fault>" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(CardValidUselessAnswer, IsIncorrect)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.answer(GetParam().content);

    EXPECT_EQ(failureOf([&] { (void)client.isCardValid(card); }), failure::incorrectAnswer);

    server.expect("IsCardValid", cardLine);
    EXPECT_EQ(readable(log.lines()), "info vantiro: Валидация карты на сервере");
}

TEST(CardValid, FaultIsPassedOn)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.fault("Карта заблокирована");

    EXPECT_EQ(failureOf([&] { (void)client.isCardValid(card); }), failure::fault("Карта заблокирована"));

    server.expect("IsCardValid", cardLine);
    EXPECT_EQ(readable(log.lines()), "info vantiro: Валидация карты на сервере");
}

TEST(CardValid, LostConnectionIsPassedOn)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.refuse();

    EXPECT_EQ(failureOf([&] { (void)client.isCardValid(card); }), failure::noConnection);

    server.expect("IsCardValid", cardLine);
    EXPECT_EQ(readable(log.lines()),
              "info vantiro: Валидация карты на сервере\n"
              "error vantiro: Произошла ошибка при выполнении запроса соединение отклонено");
}

TEST(CardValid, GoesThroughTheVirtualExchange)
{
    const ScriptedRestClient server;
    WithoutExchange client;

    EXPECT_TRUE(client.isCardValid(card));

    EXPECT_EQ(readable(client.asked),
              "IsCardValid <soapenv:Body><tem:IsCardValid><tem:discountCardNumber>1234567</tem:discountCardNumber>"
              "</tem:IsCardValid></soapenv:Body>");
    EXPECT_EQ(readable(server.calls()), "");
}

TEST(CardValid, NothingIsRememberedBetweenCalls)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    server.answer("<IsCardValidResult>true</IsCardValidResult>");
    server.answer("<IsCardValidResult>false</IsCardValidResult>");

    EXPECT_TRUE(client.isCardValid(card));
    server.expect("IsCardValid", cardLine);
    EXPECT_FALSE(client.isCardValid(QStringLiteral("7")));
    server.expect("IsCardValid", "   <tem:discountCardNumber>7</tem:discountCardNumber>\n");
}
