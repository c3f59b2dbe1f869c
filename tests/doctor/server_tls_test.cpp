#include "tests/doctor/doctor_support.h"
#include "tests/doctor/tls_front.h"
#include "till/program/doctor_certificate.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

using namespace till::diagnosis;
using namespace vantiro_test;
using namespace Qt::StringLiterals;
using testing::EndsWith;
using testing::StartsWith;

namespace {

constexpr auto connected = "ok      Server 1 (URL): 127.0.0.1 resolves to 127.0.0.1.\n"
                           "ok      Server 1 (URL): connects to 127.0.0.1 in N ms.\n";
constexpr auto answered = "ok      Server 1 (URL): the ping is answered in N ms.\n"
                          "ok      Server 1 (URL): requests without user and password are accepted.\n";

[[nodiscard]] QString today(int days = 0)
{
    return QDateTime::currentDateTimeUtc().addDays(days).date().toString(Qt::ISODate);
}

class DoctorServerTls : public testing::Test {
protected:
    /// What asking a server with this certificate leads to, and how much reaches what is behind it.
    [[nodiscard]] std::string linesFor(const CertificateMaker& maker)
    {
        const TlsFront front(maker, server.port());
        return serverLines(settingsOf(front.url()));
    }

    LoopbackServer server { healthyAnswer };
};

TEST_F(DoctorServerTls, TrustedCertificateIsSound)
{
    const CertificateMaker maker({ .byAuthority = true });
    const TrustedFile trusted(maker.authority());
    EXPECT_EQ(linesFor(maker),
              std::string(connected) + "ok      Server 1 (URL): the certificate is trusted and ends in 89 days.\n"
                  + answered);
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(DoctorServerTls, CertificateThatEndsSoonIsAWarning)
{
    const CertificateMaker maker({ .days = 2 });
    const TrustedFile trusted(maker.certificate());
    EXPECT_EQ(linesFor(maker),
              std::string(connected)
                  + "warning Server 1 (URL): the certificate is trusted, but ends in 1 day; have it renewed on the "
                    "server.\n"
                  + answered);
}

TEST_F(DoctorServerTls, ExpiredCertificateFailsAndNothingIsSent)
{
    const CertificateMaker maker({ .days = -1 });
    const TrustedFile trusted(maker.certificate());
    EXPECT_EQ(linesFor(maker),
              connected
                  + ("FAILED  Server 1 (URL): the certificate has ended on "_L1 + today(-1)
                     + "; have it renewed on the server, or set the clock of this machine.\n"_L1)
                        .toStdString());
    EXPECT_EQ(server.requests().size(), 0);
}

TEST_F(DoctorServerTls, CertificateOfAnotherNameFailsAndNothingIsSent)
{
    const CertificateMaker maker({ .names = "DNS:other.example,DNS:\\*.third.example" });
    const TrustedFile trusted(maker.certificate());
    EXPECT_EQ(linesFor(maker),
              std::string(connected)
                  + "FAILED  Server 1 (URL): the certificate is not made for 127.0.0.1, but for DNS:other.example, "
                    "DNS:*.third.example; write in hosts the name that it is made for.\n");
    EXPECT_EQ(server.requests().size(), 0);
}

TEST_F(DoctorServerTls, SelfSignedCertificateFailsAndNothingIsSent)
{
    EXPECT_EQ(
        linesFor(CertificateMaker({})),
        std::string(connected)
            + "FAILED  Server 1 (URL): the certificate is signed by nobody but itself; install it on this machine with "
              "update-ca-certificates, or have the server given one of a known authority.\n");
    EXPECT_EQ(server.requests().size(), 0);
}

TEST_F(DoctorServerTls, UnknownAuthorityFailsAndNothingIsSent)
{
    EXPECT_EQ(
        linesFor(CertificateMaker({ .byAuthority = true })),
        std::string(connected)
            + "FAILED  Server 1 (URL): the certificate is of an authority that this machine does not know (SSL "
              "certificate problem: unable to get local issuer certificate); install the authority's certificate with "
              "update-ca-certificates, or have the server send its whole chain.\n");
    EXPECT_EQ(server.requests().size(), 0);
}

TEST_F(DoctorServerTls, EveryReasonIsTold)
{
    EXPECT_EQ(
        linesFor(CertificateMaker({ .names = "DNS:other.example", .days = -1 })),
        connected
            + ("FAILED  Server 1 (URL): the certificate has ended on "_L1 + today(-1)
               + "; have it renewed on the server, or set the clock of this machine.\n"
                 "FAILED  Server 1 (URL): the certificate is not made for 127.0.0.1, but for DNS:other.example; write "
                 "in hosts the name that it is made for.\n"_L1)
                  .toStdString());
}

TEST_F(DoctorServerTls, PlainServerFails)
{
    QUrl url = server.url();
    url.setScheme("https");
    const std::string lines = serverLines(settingsOf(url));
    EXPECT_THAT(lines, StartsWith(std::string(connected) + "FAILED  Server 1 (URL): TLS is not agreed on ("));
    EXPECT_THAT(lines, EndsWith("); write http:// in hosts if the server has no TLS, or correct the port.\n"));
}

TEST_F(DoctorServerTls, PlainRequestToATlsPortFails)
{
    const TlsFront front(CertificateMaker({}), server.port());
    QUrl url = front.url();
    url.setScheme("http");
    const std::string lines = serverLines(settingsOf(url));
    EXPECT_THAT(lines,
                StartsWith(std::string(connected) + "FAILED  Server 1 (URL): the ping has no whole HTTP reply ("));
    EXPECT_EQ(server.requests().size(), 0);
}

TEST(DoctorServerTlsSilence, EndsWithTheTimeout)
{
    const DeafPort port;
    QUrl url = port.url();
    url.setScheme("https");
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(
        serverLines(settingsOf(url)),
        std::string(connected)
            + "FAILED  Server 1 (URL): TLS is not agreed on within 1 second; see whether this is a port of https.\n");
    EXPECT_LT(clock.elapsed(), 2500);
}

struct Left {
    const char* name;
    qint64 seconds;
    const char* line;
};

class DoctorCertificateDays : public testing::TestWithParam<Left> { };

TEST_P(DoctorCertificateDays, AreWholeOnes)
{
    const QDateTime now = QDateTime::fromString(u"2026-03-01T12:00:00Z"_s, Qt::ISODate);
    Certificate certificate;
    certificate.until = now.addSecs(GetParam().seconds);
    EXPECT_EQ(lineOf(judgeTrusted(u"S"_s, certificate, now)).toStdString(), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Days, DoctorCertificateDays,
    testing::Values(
        Left { "Thirty", 30 * 86400, "ok      S: the certificate is trusted and ends in 30 days." },
        Left { "NotQuiteThirty", 30 * 86400 - 1,
               "warning S: the certificate is trusted, but ends in 29 days; have it renewed on the server." },
        Left { "LastDay", 3600,
               "warning S: the certificate is trusted, but ends in 0 days; have it renewed on the server." }),
    [](const testing::TestParamInfo<Left>& row) { return row.param.name; });

TEST(DoctorCertificate, WithoutAReadableEndIsAWarning)
{
    EXPECT_EQ(lineOf(judgeTrusted(u"S"_s, {}, QDateTime::currentDateTimeUtc())).toStdString(),
              "warning S: the certificate is trusted, but when it ends cannot be read; look it up.");
}

TEST(DoctorCertificate, ThatBeginsLaterFails)
{
    const QDateTime now = QDateTime::fromString(u"2026-03-01T12:00:00Z"_s, Qt::ISODate);
    Exchange look;
    look.code = CURLE_OK;
    look.certificate.from = now.addDays(2);
    look.certificate.until = now.addDays(90);
    EXPECT_EQ(linesOf(judgeUntrusted(u"S"_s, u"a.example"_s, {}, look, now)),
              "FAILED  S: the certificate begins on 2026-03-03; set the clock of this machine, or have the certificate "
              "replaced on the server.\n");
}

}
