#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"
#include "tests/support/loopback_server.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ostream>

// The main cases of an exchange over a real connection.

namespace {

using vantiro_test::Answer;
using vantiro_test::ClosedPort;
using vantiro_test::DeafPort;
using vantiro_test::LoopbackServer;

using namespace std::chrono_literals;

const QByteArray goodReply
    = R"(<?xml version="1.0" encoding="utf-8"?>)" + soap::reply("<IsCardValidResult>true</IsCardValidResult>");

Answer good()
{
    return Answer::reply(200, goodReply, { { "Content-Type", "text/xml; charset=utf-8" } });
}

/// The result of `isCardValid`, or how it fails.
std::string validityBy(VantiroInterface& client)
{
    std::string result;
    const std::string failure
        = failureOf([&] { result = client.isCardValid(QStringLiteral("1234567")) ? "valid" : "not valid"; });
    return result.empty() ? failure : result;
}

/// The lines of the head of a request, the header fields in alphabetical order: theirs is left to the till.
std::string headOf(const QByteArray& raw)
{
    QByteArrayList lines = raw.left(raw.indexOf("\r\n\r\n")).split('\n');
    std::sort(lines.begin() + 1, lines.end());
    return readable(lines.join('\n').replace('\r', ""));
}

QByteArray bodyOf(const QByteArray& raw)
{
    return raw.mid(raw.indexOf("\r\n\r\n") + 4);
}

struct Case {
    const char* rule;
    Answer answer;
    std::string outcome;
};

void PrintTo(const Case& row, std::ostream* out)
{
    *out << row.rule;
}

class LoopbackReply : public testing::TestWithParam<Case> { };

Answer faultUnder(const QByteArray& prefix)
{
    return Answer::reply(500,
                         "<" + prefix + ":Envelope><" + prefix + ":Body><" + prefix
                             + ":Fault><faultstring>Карта заблокирована</faultstring></" + prefix + ":Fault></" + prefix
                             + ":Body></" + prefix + ":Envelope>");
}

}

// Each of them is a reply, so no second server is asked.
INSTANTIATE_TEST_SUITE_P(
    Replies, LoopbackReply,
    testing::Values(Case { "Http200", good(), "valid" },
                    Case { "Http200NotXml", Answer::reply(200, "<html><br></html>"), failure::incorrectAnswer },
                    Case { "Http200Empty", Answer::reply(200), failure::incorrectAnswer },
                    Case { "Http204", Answer::raw("HTTP/1.1 204 No Content\r\n\r\n"), failure::incorrectAnswer },
                    Case { "Http301", Answer::reply(301, goodReply, { { "Location", "http://127.0.0.1:9/elsewhere" } }),
                           failure::noConnection },
                    Case { "Http404", Answer::reply(404, goodReply), failure::noConnection },
                    Case { "Http500Fault", faultUnder("s"), failure::fault("Карта заблокирована") },
                    Case { "Http500FaultUnderAnotherPrefix", faultUnder("SOAP-ENV"), failure::incorrectAnswer },
                    Case { "Http500Answer", Answer::reply(500, goodReply), "valid" },
                    Case { "Http500NotXml", Answer::reply(500, "Internal Server Error"), failure::incorrectAnswer },
                    Case { "Http503", Answer::reply(503, goodReply), failure::noConnection }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(LoopbackReply, IsJudged)
{
    const LoopbackServer server(GetParam().answer);
    const LoopbackServer other(good());
    ClientUnderTest client({ server.url().toString(), other.url().toString() });
    client.setTimeout(5);

    EXPECT_EQ(validityBy(client), GetParam().outcome);

    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_TRUE(other.requests().isEmpty());
    EXPECT_EQ(client.currentServerIndex, 0);
}

struct Loss {
    const char* rule;
    Answer answer;
};

void PrintTo(const Loss& row, std::ostream* out)
{
    *out << row.rule;
}

class LoopbackLoss : public testing::TestWithParam<Loss> { };

// The request may have been executed, but there is no reply: the walk begins, and the request is sent to no server
// twice.
INSTANTIATE_TEST_SUITE_P(Losses, LoopbackLoss,
                         testing::Values(Loss { "Silence", Answer::silence() },
                                         Loss { "HungUp", Answer::nothing().hangUp() },
                                         Loss { "Reset", Answer::nothing().reset() },
                                         Loss { "CutInTheHead", good().cutAfter(20).hangUp() },
                                         Loss { "CutInTheBody", good().cutAfter(150).hangUp() },
                                         Loss { "ResetInTheBody", good().cutAfter(150).reset() },
                                         Loss { "SilenceInTheBody", good().cutAfter(150).keepSilent() }),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST_P(LoopbackLoss, MovesToTheNextServer)
{
    const LoopbackServer server(GetParam().answer);
    const LoopbackServer other(good());
    ClientUnderTest client({ server.url().toString(), other.url().toString() });
    client.setTimeout(1);

    EXPECT_EQ(validityBy(client), "valid");

    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_EQ(other.requests().size(), 1);
    EXPECT_EQ(client.currentServerIndex, 1);
}

TEST_P(LoopbackLoss, IsNoConnectionWithoutAnotherServer)
{
    const LoopbackServer server(GetParam().answer);
    ClientUnderTest client({ server.url().toString() });
    client.setTimeout(1);

    EXPECT_EQ(validityBy(client), failure::noConnection);

    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(LoopbackExchange, RefusedPortMovesToTheNextServer)
{
    const ClosedPort refused;
    const LoopbackServer other(good());
    ClientUnderTest client({ refused.url().toString(), other.url().toString() });
    client.setTimeout(5);

    EXPECT_EQ(validityBy(client), "valid");

    EXPECT_EQ(client.currentServerIndex, 1);
}

TEST(LoopbackExchange, RefusedPortAloneIsNoConnection)
{
    const ClosedPort refused;
    ClientUnderTest client({ refused.url().toString() });
    client.setTimeout(5);
    const LogRecorder log;

    EXPECT_EQ(validityBy(client), failure::noConnection);

    const QStringList lines = log.of(QStringLiteral("vantiro"));
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(readable(lines.at(0)), "info: Валидация карты на сервере");
    // The reason is the till's; there must be one.
    const QString beginning = QStringLiteral("error: Произошла ошибка при выполнении запроса ");
    EXPECT_TRUE(lines.at(1).startsWith(beginning)) << readable(lines);
    EXPECT_GT(lines.at(1).size(), beginning.size()) << readable(lines);
}

TEST(LoopbackExchange, DeafPortCostsItsTimeoutOnce)
{
    const DeafPort deaf;
    const LoopbackServer other(good());
    ClientUnderTest client({ deaf.url().toString(), other.url().toString() });
    client.setTimeout(2);

    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(validityBy(client), "valid");
    const auto duration = std::chrono::steady_clock::now() - start;

    EXPECT_GE(duration, 1900ms);
    EXPECT_LT(duration, 3900ms);
    EXPECT_EQ(client.currentServerIndex, 1);
}

TEST(LoopbackExchange, WalkEndsWithTheFaultOfTheLastServer)
{
    const ClosedPort refused;
    const LoopbackServer faulty(faultUnder("s"));
    ClientUnderTest client({ refused.url().toString(), faulty.url().toString() });
    client.setTimeout(5);

    EXPECT_EQ(validityBy(client), failure::fault("Карта заблокирована"));

    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(LoopbackExchange, WalkPassesAFaultForASuccess)
{
    const ClosedPort refused;
    const LoopbackServer faulty(faultUnder("s"));
    const LoopbackServer other(good());
    ClientUnderTest client({ refused.url().toString(), faulty.url().toString(), other.url().toString() });
    client.setTimeout(5);

    EXPECT_EQ(validityBy(client), "valid");

    EXPECT_EQ(faulty.requests().size(), 1);
    EXPECT_EQ(client.currentServerIndex, 2);
}

TEST(LoopbackExchange, UnparsableAddressIsNoConnection)
{
    for (const QString& url : { QString(), QStringLiteral("http://[::1"), QStringLiteral("::"),
                                QStringLiteral("ftp://127.0.0.1/"), QStringLiteral("127.0.0.1") }) {
        ClientUnderTest client({ url });
        client.setTimeout(1);

        EXPECT_EQ(validityBy(client), failure::noConnection) << readable(url);
    }
}

TEST(LoopbackExchange, RequestIsWholeOnTheWire)
{
    const LoopbackServer server(good());
    ClientUnderTest client({ server.url(QStringLiteral("/loyalty/service.svc?shop=3")).toString() });
    client.setTimeout(5);
    client.setAuthorizationHeader(QStringLiteral("Basic dGlsbDpzZWNyZXQ="));

    EXPECT_EQ(validityBy(client), "valid");

    ASSERT_EQ(server.requests().size(), 1);
    const QByteArray raw = server.requests().constFirst().raw;
    EXPECT_EQ(headOf(raw),
              "POST /loyalty/service.svc?shop=3 HTTP/1.1\n"
              "Authorization: Basic dGlsbDpzZWNyZXQ=\n"
              "Content-Length: 263\n"
              "Content-Type: text/xml; charset=UTF-8\n"
              "Host: 127.0.0.1:"
                  + std::to_string(server.port())
                  + "\n"
                    "SOAPAction: http://tempuri.org/IVantiroService/IsCardValid");
    EXPECT_EQ(
        readable(bodyOf(raw)),
        R"(<soapenv:Envelope xmlns:soapenv="http://schemas.xmlsoap.org/soap/envelope/" xmlns:tem="http://tempuri.org/">
 <soapenv:Body>
  <tem:IsCardValid>
   <tem:discountCardNumber>1234567</tem:discountCardNumber>
  </tem:IsCardValid>
 </soapenv:Body>
</soapenv:Envelope>
)");
}

TEST(LoopbackExchange, KeepsTheDefaultLogOfTheHttpClient)
{
    const LoopbackServer server(good());
    ClientUnderTest client({ server.url().toString() });
    client.setTimeout(5);
    const LogRecorder log;

    EXPECT_EQ(validityBy(client), "valid");

    EXPECT_EQ(readable(log.of(QStringLiteral("vantiro"))), "info: Валидация карты на сервере");
    EXPECT_EQ(readable(log.of(QStringLiteral("taskmanager/vantiroping"))), "");
}
