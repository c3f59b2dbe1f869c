#include "till/program/doctor_server.h"

#include "till/program/doctor_certificate.h"
#include "till/program/doctor_exchange.h"
#include "till/program/doctor_replies.h"
#include "till/program/doctor_resolve.h"
#include "till/program/doctor_soap.h"

namespace till::diagnosis {

namespace {

[[nodiscard]] QString secondsOf(const ServiceSettings& settings)
{
    return counted(settings.timeout.count(), QStringLiteral("second"));
}

[[nodiscard]] Finding checkName(const Server& server, const ServiceSettings& settings)
{
    const QString host = server.url.host(QUrl::FullyEncoded);
    const Resolution resolution = resolve(host, settings.timeout);
    if (!resolution.isInTime) {
        return failed(server.title()
                      + QStringLiteral(": the name %1 is not resolved within %2; see whether this machine's name "
                                       "service works.")
                            .arg(host, secondsOf(settings)));
    }
    if (resolution.addresses.isEmpty()) {
        return failed(server.title()
                      + QStringLiteral(": the name %1 leads to no address (%2); correct it in hosts, or see whether "
                                       "this machine's name service works.")
                            .arg(host, resolution.failure));
    }
    return ok(server.title()
              + QStringLiteral(": %1 resolves to %2.").arg(host, resolution.addresses.join(QStringLiteral(", "))));
}

[[nodiscard]] Finding judgeConnection(const Server& server, const ServiceSettings& settings, const Exchange& exchange)
{
    if (exchange.code == CURLE_OK) {
        return ok(
            server.title()
            + QStringLiteral(": connects to %1 in %2 ms.").arg(exchange.peer, QString::number(exchange.time.count())));
    }
    if (exchange.isRefused) {
        return failed(server.title()
                      + QStringLiteral(": the connection is refused; see whether the service runs, and whether this "
                                       "is its port."));
    }
    if (exchange.code == CURLE_OPERATION_TIMEDOUT) {
        return failed(server.title()
                      + QStringLiteral(": no connection within %1; see whether the network and firewalls let it "
                                       "through.")
                            .arg(secondsOf(settings)));
    }
    return failed(server.title()
                  + QStringLiteral(": no connection (%1); see whether the network and firewalls let it through.")
                        .arg(exchange.detail));
}

[[nodiscard]] Findings judgeTls(const Server& server, const ServiceSettings& settings, const Exchange& exchange)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (exchange.isSecured) {
        return { judgeTrusted(server.title(), exchange.certificate, now) };
    }
    if (exchange.code == CURLE_OPERATION_TIMEDOUT) {
        return { failed(server.title()
                        + QStringLiteral(": TLS is not agreed on within %1; see whether this is a port of https.")
                              .arg(secondsOf(settings))) };
    }
    return judgeUntrusted(server.title(), server.url.host(), exchange, lookAtCertificate(server.url, settings.timeout),
                          now);
}

} // namespace

void checkServer(const Server& server, const ServiceSettings& settings, const std::function<void(const Finding&)>& tell)
{
    const Finding name = checkName(server, settings);
    tell(name);
    if (name.verdict == Verdict::failed) {
        return;
    }
    const Exchange connection = connectTo(server.url, settings.timeout);
    tell(judgeConnection(server, settings, connection));
    if (connection.code != CURLE_OK) {
        return;
    }
    const auto ask = [&](const QByteArray& operation, const QByteArray& parameters) {
        return post(server.url, soapRequest(operation, parameters), soapHeaders(operation, settings.authorization()),
                    settings.timeout);
    };
    const Exchange ping = ask("Ping", {});
    if (server.isEncrypted()) {
        for (const Finding& finding : judgeTls(server, settings, ping)) {
            tell(finding);
        }
        if (!ping.isSecured) {
            return;
        }
    }
    tell(judgePing(server.title(), ping, settings.timeout));
    // No card has this number, so that nothing is told of anybody.
    const Exchange card = ask("IsCardValid", "<tem:discountCardNumber>0</tem:discountCardNumber>");
    tell(judgeCredentials(server.title(), card, settings.hasCredentials()));
    if (isForeignFault(ping) || isForeignFault(card)) {
        tell(warning(server.title()
                     + QStringLiteral(": SOAP faults have another prefix than s, and the plug-in does not understand "
                                      "those; have the service write s:Fault.")));
    }
}

} // namespace till::diagnosis
