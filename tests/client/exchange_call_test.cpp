#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

// What an exchange hands to the HTTP client and to its own operations.

namespace {

const QString first = QStringLiteral("http://first/");
const QString second = QStringLiteral("http://second/");
const QString third = QStringLiteral("http://third/");

const RestOutcome down = RestOutcome::connectionError(QStringLiteral("соединение отклонено"));

RestOutcome good()
{
    return RestOutcome::http(200, soap::reply("<Answer/>"));
}

/// Notes which operations the exchange calls, and lets them do their work.
class OperationsNoted : public ClientUnderTest {
public:
    using ClientUnderTest::ClientUnderTest;

    QHash<QString, QString> createHttpHeaders(const QString& action) const override
    {
        calls.append(QStringLiteral("createHttpHeaders ") + action);
        QHash<QString, QString> headers = ClientUnderTest::createHttpHeaders(action);
        headers.insert(QStringLiteral("Till"), QStringLiteral("3"));
        return headers;
    }

    void createXmlRequest(QDomDocument& document, const QDomNode& body) const override
    {
        calls.append(QStringLiteral("createXmlRequest ") + body.nodeName());
        ClientUnderTest::createXmlRequest(document, body);
    }

    QDomDocument createXmlAnswer(const QByteArray& reply) const override
    {
        calls.append(QStringLiteral("createXmlAnswer ") + QString::fromUtf8(reply));
        return ClientUnderTest::createXmlAnswer(reply);
    }

    mutable QStringList calls;
};

}

TEST(ExchangeCall, HandsOverTheTimeoutOnceAndBeforeThePost)
{
    ScriptedRestClient servers;
    servers.at(first, good());
    ClientUnderTest client({ first });
    client.setTimeout(7);

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(servers.calls()), "timeout 7\npost http://first/");
}

TEST(ExchangeCall, WalkIsMadeByOneClient)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, down);
    servers.at(third, good());
    ClientUnderTest client({ first, second, third });
    client.setTimeout(1);

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(servers.calls()), "timeout 1\npost http://first/\npost http://second/\npost http://third/");
}

TEST(ExchangeCall, EachExchangeSetsTheTimeoutAnew)
{
    ScriptedRestClient servers;
    servers.at(first, good());
    ClientUnderTest client({ first });

    client.setTimeout(0);
    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");
    client.setTimeout(-3);
    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(servers.calls()), "timeout 0\npost http://first/\ntimeout -3\npost http://first/");
}

TEST(ExchangeCall, EveryAttemptCarriesTheSameRequest)
{
    ScriptedRestClient servers;
    servers.at(first, RestOutcome::http(500, soap::reply(soap::fault("отказ"))));
    servers.at(second, down);
    servers.at(third, good());
    ClientUnderTest client({ first, second, third });
    client.setAuthorizationHeader(QStringLiteral("Basic Og=="));
    client.changeServer(1);

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    const QHash<QString, QString> headers {
        { QStringLiteral("Content-Type"), QStringLiteral("text/xml; charset=UTF-8") },
        { QStringLiteral("SOAPAction"), QStringLiteral("http://tempuri.org/IVantiroService/Probe") },
        { QStringLiteral("Authorization"), QStringLiteral("Basic Og==") },
    };
    ASSERT_EQ(servers.posts().size(), 3);
    for (const RestPost& post : servers.posts()) {
        EXPECT_EQ(readable(post.body), readable(soap::request("  <tem:Probe/>\n")));
        EXPECT_EQ(post.headers, headers);
    }
}

TEST(ExchangeCall, UrlIsUsedAsItStands)
{
    const QString url = QStringLiteral("https://till:pw@server:8443/loyalty/service.svc?shop=3&x=%20#part");
    ScriptedRestClient servers;
    servers.at(QUrl(url).toString(), good());
    ClientUnderTest client({ url });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    ASSERT_EQ(servers.posts().size(), 1);
    EXPECT_EQ(servers.posts().constFirst().url, QUrl(url));
}

TEST(ExchangeCall, OperationsAreCalledThroughVirtualDispatch)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, RestOutcome::http(200, "<Answer/>"));
    OperationsNoted client({ first, second });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(client.calls),
              "createXmlRequest soapenv:Body\n"
              "createHttpHeaders Probe\n"
              "createXmlAnswer <Answer/>");
    for (const RestPost& post : servers.posts()) {
        EXPECT_EQ(readable(post.headers.value(QStringLiteral("Till"))), "3");
    }
}

TEST(ExchangeCall, ReplyOfALostConnectionIsNotRead)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    OperationsNoted client({ first });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::noConnection);

    EXPECT_EQ(readable(client.calls), "createXmlRequest soapenv:Body\ncreateHttpHeaders Probe");
}

TEST(ExchangeCall, DocumentKeepsTheEnvelopeAlsoAfterAFailure)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    ClientUnderTest client({ first });
    QDomDocument document;
    QDomElement body = document.createElement(QStringLiteral("soapenv:Body"));
    body.appendChild(document.createElement(QStringLiteral("tem:Probe")));

    EXPECT_EQ(failureOf([&] { (void)client.processSoapMessage(document, body, QStringLiteral("Probe")); }),
              failure::noConnection);

    EXPECT_EQ(readable(document.toByteArray(1)), readable(soap::request("  <tem:Probe/>\n")));
}

TEST(ExchangeCall, ServerFoundByAWalkIsAskedFirstFromThenOn)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, good());
    ClientUnderTest client({ first, second });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");
    servers.at(first, good());
    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(servers.asked()), "http://first/\nhttp://second/\nhttp://second/");
    EXPECT_EQ(client.currentServerIndex, 1);
}

TEST(ExchangeCall, NothingIsSentAgainAfterAFailure)
{
    ScriptedRestClient servers;
    servers.next(down);
    servers.next(RestOutcome::http(503, ""));
    servers.next(RestOutcome::http(200, "not XML"));
    ClientUnderTest client({ first });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::noConnection);
    EXPECT_EQ(servers.posts().size(), 1);
    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::noConnection);
    EXPECT_EQ(servers.posts().size(), 2);
    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::incorrectAnswer);
    EXPECT_EQ(servers.posts().size(), 3);
}

TEST(ExchangeCall, ServerChosenDuringThePostIsKept)
{
    ScriptedRestClient servers;
    servers.at(second, good());
    ClientUnderTest client({ first, second });
    client.changeServer(1);
    servers.whilePosting([&client] { client.changeServer(-1); });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(servers.asked()), "http://second/");
    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(ExchangeCall, WalkSkipsTheServerThatItBeganWithAlsoWhenAnotherIsChosenMeanwhile)
{
    ScriptedRestClient servers;
    servers.at(first, good());
    servers.at(second, good());
    servers.at(third, down);
    ClientUnderTest client({ first, second, third });
    client.changeServer(2);
    servers.whilePosting([&client] { client.changeServer(0); });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(servers.asked()), "http://third/\nhttp://first/");
    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(ExchangeCall, SameAddressTwiceIsTwoServers)
{
    ScriptedRestClient servers;
    servers.next(down);
    servers.next(good());
    ClientUnderTest client({ first, first });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(servers.asked()), "http://first/\nhttp://first/");
    EXPECT_EQ(client.currentServerIndex, 1);
}
