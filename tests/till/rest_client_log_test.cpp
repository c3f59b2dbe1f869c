#include "host/facilities/log_manager.h"
#include "tests/support/log_recorder.h"
#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <gmock/gmock.h>

using namespace vantiro_test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

namespace {

class RestClientLog : public testing::Test {
protected:
    [[nodiscard]] QList<std::string> lines() const
    {
        QList<std::string> result;
        for (const QString& line : log.lines()) {
            result.append(line.toStdString());
        }
        return result;
    }

    LogRecorder log;
    RestClient client;
};

TEST_F(RestClientLog, SuccessIsOneLine)
{
    const LoopbackServer server(Answer::reply(200, "ok!"));
    client.post(server.url("/service"), "body", {});
    EXPECT_THAT(
        lines(),
        ElementsAre(MatchesRegex("debug restclient: POST http://127\\.0\\.0\\.1:" + std::to_string(server.port())
                                 + "/service: код HTTP 200; отправлено 4 Б, получено 3 Б, [0-9]+ мс")));
}

TEST_F(RestClientLog, HttpErrorIsOneLine)
{
    const LoopbackServer server(Answer::reply(503, "busy"));
    client.post(server.url(), "body", {});
    EXPECT_THAT(
        lines(),
        ElementsAre(MatchesRegex("debug restclient: POST http://127\\.0\\.0\\.1:" + std::to_string(server.port())
                                 + "/: сервер ответил кодом HTTP 503; отправлено 4 Б, получено 4 Б, [0-9]+ мс")));
}

TEST_F(RestClientLog, ConnectionErrorIsOneLineWithTheReason)
{
    const ClosedPort port;
    client.post(port.url(), "body", {});
    EXPECT_THAT(lines(),
                ElementsAre(MatchesRegex(
                    "debug restclient: POST http://127\\.0\\.0\\.1:" + std::to_string(port.number())
                    + "/: сервер отказал в соединении \\(.+\\); отправлено 0 Б, получено 0 Б, [0-9]+ мс")));
}

TEST_F(RestClientLog, PostThatCannotBeAskedIsOneLine)
{
    client.post(QUrl(), "body", {});
    EXPECT_THAT(lines(),
                ElementsAre(MatchesRegex(
                    "debug restclient: POST адрес сервера не задан; отправлено 0 Б, получено 0 Б, [0-9]+ мс")));
}

TEST_F(RestClientLog, GivenLoggerTakesTheLines)
{
    const LoopbackServer server(Answer::reply(200));
    client.setLogger(Log4Qt::LogManager::logger("taskmanager", "vantiroping"));
    client.post(server.url(), "body", {});
    EXPECT_THAT(lines(), ElementsAre(testing::StartsWith("debug taskmanager/vantiroping: POST http://127.0.0.1:")));
}

TEST_F(RestClientLog, NoLoggerMeansTheDefaultOne)
{
    const LoopbackServer server(Answer::reply(200));
    client.setLogger(Log4Qt::LogManager::logger("taskmanager", "vantiroping"));
    client.setLogger(nullptr);
    client.post(server.url(), "body", {});
    EXPECT_THAT(lines(), ElementsAre(testing::StartsWith("debug restclient: POST http://127.0.0.1:")));
}

TEST_F(RestClientLog, CredentialsHeadersAndBodiesAreToldNowhere)
{
    const LoopbackServer good(Answer::reply(200, "reply-secret", { { "X-Reply", "header-secret" } }));
    const LoopbackServer bad(Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: x-secret\r\n\r\nreply-secret"));
    const ClosedPort closed;
    for (QUrl url : { good.url("/a?key=query-secret#part-secret"), bad.url("/a?key=query-secret"),
                      closed.url("/a?key=query-secret"), QUrl("ftp://127.0.0.1/a?key=query-secret") }) {
        url.setUserInfo("cashier:password-secret");
        client.post(url, "body-secret", { { "Authorization", "Basic header-secret" } });
        EXPECT_THAT(errorText(client), Not(HasSubstr("secret")));
        EXPECT_THAT(errorText(client), Not(HasSubstr("cashier")));
    }
    EXPECT_EQ(log.lines().size(), 4);
    EXPECT_THAT(log.lines().join(u'\n').toStdString(), Not(HasSubstr("secret")));
    EXPECT_THAT(log.lines().join(u'\n').toStdString(), Not(HasSubstr("cashier")));
}

TEST_F(RestClientLog, PlaceMarkersInAnAddressStayWhatTheyAre)
{
    const ClosedPort port;
    client.post(port.url("/%1%2%3"), "body", {});
    const std::string address = "http://127.0.0.1:" + std::to_string(port.number()) + "/%251%252%253: ";
    EXPECT_THAT(errorText(client), testing::StartsWith(address + "сервер отказал в соединении"));
    EXPECT_THAT(lines(), ElementsAre(HasSubstr("POST " + address + "сервер отказал в соединении")));
}

}
