#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <ostream>

namespace {

const QString card = QStringLiteral("1234567");
const QByteArray cardLine = "   <tem:discountCardNumber>1234567</tem:discountCardNumber>\n";
constexpr const char* firstLine = "info vantiro: Получение баланса карты Vantiro";

/// A result that holds this text, which is XML as it stands.
QByteArray result(const QByteArray& text)
{
    return "<GetCardBalanceResult>" + text + "</GetCardBalanceResult>";
}

QByteArray balance(const QByteArray& value)
{
    return result("&lt;Balance Value=\"" + value + "\"/&gt;");
}

struct Answer {
    const char* rule;
    QByteArray content;
    double points;
};

void PrintTo(const Answer& row, std::ostream* out)
{
    *out << row.content.toStdString();
}

class CardBalanceAnswer : public testing::TestWithParam<Answer> { };

struct Useless {
    const char* rule;
    QByteArray content;
};

void PrintTo(const Useless& row, std::ostream* out)
{
    *out << row.content.toStdString();
}

class CardBalanceNotFound : public testing::TestWithParam<Useless> { };
class CardBalanceNotXml : public testing::TestWithParam<Useless> { };
class CardBalanceNotANumber : public testing::TestWithParam<Useless> { };

}

INSTANTIATE_TEST_SUITE_P(
    Values, CardBalanceAnswer,
    testing::Values(
        Answer { "Comma", balance("1234,50"), 1234.5 }, Answer { "Point", balance("1234.50"), 1234.5 },
        Answer { "Whole", balance("7"), 7.0 }, Answer { "Zero", balance("0"), 0.0 },
        Answer { "Kopecks", balance("0,01"), 0.01 }, Answer { "Negative", balance("-5,25"), -5.25 },
        Answer { "Large", balance("99999999,99"), 99999999.99 },
        Answer { "EscapedTwice", result("&amp;lt;Balance Value=&amp;quot;3,5&amp;quot;/&amp;gt;"), 3.5 },
        Answer { "Apostrophes", result("&lt;Balance Value=&amp;apos;3,5&amp;apos;/&gt;"), 3.5 },
        Answer { "Cdata", result(R"(<![CDATA[<Balance Value="3,5"/>]]>)"), 3.5 },
        Answer { "ReturnsAreDropped",
                 result("&lt;Answer&gt;&amp;#xD;\n&lt;Balance Value=\"3,5\"/&gt;&amp;#xD;\n&lt;/Answer&gt;"), 3.5 },
        Answer { "Declaration",
                 result("&lt;?xml version=\"1.0\" encoding=\"utf-16\"?&gt;&lt;Balance Value=\"3,5\"/&gt;"), 3.5 },
        Answer { "AnywhereInside",
                 result("&lt;a&gt;&lt;b Value=\"1\"&gt;&lt;Balance Card=\"7\" Value=\"3,5\"/&gt;&lt;/b&gt;&lt;/a&gt;"),
                 3.5 },
        Answer { "ResultAnywhere", "<a><b>" + balance("3,5") + "</b></a>", 3.5 },
        Answer { "ResultUnderAPrefixIsAnother", "<a:GetCardBalanceResult/>" + balance("3,5"), 3.5 },
        Answer { "ResponseOfTheService",
                 R"(<GetCardBalanceResponse xmlns="http://tempuri.org/">)" + balance("3,5")
                     + "</GetCardBalanceResponse>",
                 3.5 }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(CardBalanceAnswer, IsRead)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.answer(GetParam().content);

    EXPECT_EQ(client.getCardBalance(card), GetParam().points);

    server.expect("GetCardBalance", cardLine);
    EXPECT_EQ(readable(log.lines()), firstLine);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, CardBalanceNotFound,
    testing::Values(Useless { "NoResult", "<GetCardBalanceResponse/>" }, Useless { "EmptyBody", "" },
                    Useless { "ResultUnderAPrefix",
                              R"(<a:GetCardBalanceResult>&lt;Balance Value="1"/&gt;</a:GetCardBalanceResult>)" },
                    Useless { "TwoResults", balance("1") + balance("1") },
                    Useless { "TwoResultsApart", "<a>" + balance("1") + "</a><b>" + balance("2") + "</b>" },
                    Useless { "BalanceOutsideOfAResult", R"(<Balance Value="1"/>)" },
                    Useless { "NoBalance", result("&lt;Answer/&gt;") },
                    Useless { "BalanceInLowerCase", result("&lt;balance Value=\"1\"/&gt;") },
                    Useless { "BalanceUnderAPrefix", result("&lt;a:Balance Value=\"1\"/&gt;") },
                    Useless { "TwoBalances",
                              result("&lt;a&gt;&lt;Balance Value=\"1\"/&gt;&lt;Balance Value=\"1\"/&gt;&lt;/a&gt;") },
                    Useless { "TwoBalancesNested",
                              result("&lt;Balance Value=\"1\"&gt;&lt;Balance Value=\"1\"/&gt;&lt;/Balance&gt;") }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(CardBalanceNotFound, IsTold)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.answer(GetParam().content);

    EXPECT_EQ(failureOf([&] { (void)client.getCardBalance(card); }), failure::balanceNotFound);

    server.expect("GetCardBalance", cardLine);
    EXPECT_EQ(readable(log.lines()), firstLine);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CardBalanceNotXml,
    testing::Values(Useless { "EmptyText", result("") }, Useless { "EmptyTag", "<GetCardBalanceResult/>" },
                    Useless { "Number", result("1234,50") }, Useless { "CutOff", result("&lt;Balance Value=\"1\"") },
                    Useless { "TwoRoots", result("&lt;Balance Value=\"1\"/&gt;&lt;Balance Value=\"1\"/&gt;") },
                    Useless { "BalanceAsAnElementOfTheReply", result(R"(<Balance Value="1"/>)") },
                    // Two passes are all that is undone: of an ampersand in a name, they leave one that stands alone.
                    Useless { "LoneAmpersand", result("&lt;Balance Owner=\"A &amp;amp; B\" Value=\"1\"/&gt;") }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(CardBalanceNotXml, IsIncorrectAndLogged)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.answer(GetParam().content);

    EXPECT_EQ(failureOf([&] { (void)client.getCardBalance(card); }), failure::incorrectAnswer);

    server.expect("GetCardBalance", cardLine);
    ASSERT_EQ(log.lines().size(), 2);
    EXPECT_EQ(readable(log.lines().constFirst()), firstLine);
    const QRegularExpression line(
        QStringLiteral("^error vantiro: Не удалось интерпретировать ответ от сервера\\(.+, \\[\\d+,\\d+\\]\\)$"));
    EXPECT_TRUE(line.match(log.lines().constLast()).hasMatch()) << readable(log.lines());
}

INSTANTIATE_TEST_SUITE_P(
    Values, CardBalanceNotANumber,
    testing::Values(Useless { "BlankBetweenThousands", balance("1 234,50") },
                    Useless { "PointBetweenThousands", balance("1.234,50") },
                    Useless { "CommaBetweenThousands", balance("1,234.50") }, Useless { "TwoCommas", balance("1,2,3") },
                    Useless { "Empty", balance("") }, Useless { "Words", balance("много") },
                    Useless { "Currency", balance("12 р.") }, Useless { "Hexadecimal", balance("0x10") },
                    Useless { "NotANumber", balance("nan") }, Useless { "Infinite", balance("-inf") },
                    Useless { "NoAttribute", result("&lt;Balance/&gt;") },
                    Useless { "AttributeInLowerCase", result("&lt;Balance value=\"1\"/&gt;") },
                    Useless { "AttributeUnderAPrefix", result("&lt;Balance a:Value=\"1\"/&gt;") },
                    Useless { "ValueAsText", result("&lt;Balance&gt;1&lt;/Balance&gt;") }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(CardBalanceNotANumber, IsIncorrectAndNotLogged)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.answer(GetParam().content);

    EXPECT_EQ(failureOf([&] { (void)client.getCardBalance(card); }), failure::incorrectAnswer);

    server.expect("GetCardBalance", cardLine);
    EXPECT_EQ(readable(log.lines()), firstLine);
}

TEST(CardBalance, LogNamesTheLineBeforeTheColumn)
{
    ScriptedRestClient server;
    server.next(RestOutcome::http(
        200, soap::reply(result("&lt;a&gt;\n&lt;b&gt;\n                    &lt;/c&gt;&lt;/b&gt;&lt;/a&gt;"))));
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;

    EXPECT_EQ(failureOf([&] { (void)client.getCardBalance(card); }), failure::incorrectAnswer);

    ASSERT_EQ(log.lines().size(), 2);
    EXPECT_TRUE(log.lines().constLast().contains(QRegularExpression(QStringLiteral(", \\[3,2\\d\\]\\)$"))))
        << readable(log.lines());
}

TEST(CardBalance, FaultIsPassedOn)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.fault("Карта не найдена");

    EXPECT_EQ(failureOf([&] { (void)client.getCardBalance(card); }), failure::fault("Карта не найдена"));

    server.expect("GetCardBalance", cardLine);
    EXPECT_EQ(readable(log.lines()), firstLine);
}

TEST(CardBalance, LostConnectionIsPassedOn)
{
    ScriptedService server;
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;
    server.refuse();

    EXPECT_EQ(failureOf([&] { (void)client.getCardBalance(card); }), failure::noConnection);

    server.expect("GetCardBalance", cardLine);
    EXPECT_EQ(readable(log.lines()),
              "info vantiro: Получение баланса карты Vantiro\n"
              "error vantiro: Произошла ошибка при выполнении запроса соединение отклонено");
}

TEST(CardBalance, UnreadableReplyIsToldByTheExchange)
{
    ScriptedRestClient server;
    server.next(RestOutcome::http(200, ""));
    ClientUnderTest client({ ScriptedService::address });
    const LogRecorder log;

    EXPECT_EQ(failureOf([&] { (void)client.getCardBalance(card); }), failure::incorrectAnswer);

    ASSERT_EQ(log.lines().size(), 2);
    EXPECT_EQ(readable(log.lines().constFirst()), firstLine);
    EXPECT_TRUE(log.lines().constLast().startsWith(u"error vantiro: Не удалось интерпретировать ответ от сервера(["))
        << readable(log.lines());
}

TEST(CardBalance, IsAskedForWithTheWholeEnvelope)
{
    ScriptedRestClient server;
    server.next(RestOutcome::http(200, soap::reply(balance("1"))));
    ClientUnderTest client({ ScriptedService::address });

    EXPECT_EQ(client.getCardBalance(card), 1.0);

    ASSERT_EQ(server.posts().size(), 1);
    EXPECT_EQ(
        readable(server.posts().constFirst().body),
        R"(<soapenv:Envelope xmlns:soapenv="http://schemas.xmlsoap.org/soap/envelope/" xmlns:tem="http://tempuri.org/">
 <soapenv:Body>
  <tem:GetCardBalance>
   <tem:discountCardNumber>1234567</tem:discountCardNumber>
  </tem:GetCardBalance>
 </soapenv:Body>
</soapenv:Envelope>
)");
}
