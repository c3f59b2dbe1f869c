#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <gmock/gmock.h>

#include <chrono>

using namespace std::chrono_literals;
using namespace vantiro_test;

namespace {

constexpr qsizetype limit = 16777216; // bytes of a body
constexpr qint64 buffers = 16777216; // bytes that can be under way when the client stops listening
constexpr qsizetype headLimit = 65536; // bytes of all heads

class RestClientLimit : public testing::Test {
protected:
    void post(const Answer& answer)
    {
        const auto start = std::chrono::steady_clock::now();
        const LoopbackServer server(answer);
        client.setTimeout(60);
        client.post(server.url(), "body", {});
        ASSERT_TRUE(server.waitUntilIdle(10s)) << "the client has not hung up";
        EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
        EXPECT_LT(server.sent(), limit + buffers);
        EXPECT_EQ(server.requests().size(), 1);
        address = server.url().toString().toStdString();
    }

    void expectTooLarge(const std::string& status)
    {
        EXPECT_TRUE(client.getResponseBody().isEmpty());
        EXPECT_EQ(errorText(client), address + ": ответ сервера с кодом HTTP " + status + " слишком велик и не принят");
    }

    RestClient client;
    std::string address;
};

TEST_F(RestClientLimit, BodyOfTheLimitIsTaken)
{
    const QByteArray body(limit, 'x');
    post(Answer::reply(200, body).hangUp());
    EXPECT_EQ(ending(client), "success 200");
    EXPECT_TRUE(client.getResponseBody() == body);
    EXPECT_EQ(errorText(client), "");
}

TEST_F(RestClientLimit, BodyThatIsToldToBeLargerIsAReplyWithoutBody)
{
    post(Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 16777217\r\n\r\nx").keepSilent());
    EXPECT_EQ(ending(client), "success 200");
    expectTooLarge("200");
}

TEST_F(RestClientLimit, LengthBeyondAllNumbersIsAReplyWithoutBody)
{
    post(Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999999999\r\n\r\nx").keepSilent());
    EXPECT_EQ(ending(client), "success 200");
    expectTooLarge("200");
}

TEST_F(RestClientLimit, EndlessChunksAreAReplyWithoutBody)
{
    const QByteArray chunk = "10000\r\n" + QByteArray(65536, 'x') + "\r\n";
    post(Answer::raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n").sendForEver(chunk));
    EXPECT_EQ(ending(client), "success 200");
    expectTooLarge("200");
}

TEST_F(RestClientLimit, OneByteBeyondTheLimitInChunksIsAReplyWithoutBody)
{
    post(Answer::raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1000001\r\n")
             .send(QByteArray(limit + 1, 'x'))
             .send("\r\n0\r\n\r\n")
             .hangUp());
    EXPECT_EQ(ending(client), "success 200");
    expectTooLarge("200");
}

TEST_F(RestClientLimit, EndlessBodyWithoutLengthIsAReplyWithoutBody)
{
    post(Answer::raw("HTTP/1.1 500 Error\r\n\r\n").sendForEver(QByteArray(65536, 'x')));
    EXPECT_EQ(ending(client), "HTTP error 500");
    expectTooLarge("500");
}

TEST_F(RestClientLimit, HeadOfTheLimitIsTaken)
{
    const QByteArray start = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n";
    const QByteArray end = "\r\n\r\n";
    QByteArray head = start;
    while (head.size() + 1000 < headLimit) {
        head += "X-A: " + QByteArray(493, 'x') + "\r\n";
    }
    head += "X-B: ";
    head += QByteArray(headLimit - head.size() - end.size(), 'x') + end;
    ASSERT_EQ(head.size(), headLimit);
    post(Answer::raw(head + "ok").hangUp());
    EXPECT_EQ(ending(client), "success 200");
    EXPECT_EQ(client.getResponseBody(), "ok");
}

TEST_F(RestClientLimit, EndlessHeadIsAReplyWithoutBody)
{
    post(Answer::raw("HTTP/1.1 200 OK\r\n").sendForEver("X-A: b\r\n"));
    EXPECT_EQ(ending(client), "success 200");
    expectTooLarge("200");
}

TEST_F(RestClientLimit, EndlessHeaderLineIsAReplyWithoutBody)
{
    post(Answer::raw("HTTP/1.1 503 Busy\r\nX-A: ").sendForEver(QByteArray(1024, 'x')));
    EXPECT_EQ(ending(client), "HTTP error 503");
    expectTooLarge("503");
}

TEST_F(RestClientLimit, EndlessTrailerIsAReplyWithoutBody)
{
    post(Answer::raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n0\r\n")
             .sendForEver("X-A: b\r\n"));
    EXPECT_EQ(ending(client), "success 200");
    expectTooLarge("200");
}

TEST_F(RestClientLimit, EndlessStatusLineIsNoReply)
{
    post(Answer::raw("HTTP/1.1 200 ").sendForEver(QByteArray(1024, 'x')));
    EXPECT_EQ(ending(client), "no reply 0");
}

TEST_F(RestClientLimit, EndlessInterimRepliesAreNoReply)
{
    post(Answer::nothing().sendForEver("HTTP/1.1 100 Continue\r\n\r\n"));
    EXPECT_EQ(ending(client), "no reply 0");
}

}
