#include "tests/doctor/doctor_support.h"
#include "till/program/doctor_server.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>

using namespace vantiro_test;
using namespace Qt::StringLiterals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr auto connected = "ok      Server 1 (URL): 127.0.0.1 resolves to 127.0.0.1.\n"
                           "ok      Server 1 (URL): connects to 127.0.0.1 in N ms.\n";

const QByteArray fault = soapMessage("<s:Fault><faultstring>no</faultstring></s:Fault>");

/// A port whose queue of connections is full, so that a further one is neither accepted nor refused.
class FullPort : public LoopbackPort {
public:
    FullPort()
        : LoopbackPort(Kind::listening)
    {
        EXPECT_EQ(::listen(socket(), 0), 0);
        sockaddr_in address {};
        socklen_t size = sizeof address;
        EXPECT_EQ(::getsockname(socket(), reinterpret_cast<sockaddr*>(&address), &size), 0);
        for (int& client : clients) {
            client = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
            static_cast<void>(::connect(client, reinterpret_cast<const sockaddr*>(&address), size));
        }
    }

    ~FullPort()
    {
        for (const int client : clients) {
            ::close(client);
        }
    }

    Q_DISABLE_COPY_MOVE(FullPort)

private:
    std::array<int, 8> clients {};
};

struct Row {
    const char* name;
    Answer ping;
    Answer card;
    std::string lines;
};

class DoctorServer : public testing::TestWithParam<Row> { };

TEST_P(DoctorServer, Tells)
{
    const LoopbackServer server([](const HttpRequest& request) {
        return request.header("SOAPAction").endsWith("/Ping") ? GetParam().ping : GetParam().card;
    });
    EXPECT_EQ(serverLines(settingsOf(server.url())), connected + GetParam().lines);
}

const Answer answer = Answer::reply(200, soapMessage("<a/>"));
constexpr auto pinged = "ok      Server 1 (URL): the ping is answered in N ms.\n";
constexpr auto accepted = "ok      Server 1 (URL): requests without user and password are accepted.\n";
const std::string cannotBeTold = "FAILED  Server 1 (URL): whether user and password are accepted cannot be told (";
const std::string wanted = "); have the service answer IsCardValid.\n";

INSTANTIATE_TEST_SUITE_P(
    Answers, DoctorServer,
    testing::Values(
        Row { "SoundServer", answer, answer, std::string(pinged) + accepted },
        Row { "FaultOnTheCardIsAcceptance", answer, Answer::reply(500, fault), std::string(pinged) + accepted },
        Row { "FaultOnThePing", Answer::reply(500, fault), answer,
              std::string(
                  "FAILED  Server 1 (URL): the ping is answered with a SOAP fault and the status 500; see whether "
                  "the service has the namespace http://tempuri.org/.\n")
                  + accepted },
        Row { "FaultWithSuccessOnThePing", Answer::reply(200, fault), answer,
              std::string(
                  "warning Server 1 (URL): the ping is answered with a SOAP fault and the status 200; see whether "
                  "the service has the namespace http://tempuri.org/.\n")
                  + accepted },
        Row {
            "FaultWithAnotherPrefix", answer,
            Answer::reply(500,
                          "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault/>"
                          "</e:Body></e:Envelope>"),
            std::string(pinged) + accepted
                + "warning Server 1 (URL): SOAP faults have another prefix than s, and the plug-in does not understand "
                  "those; have the service write s:Fault.\n" },
        Row {
            "Unauthorized", Answer::reply(401), Answer::reply(401),
            "FAILED  Server 1 (URL): the ping is answered with the HTTP status 401; see the line on the credentials.\n"
            "FAILED  Server 1 (URL): user and password are wanted (HTTP status 401); set them in [Vantiro].\n" },
        Row {
            "ForbiddenForCardsOnly", answer, Answer::reply(403),
            std::string(pinged)
                + "FAILED  Server 1 (URL): user and password are wanted (HTTP status 403); set them in [Vantiro].\n" },
        Row { "WrongPath", Answer::reply(404), Answer::reply(404),
              "FAILED  Server 1 (URL): the ping is answered with the HTTP status 404; correct the path in hosts.\n"
                  + cannotBeTold + "HTTP status 404" + wanted },
        Row { "OutOfService", Answer::reply(503), Answer::reply(503),
              "FAILED  Server 1 (URL): the ping is answered with the HTTP status 503; ask whoever runs the service.\n"
                  + cannotBeTold + "HTTP status 503" + wanted },
        Row { "ServerErrorWithoutFault", Answer::reply(500, "oops"), Answer::reply(500, "oops"),
              "FAILED  Server 1 (URL): the ping is answered with the HTTP status 500; ask whoever runs the service.\n"
                  + cannotBeTold + "HTTP status 500" + wanted },
        Row {
            "WebPage", Answer::reply(200, "<html><body>Welcome</body></html>"),
            Answer::reply(200, "<html><body>Welcome</body></html>"),
            "FAILED  Server 1 (URL): the ping is answered, but with no SOAP message; write the address of the service "
            "itself in hosts.\n"
                + cannotBeTold + "no SOAP message" + wanted },
        Row { "EmptyReply", Answer::reply(200), answer,
              std::string(
                  "FAILED  Server 1 (URL): the ping is answered, but with no SOAP message; write the address of the "
                  "service itself in hosts.\n")
                  + accepted },
        Row { "LargestReplyIsTaken", Answer::reply(200, soapMessage(QByteArray(65536 - soapMessage({}).size(), ' '))),
              answer, std::string(pinged) + accepted },
        Row { "LargerReplyIsNoAnswer", Answer::reply(200, soapMessage(QByteArray(65537 - soapMessage({}).size(), ' '))),
              answer,
              std::string(
                  "FAILED  Server 1 (URL): the ping is answered, but with no SOAP message; write the address of the "
                  "service itself in hosts.\n")
                  + accepted },
        Row { "HangsUp", Answer::nothing().hangUp(), answer,
              std::string(
                  "FAILED  Server 1 (URL): the ping has no whole HTTP reply (Empty reply from server); see whether "
                  "this is the service's port, and whether it wants https://.\n")
                  + accepted },
        Row { "SpeaksAnotherLanguage", Answer::raw("220 mail ready\r\n").hangUp(), answer,
              std::string(
                  "FAILED  Server 1 (URL): the ping has no whole HTTP reply (Received HTTP/0.9 when not allowed); "
                  "see whether this is the service's port, and whether it wants https://.\n")
                  + accepted },
        Row { "Silent", Answer::silence(), Answer::silence(),
              "FAILED  Server 1 (URL): the ping is not answered within 1 second; see whether the service behind this "
              "address works, or set a longer timeout.\n"
                  + cannotBeTold + "no whole HTTP reply" + wanted }),
    [](const testing::TestParamInfo<Row>& row) { return row.param.name; });

TEST(DoctorServerCredentials, AcceptedOnesAreTold)
{
    const LoopbackServer server(healthyAnswer);
    auto settings = settingsOf(server.url());
    settings.user = u"till"_s;
    settings.password = u"hunter2"_s;
    EXPECT_THAT(serverLines(settings), EndsWith("ok      Server 1 (URL): user and password are accepted.\n"));
}

TEST(DoctorServerCredentials, RefusedOnesAreTold)
{
    const LoopbackServer server(Answer::reply(401));
    auto settings = settingsOf(server.url());
    settings.user = u"till"_s;
    settings.password = u"hunter2"_s;
    EXPECT_THAT(serverLines(settings),
                EndsWith("FAILED  Server 1 (URL): user and password are refused (HTTP status 401); correct them in "
                         "[Vantiro].\n"));
}

TEST(DoctorServerRequest, IsThatOfThePlugin)
{
    const LoopbackServer server(healthyAnswer);
    auto settings = settingsOf(server.url(u"/service/"_s));
    settings.user = u"till"_s;
    settings.password = u"hunter2"_s;
    static_cast<void>(serverLines(settings));

    const QList<HttpRequest> requests = server.requests();
    ASSERT_EQ(requests.size(), 2);
    EXPECT_EQ(requests[0].method, "POST");
    EXPECT_EQ(requests[0].target, "/service/");
    EXPECT_EQ(requests[0].header("Content-Type"), "text/xml; charset=UTF-8");
    EXPECT_EQ(requests[0].header("SOAPAction"), "http://tempuri.org/IVantiroService/Ping");
    EXPECT_EQ(requests[0].header("Authorization"), "Basic dGlsbDpodW50ZXIy");
    EXPECT_EQ(
        requests[0].body,
        "<soapenv:Envelope xmlns:soapenv=\"http://schemas.xmlsoap.org/soap/envelope/\" "
        "xmlns:tem=\"http://tempuri.org/\">\n <soapenv:Body>\n  <tem:Ping/>\n </soapenv:Body>\n</soapenv:Envelope>\n");
    EXPECT_EQ(requests[1].header("SOAPAction"), "http://tempuri.org/IVantiroService/IsCardValid");
    EXPECT_EQ(requests[1].body,
              "<soapenv:Envelope xmlns:soapenv=\"http://schemas.xmlsoap.org/soap/envelope/\" "
              "xmlns:tem=\"http://tempuri.org/\">\n <soapenv:Body>\n"
              "  <tem:IsCardValid><tem:discountCardNumber>0</tem:discountCardNumber></tem:IsCardValid>\n"
              " </soapenv:Body>\n</soapenv:Envelope>\n");
}

TEST(DoctorServerRequest, HeaderIsSentWithoutCredentialsToo)
{
    const LoopbackServer server(healthyAnswer);
    static_cast<void>(serverLines(settingsOf(server.url())));
    ASSERT_EQ(server.requests().size(), 2);
    EXPECT_EQ(server.requests()[0].header("Authorization"), "Basic Og==");
}

TEST(DoctorServerRequest, RedirectIsNotFollowed)
{
    const LoopbackServer other(healthyAnswer);
    const LoopbackServer server(Answer::reply(302, {}, { { "Location", other.url().toEncoded() } }));
    EXPECT_THAT(serverLines(settingsOf(server.url())),
                HasSubstr("FAILED  Server 1 (URL): the ping is answered with the HTTP status 302; the till follows no "
                          "redirects, so write the address that it leads to in hosts.\n"));
    EXPECT_EQ(other.connections(), 0);
}

TEST(DoctorServerRequest, ProxyOfTheEnvironmentIsNotAsked)
{
    const LoopbackServer proxy(healthyAnswer);
    const LoopbackServer server(healthyAnswer);
    qputenv("http_proxy", proxy.url().toEncoded());
    EXPECT_THAT(serverLines(settingsOf(server.url())), HasSubstr(pinged));
    qunsetenv("http_proxy");
    EXPECT_EQ(proxy.connections(), 0);
}

TEST(DoctorServerConnection, UnknownNameEndsTheChecksOfTheServer)
{
    const std::string lines = serverLines(settingsOf(QUrl(u"http://nowhere.invalid/"_s)));
    EXPECT_THAT(lines, StartsWith("FAILED  Server 1 (URL): the name nowhere.invalid leads to no address ("));
    EXPECT_THAT(lines, EndsWith("); correct it in hosts, or see whether this machine's name service works.\n"));
    EXPECT_THAT(lines, Not(HasSubstr("()"))); // the system says why
    EXPECT_EQ(std::ranges::count(lines, '\n'), 1);
}

TEST(DoctorServerConnection, ClosedPortEndsTheChecksOfTheServer)
{
    const ClosedPort port;
    EXPECT_EQ(
        serverLines(settingsOf(port.url())),
        "ok      Server 1 (URL): 127.0.0.1 resolves to 127.0.0.1.\n"
        "FAILED  Server 1 (URL): the connection is refused; see whether the service runs, and whether this is its "
        "port.\n");
}

TEST(DoctorServerConnection, PortThatLetsNobodyInIsGivenUpAfterTheTimeout)
{
    const FullPort port;
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(serverLines(settingsOf(port.url())),
              "ok      Server 1 (URL): 127.0.0.1 resolves to 127.0.0.1.\n"
              "FAILED  Server 1 (URL): no connection within 1 second; see whether the network and firewalls let it "
              "through.\n");
    EXPECT_LT(clock.elapsed(), 2500);
}

TEST(DoctorServerConnection, DeafPortIsGivenUpAfterTheTimeout)
{
    const DeafPort port;
    QElapsedTimer clock;
    clock.start();
    EXPECT_THAT(serverLines(settingsOf(port.url())),
                StartsWith(std::string(connected)
                           + "FAILED  Server 1 (URL): the ping is not answered within 1 second; see "
                             "whether the service behind this address works"));
    EXPECT_GE(clock.elapsed(), 2000);
    EXPECT_LT(clock.elapsed(), 3500);
}

}
