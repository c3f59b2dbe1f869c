#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <gmock/gmock.h>

#include <ostream>

using namespace vantiro_test;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr auto unusableAddress = "адрес сервера непригоден, нужен полный адрес http или https";
constexpr auto unusableHeader = "непригодный заголовок запроса";

struct Header {
    const char* rule;
    QString name;
    QString value;
};

void PrintTo(const Header& header, std::ostream* stream)
{
    *stream << header.rule;
}

class RestClientHeaderRefusal : public testing::TestWithParam<Header> { };

TEST_P(RestClientHeaderRefusal, IsNoReplyAndNothingGoesOut)
{
    const LoopbackServer server(Answer::reply(200));
    RestClient client;
    client.post(server.url(), "body", { { "X-Good", "1" }, { GetParam().name, GetParam().value } });
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_THAT(errorText(client), HasSubstr(unusableHeader));
    EXPECT_EQ(server.connections(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Header, RestClientHeaderRefusal,
    testing::Values(Header { "LineEndInValue", "X-A", "1\r\nX-Injected: 2" }, Header { "ReturnInValue", "X-A", "1\r2" },
                    Header { "LineFeedInValue", "X-A", "1\n2" }, Header { "LineFeedAtTheEnd", "X-A", "1\n" },
                    Header { "ZeroInValue", "X-A", QString("1") + QChar(0) + '2' },
                    Header { "OnlyLineFeed", "X-A", "\n" }, Header { "LineEndInName", "X-A\r\nX-B", "1" },
                    Header { "ZeroInName", QString("X") + QChar(0), "1" }, Header { "ColonInName", "X-A: 1", "2" },
                    Header { "SemicolonInName", "X-A;", "1" }, Header { "BlankInName", "X A", "1" },
                    Header { "LetterBeyondAsciiInName", "Имя", "1" }, Header { "EmptyName", "", "1" },
                    Header { "OwnLength", "content-length", "1" },
                    Header { "OwnFraming", "Transfer-Encoding", "chunked" },
                    Header { "Permission", "Expect", "100-continue" }),
    [](const auto& test) { return test.param.rule; });

TEST(RestClientRefusal, TextOfAHeaderRefusalDoesNotTellTheValue)
{
    RestClient client;
    client.post(ClosedPort().url(), "", { { "Authorization", "Basic c2VjcmV0\n" } });
    EXPECT_THAT(errorText(client), HasSubstr(unusableHeader));
    EXPECT_THAT(errorText(client), Not(HasSubstr("c2VjcmV0")));
}

TEST(RestClientRefusal, EmptyAddressIsNoReply)
{
    RestClient client;
    client.post(QUrl(), "body", {});
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_EQ(errorText(client), "адрес сервера не задан");
}

class RestClientAddressRefusal : public testing::TestWithParam<const char*> { };

TEST_P(RestClientAddressRefusal, IsNoReplyAtOnce)
{
    RestClient client;
    client.post(QUrl(GetParam()), "body", {});
    EXPECT_EQ(ending(client), "no reply 0");
    EXPECT_THAT(errorText(client), HasSubstr(unusableAddress));
    EXPECT_THAT(errorText(client), Not(HasSubstr("secret")));
}

INSTANTIATE_TEST_SUITE_P(Address, RestClientAddressRefusal,
                         testing::Values("/service", "service.php?secret=1", "//127.0.0.1/service",
                                         "127.0.0.1:8080/service", "localhost:8080", "cashier:secret@127.0.0.1",
                                         "http:", "http://", "http:///service", "http:service",
                                         "http://127.0.0.1:port/secret", "http://127.0.0.1:99999/", "http://a b/",
                                         "http://[::1/", "about:blank"));

TEST(RestClientRefusal, OtherProtocolsAreNotSpoken)
{
    const LoopbackServer server(Answer::reply(200));
    for (const char* const scheme : { "ftp", "gopher", "telnet", "dict", "ws", "smtp", "httpx" }) {
        QUrl url = server.url();
        url.setScheme(scheme);
        RestClient client;
        client.post(url, "body", {});
        EXPECT_EQ(ending(client), "no reply 0") << scheme;
        EXPECT_THAT(errorText(client), HasSubstr(unusableAddress)) << scheme;
    }
    EXPECT_EQ(server.connections(), 0);
}

TEST(RestClientRefusal, FilesAreNotRead)
{
    for (const char* const address : { "file:///etc/hostname", "file://127.0.0.1/etc/hostname" }) {
        RestClient client;
        client.post(QUrl(address), "body", {});
        EXPECT_EQ(ending(client), "no reply 0") << address;
        EXPECT_EQ(client.getResponseBody(), "") << address;
        EXPECT_THAT(errorText(client), HasSubstr(unusableAddress)) << address;
    }
}

TEST(RestClientRefusal, SchemeInCapitalsIsHttp)
{
    const LoopbackServer server(Answer::reply(200));
    EXPECT_EQ(endingOfPost(QUrl("HTTP" + server.url().toString().mid(4))), "success 200");
}

}
