#include "till/program/doctor_replies.h"

#include "till/program/doctor_soap.h"

namespace till::diagnosis {

namespace {

constexpr int unauthorized = 401;
constexpr int forbidden = 403;
constexpr int notFound = 404;
constexpr int faultStatus = 500; // how SOAP 1.1 delivers a fault

[[nodiscard]] bool isSuccess(int status)
{
    constexpr int first = 200;
    constexpr int last = 299;
    return status >= first && status <= last;
}

[[nodiscard]] bool isRedirect(int status)
{
    constexpr int first = 300;
    constexpr int last = 399;
    return status >= first && status <= last;
}

[[nodiscard]] bool isRefusal(int status)
{
    return status == unauthorized || status == forbidden;
}

[[nodiscard]] bool isFault(SoapReply reply)
{
    return reply == SoapReply::fault || reply == SoapReply::foreignFault;
}

[[nodiscard]] Finding judgeSilence(const QString& title, const Exchange& exchange, std::chrono::seconds timeout)
{
    if (exchange.code == CURLE_OPERATION_TIMEDOUT) {
        return failed(
            title
            + QStringLiteral(": the ping is not answered within %1; see whether the service behind this address "
                             "works, or set a longer timeout.")
                  .arg(counted(timeout.count(), QStringLiteral("second"))));
    }
    return failed(
        title
        + QStringLiteral(": the ping has no whole HTTP reply (%1); see whether this is the service's port, and "
                         "whether it wants https://.")
              .arg(exchange.detail));
}

[[nodiscard]] QString adviceOn(int status)
{
    if (isRefusal(status)) {
        return QStringLiteral("see the line on the credentials");
    }
    if (isRedirect(status)) {
        return QStringLiteral("the till follows no redirects, so write the address that it leads to in hosts");
    }
    if (status == notFound) {
        return QStringLiteral("correct the path in hosts");
    }
    return QStringLiteral("ask whoever runs the service");
}

} // namespace

Finding judgePing(const QString& title, const Exchange& exchange, std::chrono::seconds timeout)
{
    if (exchange.status == 0) {
        return judgeSilence(title, exchange, timeout);
    }
    const SoapReply reply = exchange.isTooLarge ? SoapReply::none : soapReplyOf(exchange.body);
    if (isFault(reply)) {
        const QString text = title
            + QStringLiteral(": the ping is answered with a SOAP fault and the status %1; see whether the service has "
                             "the namespace %2.")
                  .arg(QString::number(exchange.status), serviceNamespace());
        return isSuccess(exchange.status) ? warning(text) : failed(text); // the plug-in goes by the status alone
    }
    if (!isSuccess(exchange.status)) {
        return failed(title
                      + QStringLiteral(": the ping is answered with the HTTP status %1; %2.")
                            .arg(QString::number(exchange.status), adviceOn(exchange.status)));
    }
    if (reply == SoapReply::none) {
        return failed(
            title
            + QStringLiteral(": the ping is answered, but with no SOAP message; write the address of the service "
                             "itself in hosts."));
    }
    return ok(title + QStringLiteral(": the ping is answered in %1 ms.").arg(exchange.time.count()));
}

Finding judgeCredentials(const QString& title, const Exchange& exchange, bool hasCredentials)
{
    if (isRefusal(exchange.status)) {
        return failed(
            title
            + (hasCredentials
                   ? QStringLiteral(": user and password are refused (HTTP status %1); correct them in [Vantiro].")
                   : QStringLiteral(": user and password are wanted (HTTP status %1); set them in [Vantiro]."))
                  .arg(exchange.status));
    }
    const SoapReply reply = exchange.isTooLarge ? SoapReply::none : soapReplyOf(exchange.body);
    constexpr int success = 200;
    const bool isAnswered = exchange.status == success && reply != SoapReply::none;
    if (isAnswered || (exchange.status == faultStatus && isFault(reply))) {
        return ok(title
                  + (hasCredentials ? QStringLiteral(": user and password are accepted.")
                                    : QStringLiteral(": requests without user and password are accepted.")));
    }
    const QString reason = exchange.status == 0 ? QStringLiteral("no whole HTTP reply")
        : exchange.status == success            ? QStringLiteral("no SOAP message")
                                                : QStringLiteral("HTTP status %1").arg(exchange.status);
    return failed(
        title
        + QStringLiteral(
              ": whether user and password are accepted cannot be told (%1); have the service answer IsCardValid.")
              .arg(reason));
}

bool isForeignFault(const Exchange& exchange)
{
    return exchange.status != 0 && !exchange.isTooLarge && soapReplyOf(exchange.body) == SoapReply::foreignFault;
}

} // namespace till::diagnosis
