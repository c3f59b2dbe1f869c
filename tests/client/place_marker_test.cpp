#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

// Texts from outside may hold what looks like a place for an argument. It must reach log, exception and wire unchanged.

namespace {

const QString address = QStringLiteral("http://server/");

}

TEST(PlaceMarkers, StayInTheReasonOfALostConnection)
{
    ScriptedRestClient server;
    server.next(RestOutcome::connectionError(QStringLiteral("нет ответа от http://server/%20%1?x=%2")));
    ClientUnderTest client({ address });
    const LogRecorder log;

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::noConnection);

    EXPECT_EQ(readable(log.lines()),
              "error vantiro: Произошла ошибка при выполнении запроса нет ответа от http://server/%20%1?x=%2");
}

TEST(PlaceMarkers, StayInAFault)
{
    ScriptedRestClient server;
    server.next(RestOutcome::http(500, soap::reply(soap::fault("Скидка %1 из %2 на %n, %L1"))));
    ClientUnderTest client({ address });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::fault("Скидка %1 из %2 на %n, %L1"));
}

TEST(PlaceMarkers, StayInACardNumber)
{
    ScriptedRestClient server;
    server.next(RestOutcome::http(200, soap::reply("<IsCardValidResult>true</IsCardValidResult>")));
    ClientUnderTest client({ address });

    EXPECT_TRUE(client.isCardValid(QStringLiteral("%1%2%3")));

    ASSERT_EQ(server.posts().size(), 1);
    EXPECT_EQ(readable(server.posts().constFirst().body),
              readable(soap::request("  <tem:IsCardValid>\n"
                                     "   <tem:discountCardNumber>%1%2%3</tem:discountCardNumber>\n"
                                     "  </tem:IsCardValid>\n")));
}

// The parser quotes the name of an encoding that it does not know.
TEST(PlaceMarkers, StayInTheWordsOfTheParser)
{
    ScriptedRestClient server;
    server.next(RestOutcome::http(200, R"(<?xml version="1.0" encoding="%1%2%3"?><a/>)"));
    ClientUnderTest client({ address });
    const LogRecorder log;

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::incorrectAnswer);

    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(
        log.lines().constFirst().startsWith(u"error vantiro: Не удалось интерпретировать ответ от сервера([1, "))
        << readable(log.lines());
    EXPECT_TRUE(log.lines().constFirst().contains(u"%1%2%3")) << readable(log.lines());
}

TEST(PlaceMarkers, StayInTheWordsOfTheParserOfABalance)
{
    ScriptedRestClient server;
    server.next(RestOutcome::http(200,
                                  soap::reply("<GetCardBalanceResult><![CDATA["
                                              R"(<?xml version="1.0" encoding="%1%2%3"?><Balance Value="1"/>)"
                                              "]]></GetCardBalanceResult>")));
    ClientUnderTest client({ address });
    const LogRecorder log;

    EXPECT_EQ(failureOf([&] { (void)client.getCardBalance(QStringLiteral("1234567")); }), failure::incorrectAnswer);

    ASSERT_EQ(log.lines().size(), 2);
    EXPECT_TRUE(log.lines().constLast().startsWith(u"error vantiro: Не удалось интерпретировать ответ от сервера("))
        << readable(log.lines());
    EXPECT_TRUE(log.lines().constLast().contains(u"%1%2%3")) << readable(log.lines());
}
