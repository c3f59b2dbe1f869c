#include "tests/doctor/tls_front.h"
#include "tests/faults/abrupt_server.h"
#include "tests/faults/service_replies.h"
#include "tests/support/loopback_server.h"

#include <map>

using namespace Qt::StringLiterals;
using vantiro_test::Answer;
using vantiro_test::CertificateMaker;
using vantiro_test::HttpRequest;
using vantiro_test::LoopbackServer;
using vantiro_test::TlsFront;
using vantiro_test::TrustedFile;

namespace faults {

namespace {

[[nodiscard]] QUrl withScheme(QUrl url, const QString& scheme)
{
    url.setScheme(scheme);
    return url;
}

template <class Port>
class PortServer : public FaultyServer {
public:
    explicit PortServer(const QString& schemeOfAddress)
        : scheme(schemeOfAddress)
    {
    }

    [[nodiscard]] QUrl url() const override
    {
        return withScheme(port.url(), scheme);
    }

private:
    QString scheme;
    Port port;
};

/// A healthy service, addressed by that scheme.
class HealthyServer : public FaultyServer {
public:
    explicit HealthyServer(const QString& schemeOfAddress)
        : scheme(schemeOfAddress)
        , server([](const HttpRequest& request) { return Answer::raw(http("200 OK", responseTo(actionOf(request)))); })
    {
    }

    [[nodiscard]] QUrl url() const override
    {
        return withScheme(server.url(), scheme);
    }

    [[nodiscard]] int asked(const QByteArray& action) const override
    {
        int count = 0;
        for (const HttpRequest& request : server.requests()) {
            count += actionOf(request) == action ? 1 : 0;
        }
        return count;
    }

protected:
    [[nodiscard]] quint16 port() const
    {
        return server.port();
    }

private:
    QString scheme;
    LoopbackServer server;
};

/// A healthy service behind TLS, with that certificate, which the till trusts or does not.
class TlsServer : public HealthyServer {
public:
    TlsServer(const std::shared_ptr<CertificateMaker>& maker, bool trusted, const QString& schemeOfAddress)
        : HealthyServer(u"http"_s)
        , scheme(schemeOfAddress)
        , front(*maker, port())
        , trust(trusted ? maker->authority() : QString())
    {
    }

    [[nodiscard]] QUrl url() const override
    {
        return withScheme(front.url(), scheme);
    }

private:
    QString scheme;
    TlsFront front;
    TrustedFile trust;
};

template <class Server, class... Arguments>
[[nodiscard]] NamedFault fault(const QString& name, const Arguments&... arguments)
{
    return { name, [arguments...](const Order&) { return std::make_unique<Server>(arguments...); } };
}

/// What a TLS server says to something that is not TLS: an alert, fatal, "protocol version".
[[nodiscard]] QByteArray tlsAlert()
{
    return QByteArray("\x15\x03\x01\x00\x02\x02\x46", 7);
}

}

QList<NamedFault> connectionFaults()
{
    using vantiro_test::ClosedPort;
    using vantiro_test::DeafPort;
    using End = AbruptServer::End;
    const auto tls = [](const QString& name, const CertificateMaker::Order& certificate, bool trusted,
                        const QString& scheme = u"https"_s) {
        // Making a certificate costs more than all the rest: those of a process share one.
        return NamedFault { name, [=](const Order&) {
                               static std::map<QString, std::shared_ptr<CertificateMaker>> makers;
                               std::shared_ptr<CertificateMaker>& maker = makers[name];
                               if (!maker) {
                                   maker = std::make_shared<CertificateMaker>(certificate);
                               }
                               return std::make_unique<TlsServer>(maker, trusted, scheme);
                           } };
    };
    const QByteArray here = "IP:127.0.0.1";
    return {
        fault<PortServer<ClosedPort>>(u"Refused"_s, u"http"_s),
        fault<PortServer<DeafPort>>(u"Deaf"_s, u"http"_s),
        fault<AbruptServer>(u"ClosedOnConnection"_s, 0, End::close),
        fault<AbruptServer>(u"ResetOnConnection"_s, 0, End::reset),
        fault<AbruptServer>(u"ClosedInTheRequest"_s, 40, End::close),
        fault<AbruptServer>(u"ResetInTheRequest"_s, 40, End::reset),
        tls(u"TlsSound"_s, { .names = here }, true),
        tls(u"TlsOfAnotherHost"_s, { .names = "DNS:other.example" }, true),
        tls(u"TlsExpired"_s, { .names = here, .days = -1 }, true),
        tls(u"TlsSelfSigned"_s, { .names = here }, false),
        tls(u"TlsOfUnknownAuthority"_s, { .names = here, .byAuthority = true }, false),
        fault<PortServer<ClosedPort>>(u"TlsRefused"_s, u"https"_s),
        fault<PortServer<DeafPort>>(u"TlsDeaf"_s, u"https"_s),
        fault<HealthyServer>(u"PlainAnswerOnATlsPort"_s, u"https"_s),
        tls(u"TlsOnAPlainPort"_s, { .names = here }, true, u"http"_s),
        answering(u"TlsAlertOnAPlainPort"_s,
                  [](const QByteArray&, const Order&) { return Answer::raw(tlsAlert()).hangUp(); }),
    };
}

}
