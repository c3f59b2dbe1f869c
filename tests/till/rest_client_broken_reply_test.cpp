#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <gmock/gmock.h>

#include <atomic>
#include <ostream>

using namespace std::chrono_literals;
using namespace vantiro_test;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

constexpr auto brokenOff = "соединение оборвалось до конца ответа";
constexpr auto notHttp = "ответ сервера нарушает правила HTTP";

void expectNoReply(RestClient& client, const std::string& reason)
{
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_EQ(client.getResponseBody(), "");
    EXPECT_THAT(errorText(client), HasSubstr(reason));
}

struct WholeReply {
    QByteArray bytes;
    std::string ending;
    qsizetype dispensable = 0; // bytes at the end that carry nothing
};

void PrintTo(const WholeReply& reply, std::ostream* stream)
{
    *stream << reply.bytes.toStdString();
}

class RestClientCut : public testing::TestWithParam<WholeReply> { };

TEST_P(RestClientCut, ReplyThatIsCutAnywhereIsNoReply)
{
    const QByteArray& reply = GetParam().bytes;
    const qsizetype needed = reply.size() - GetParam().dispensable;
    std::atomic<qsizetype> bytes = 0;
    const LoopbackServer server([&](const HttpRequest&) { return Answer::raw(reply).cutAfter(bytes).hangUp(); });
    for (bytes = 0; bytes < needed; ++bytes) {
        SCOPED_TRACE(bytes.load());
        RestClient client;
        client.post(server.url(), "body", {});
        expectNoReply(client, brokenOff);
    }
    EXPECT_EQ(server.connections(), needed);
    EXPECT_EQ(endingOfPost(server.url()), GetParam().ending);
}

TEST_P(RestClientCut, ReplyThatIsResetAnywhereIsNoReply)
{
    const QByteArray& reply = GetParam().bytes;
    const qsizetype needed = reply.size() - GetParam().dispensable;
    std::atomic<qsizetype> bytes = 0;
    const LoopbackServer server([&](const HttpRequest&) { return Answer::raw(reply).cutAfter(bytes).reset(); });
    for (bytes = 0; bytes < needed; ++bytes) {
        SCOPED_TRACE(bytes.load());
        RestClient client;
        client.post(server.url(), "body", {});
        expectNoReply(client, brokenOff);
    }
}

// libcurl does not wait for the very last line feed of a chunked reply.
INSTANTIATE_TEST_SUITE_P(
    Reply, RestClientCut,
    testing::Values(
        WholeReply { "HTTP/1.1 200 OK\r\nX-A: b\r\nContent-Length: 6\r\n\r\nabcdef", "success 200" },
        WholeReply { "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n3\r\ndef\r\n0\r\nX-A: b\r\n\r\n",
                     "success 200", 1 },
        WholeReply { "HTTP/1.1 500 Error\r\nContent-Length: 6\r\n\r\nabcdef", "HTTP error 500" },
        WholeReply { "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 204 No Content\r\n\r\n", "success 204" }));

TEST(RestClientBrokenReply, BodyWithoutLengthThatEndsInAResetIsNoReply)
{
    const LoopbackServer server(Answer::raw("HTTP/1.1 200 OK\r\n\r\nabc").pause(50ms).reset());
    RestClient client;
    client.post(server.url(), "body", {});
    expectNoReply(client, brokenOff);
}

TEST(RestClientBrokenReply, ConnectionEndedBeforeAnyByteIsNoReply)
{
    for (const Answer& answer : { Answer::nothing().hangUp(), Answer::nothing().reset() }) {
        const LoopbackServer server(answer);
        RestClient client;
        client.post(server.url(), "body", {});
        expectNoReply(client, brokenOff);
        EXPECT_EQ(server.requests().size(), 1);
    }
}

TEST(RestClientBrokenReply, BrokenOffRequestIsNotSentAgain)
{
    int calls = 0;
    const LoopbackServer server([&](const HttpRequest&) {
        ++calls;
        return calls == 1 ? Answer::reply(200) : Answer::nothing().reset();
    });
    RestClient client;
    client.post(server.url(), "1", {});
    client.post(server.url(), "2", {});
    expectNoReply(client, brokenOff);
    EXPECT_EQ(server.requests().size(), 2);
}

class RestClientBrokenReplyText : public testing::TestWithParam<const char*> { };

// The connection stays open afterwards: nobody may wait for its end to find out.
TEST_P(RestClientBrokenReplyText, IsNoReplyAtOnce)
{
    const LoopbackServer server(Answer::raw(GetParam()).keepSilent());
    RestClient client;
    client.setTimeout(60);
    client.post(server.url(), "body", {});
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_EQ(client.getResponseBody(), "");
    EXPECT_THAT(errorText(client), testing::AnyOf(HasSubstr(notHttp), HasSubstr(brokenOff)));
}

INSTANTIATE_TEST_SUITE_P(
    StatusLine, RestClientBrokenReplyText,
    testing::Values("HTTP/1.1 2O0 OK\r\nContent-Length: 0\r\n\r\n", "HTTP/1.1 20 OK\r\nContent-Length: 0\r\n\r\n",
                    "HTTP/1.1 2000 OK\r\nContent-Length: 0\r\n\r\n", "HTTP/1.1 099 OK\r\nContent-Length: 0\r\n\r\n",
                    "HTTP/1.1 -20 OK\r\nContent-Length: 0\r\n\r\n", "HTTP/1.1 200OK\r\nContent-Length: 0\r\n\r\n",
                    "HTTP/1.1  200 OK\r\nContent-Length: 0\r\n\r\n", "HTTP/1.1\r\nContent-Length: 0\r\n\r\n",
                    "HTTP/1.1 \r\nContent-Length: 0\r\n\r\n", "HTTP 200 OK\r\nContent-Length: 0\r\n\r\n",
                    "HTTP/2 200\r\nContent-Length: 0\r\n\r\n", "HTTP/3.0 200 OK\r\nContent-Length: 0\r\n\r\n",
                    "HTTP/0.9 200 OK\r\nContent-Length: 0\r\n\r\n", "ICY 200 OK\r\nContent-Length: 0\r\n\r\n",
                    "<html>no HTTP at all</html>\r\n", "\r\n\r\n",
                    "HTTP/1.1 101 Switching Protocols\r\nUpgrade: other\r\n\r\nabc"));

INSTANTIATE_TEST_SUITE_P(Length, RestClientBrokenReplyText,
                         testing::Values("HTTP/1.1 200 OK\r\nContent-Length: -3\r\n\r\nabc",
                                         "HTTP/1.1 200 OK\r\nContent-Length: +3\r\n\r\nabc",
                                         "HTTP/1.1 200 OK\r\nContent-Length: 3x\r\n\r\nabc",
                                         "HTTP/1.1 200 OK\r\nContent-Length: 3, 3\r\n\r\nabc",
                                         "HTTP/1.1 200 OK\r\nContent-Length:\r\n\r\nabc",
                                         "HTTP/1.1 200 OK\r\nContent-Length: 0x3\r\n\r\nabc",
                                         "HTTP/1.1 200 OK\r\nContent-Length: 3\r\nContent-Length: 2\r\n\r\nabc",
                                         "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nContent-Length: 3\r\n\r\nabc"));

INSTANTIATE_TEST_SUITE_P(
    Framing, RestClientBrokenReplyText,
    testing::Values("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nabc\r\n0\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabcdef\r\n0\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n-3\r\nabc\r\n0\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\nFFFFFFFFFFFFFFFFF\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip\r\n\r\nabc",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip, chunked\r\n\r\n3\r\nabc\r\n0\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: identity\r\nContent-Length: 3\r\n\r\nabc"));

TEST(RestClientBrokenReply, RefusedConnectionIsNoReply)
{
    const ClosedPort port;
    RestClient client;
    client.post(port.url("/service"), "body", {});
    expectNoReply(client, "");
    const std::string number = std::to_string(port.number());
    EXPECT_THAT(errorText(client),
                testing::StartsWith("http://127.0.0.1:" + number + "/service: сервер отказал в соединении ("));
    EXPECT_THAT(errorText(client), EndsWith(")"));
}

}
