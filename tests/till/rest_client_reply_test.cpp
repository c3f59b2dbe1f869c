#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <gmock/gmock.h>

using namespace std::chrono_literals;
using namespace vantiro_test;

namespace {

TEST(RestClientReply, BeforeTheFirstPostThereIsNothingToTell)
{
    RestClient client;
    EXPECT_EQ(ending(client), "nothing 0");
    EXPECT_EQ(client.getResponseBody(), "");
    EXPECT_EQ(errorText(client), "");
}

class RestClientSuccess : public testing::TestWithParam<int> { };

TEST_P(RestClientSuccess, HasStatusAndBodyAndNoErrorText)
{
    const LoopbackServer server(Answer::reply(GetParam(), "<a>\r\n</a>"));
    RestClient client;
    client.post(server.url(), "body", {});
    EXPECT_EQ(ending(client), "success " + std::to_string(GetParam()));
    EXPECT_EQ(client.getResponseBody(), "<a>\r\n</a>");
    EXPECT_EQ(errorText(client), "");
}

INSTANTIATE_TEST_SUITE_P(Status, RestClientSuccess, testing::Values(200, 201, 202, 203, 206, 250, 299));

class RestClientHttpError : public testing::TestWithParam<int> { };

TEST_P(RestClientHttpError, HasStatusAndBodyAndText)
{
    const LoopbackServer server(Answer::reply(GetParam(), "<s:Fault/>", { { "Retry-After", "0" } }));
    RestClient client;
    client.post(server.url(), "body", {});
    const std::string status = std::to_string(GetParam());
    EXPECT_EQ(ending(client), "HTTP error " + status);
    EXPECT_EQ(client.getResponseBody(), "<s:Fault/>");
    EXPECT_EQ(errorText(client),
              "http://127.0.0.1:" + std::to_string(server.port()) + "/: сервер ответил кодом HTTP " + status);
    EXPECT_EQ(server.requests().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Status, RestClientHttpError,
                         testing::Values(300, 400, 401, 403, 404, 407, 408, 417, 429, 499, 500, 502, 503, 599, 999));

TEST(RestClientReply, EmptyBodyOfStatus200IsSuccess)
{
    const LoopbackServer server(Answer::reply(200));
    EXPECT_EQ(endingOfPost(server.url()), "success 200");
}

TEST(RestClientReply, Status204HasNoBodyAndNeedsNoLength)
{
    const LoopbackServer server(Answer::raw("HTTP/1.1 204 No Content\r\n\r\n"));
    EXPECT_EQ(endingOfPost(server.url()), "success 204");
}

TEST(RestClientReply, NoRedirectIsFollowed)
{
    const LoopbackServer target(Answer::reply(200));
    for (const int status : { 301, 302, 303, 307, 308 }) {
        const LoopbackServer server(Answer::reply(status, "moved", { { "Location", target.url().toEncoded() } }));
        RestClient client;
        client.post(server.url(), "body", {});
        EXPECT_EQ(ending(client), "HTTP error " + std::to_string(status));
        EXPECT_EQ(client.getResponseBody(), "moved");
        EXPECT_EQ(server.requests().size(), 1);
    }
    EXPECT_EQ(target.connections(), 0);
}

TEST(RestClientReply, DemandForAPasswordIsNotAnswered)
{
    const LoopbackServer server(Answer::reply(401, "", { { "WWW-Authenticate", "Basic realm=\"a\"" } }));
    QUrl url = server.url();
    url.setUserInfo("cashier:secret");
    EXPECT_EQ(endingOfPost(url), "HTTP error 401");
    EXPECT_EQ(server.requests().size(), 1);
}

TEST(RestClientReply, ChunksAreJoinedAndTrailersLeftOut)
{
    const LoopbackServer server(Answer::raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: Chunked\r\n\r\n"
                                            "3;a=b\r\nabc\r\nA\r\n0123456789\r\n0\r\nX-Sum: 1\r\n\r\n"));
    RestClient client;
    client.post(server.url(), "body", {});
    EXPECT_EQ(ending(client), "success 200");
    EXPECT_EQ(client.getResponseBody(), "abc0123456789");
}

TEST(RestClientReply, WithoutLengthTheBodyEndsWithTheConnection)
{
    const LoopbackServer server(Answer::raw("HTTP/1.0 200 OK\r\n\r\nabc").pause(50ms).send("def").hangUp());
    RestClient client;
    client.post(server.url(), "body", {});
    EXPECT_EQ(ending(client), "success 200");
    EXPECT_EQ(client.getResponseBody(), "abcdef");
}

TEST(RestClientReply, BodyKeepsZeroBytes)
{
    const QByteArray body("\0a\0", 3);
    const LoopbackServer server(Answer::reply(200, body));
    RestClient client;
    client.post(server.url(), "body", {});
    EXPECT_EQ(client.getResponseBody(), body);
}

TEST(RestClientReply, PackedBodyIsNotUnpacked)
{
    const QByteArray packed = QByteArray::fromHex("1f8b08000000000000034b4c04004cde3a1602000000");
    const LoopbackServer server(Answer::reply(200, packed, { { "Content-Encoding", "gzip" } }));
    RestClient client;
    client.post(server.url(), "body", {});
    EXPECT_EQ(client.getResponseBody(), packed);
}

TEST(RestClientReply, InterimRepliesAreSkipped)
{
    const LoopbackServer server(Answer::raw("HTTP/1.1 100 Continue\r\n\r\n")
                                    .pause(50ms)
                                    .send("HTTP/1.1 103 Early Hints\r\nLink: </a>\r\nContent-Length: 9\r\n\r\n")
                                    .pause(50ms)
                                    .send("HTTP/1.1 404 Not Found\r\nContent-Length: 2\r\n\r\nno"));
    RestClient client;
    client.post(server.url(), "body", {});
    EXPECT_EQ(ending(client), "HTTP error 404");
    EXPECT_EQ(client.getResponseBody(), "no");
    EXPECT_EQ(server.requests().size(), 1);
}

TEST(RestClientReply, ReplyInSinglePortionsIsPutTogether)
{
    const QByteArray reply = "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc";
    const LoopbackServer server(Answer::nothing().drip(reply, 1, 1ms));
    RestClient client;
    client.post(server.url(), "body", {});
    EXPECT_EQ(ending(client), "success 200");
    EXPECT_EQ(client.getResponseBody(), "abc");
}

TEST(RestClientReply, LengthToldTwiceAlikeIsALength)
{
    const LoopbackServer server(Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 3\r\ncontent-length: 3\r\n\r\nabc"));
    EXPECT_EQ(endingOfPost(server.url()), "success 200");
}

TEST(RestClientReply, StatusNeedsNoWordsBehindIt)
{
    const LoopbackServer bare(Answer::raw("HTTP/1.1 200\r\nContent-Length: 0\r\n\r\n"));
    EXPECT_EQ(endingOfPost(bare.url()), "success 200");
    const LoopbackServer blank(Answer::raw("HTTP/1.1 200 \r\nContent-Length: 0\r\n\r\n"));
    EXPECT_EQ(endingOfPost(blank.url()), "success 200");
}

TEST(RestClientReply, EachPostTellsOnlyOfItself)
{
    const LoopbackServer broken(Answer::reply(500, "fault"));
    const LoopbackServer good(Answer::reply(200));
    const ClosedPort closed;
    RestClient client;

    client.post(broken.url(), "body", {});
    client.post(good.url(), "body", {});
    EXPECT_EQ(ending(client), "success 200");
    EXPECT_EQ(client.getResponseBody(), "");
    EXPECT_EQ(errorText(client), "");

    client.post(broken.url(), "body", {});
    client.post(closed.url(), "body", {});
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_EQ(client.getResponseBody(), "");

    client.post(broken.url(), "body", {});
    client.post(QUrl(), "body", {});
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_EQ(client.getResponseBody(), "");
}

}
