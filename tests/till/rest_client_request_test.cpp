#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <gmock/gmock.h>

using namespace vantiro_test;

namespace {

class RestClientRequest : public testing::Test {
protected:
    [[nodiscard]] std::string rawPost(const QUrl& url, const QByteArray& body, const Headers& headers)
    {
        client.post(url, body, headers);
        const QList<HttpRequest> requests = server.requests();
        return requests.isEmpty() ? std::string() : requests.last().raw.toStdString();
    }

    [[nodiscard]] std::string host() const
    {
        return "Host: 127.0.0.1:" + std::to_string(server.port()) + "\r\n";
    }

    LoopbackServer server { Answer::reply(200, "ok") };
    RestClient client;
};

TEST_F(RestClientRequest, NothingGoesOutButTheGivenHeadersAndWhatHttpRequires)
{
    const Headers headers {
        { "Content-Type", "text/xml; charset=UTF-8" },
        { "SOAPAction", "http://tempuri.org/IVantiroService/IsCardValid" },
        { "Authorization", "Basic dXNlcjpzZWNyZXQ=" },
    };
    EXPECT_EQ(rawPost(server.url("/service"), "<a/>\n", headers),
              "POST /service HTTP/1.1\r\n" + host()
                  + "Authorization: Basic dXNlcjpzZWNyZXQ=\r\n"
                    "Content-Type: text/xml; charset=UTF-8\r\n"
                    "SOAPAction: http://tempuri.org/IVantiroService/IsCardValid\r\n"
                    "Content-Length: 5\r\n"
                    "\r\n"
                    "<a/>\n");
}

TEST_F(RestClientRequest, WithoutHeadersOnlyHostAndLengthGoOut)
{
    EXPECT_EQ(rawPost(server.url(), "", {}), "POST / HTTP/1.1\r\n" + host() + "Content-Length: 0\r\n\r\n");
}

TEST_F(RestClientRequest, HeadersThatTheClientNeverAddsOnItsOwnCanBeGiven)
{
    EXPECT_EQ(rawPost(server.url(), "b", { { "Accept", "text/xml" }, { "User-Agent", "till" } }),
              "POST / HTTP/1.1\r\n" + host() + "Accept: text/xml\r\nUser-Agent: till\r\nContent-Length: 1\r\n\r\nb");
}

TEST_F(RestClientRequest, HeaderNamesKeepTheirCase)
{
    EXPECT_EQ(rawPost(server.url(), "b", { { "content-TYPE", "a/b" }, { "aCCept", "*/*" } }),
              "POST / HTTP/1.1\r\n" + host() + "aCCept: */*\r\ncontent-TYPE: a/b\r\nContent-Length: 1\r\n\r\nb");
}

TEST_F(RestClientRequest, HeaderWithoutValueIsSentWithoutValue)
{
    EXPECT_EQ(rawPost(server.url(), "b", { { "Content-Type", "" }, { "X-Blank", "  " }, { "X-Empty", "" } }),
              "POST / HTTP/1.1\r\n" + host() + "Content-Type:\r\nX-Blank:\r\nX-Empty:\r\nContent-Length: 1\r\n\r\nb");
}

TEST_F(RestClientRequest, HeaderValueIsSentAsUtf8AndKeepsItsSigns)
{
    EXPECT_EQ(rawPost(server.url(), "b", { { "X-Shop", "Пекарня; \"у дома\": %1, 100%" } }),
              "POST / HTTP/1.1\r\n" + host() + "X-Shop: Пекарня; \"у дома\": %1, 100%\r\nContent-Length: 1\r\n\r\nb");
}

TEST_F(RestClientRequest, GivenHostReplacesTheOneOfTheAddress)
{
    EXPECT_EQ(rawPost(server.url(), "b", { { "Host", "loyalty.example" } }),
              "POST / HTTP/1.1\r\nHost: loyalty.example\r\nContent-Length: 1\r\n\r\nb");
}

TEST_F(RestClientRequest, BodyWithZeroBytesGoesWhole)
{
    const QByteArray body("a\0b\0", 4);
    std::ignore = rawPost(server.url(), body, {});
    EXPECT_EQ(server.requests().at(0).header("Content-Length"), "4");
    EXPECT_EQ(server.requests().at(0).body, body);
}

TEST_F(RestClientRequest, LargeBodyGoesWholeAndAsksForNoPermission)
{
    const QByteArray body(4 * 1024 * 1024, 'x');
    const std::string raw = rawPost(server.url(), body, {});
    EXPECT_EQ(raw.substr(0, raw.find("\r\n\r\n")), "POST / HTTP/1.1\r\n" + host() + "Content-Length: 4194304");
    EXPECT_TRUE(server.requests().at(0).body == body);
}

TEST_F(RestClientRequest, AddressWithoutPathAsksForTheRoot)
{
    std::ignore = rawPost(server.url(""), "b", {});
    EXPECT_EQ(server.requests().at(0).target, "/");
}

TEST_F(RestClientRequest, AddressGoesOutAsItStands)
{
    const QString target = "/a/../b/./c//d;e=1/%D1%8F%2F?q=1&r=%20&s=/../";
    std::ignore = rawPost(server.url(target), "b", {});
    EXPECT_EQ(server.requests().at(0).target, target.toLatin1());
}

TEST_F(RestClientRequest, FragmentStaysAtHome)
{
    std::ignore = rawPost(server.url("/a?b#c"), "b", {});
    EXPECT_EQ(server.requests().at(0).target, "/a?b");
}

TEST_F(RestClientRequest, UserInformationOfTheAddressStaysAtHome)
{
    QUrl url = server.url();
    url.setUserName("cashier");
    url.setPassword("secret");
    EXPECT_EQ(rawPost(url, "b", {}), "POST / HTTP/1.1\r\n" + host() + "Content-Length: 1\r\n\r\nb");
    EXPECT_EQ(ending(client), "success 200");
}

TEST_F(RestClientRequest, EachPostHasAConnectionOfItsOwn)
{
    client.post(server.url(), "1", {});
    client.post(server.url(), "2", {});
    EXPECT_EQ(server.connections(), 2);
    EXPECT_EQ(server.requests().at(1).connection, 2);
}

TEST_F(RestClientRequest, TheFactoryGivesOutAClientThatAsks)
{
    const QSharedPointer<RestClient> made = MockFactory<RestClient>::create();
    made->post(server.url(), "b", {});
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_TRUE(made->isSuccess());
}

TEST(RestClientMemory, CookiesAreNotKept)
{
    const LoopbackServer server(Answer::reply(200, "", { { "Set-Cookie", "session=1; Path=/" } }));
    RestClient client;
    client.post(server.url(), "1", {});
    client.post(server.url(), "2", {});
    EXPECT_EQ(server.requests().at(1).raw,
              "POST / HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(server.port())
                  + "\r\nContent-Length: 1\r\n\r\n2");
}

}
