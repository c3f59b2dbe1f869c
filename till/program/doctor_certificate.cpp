#include "till/program/doctor_certificate.h"

namespace till::diagnosis {

namespace {

[[nodiscard]] QString dayOf(const QDateTime& moment)
{
    return moment.date().toString(Qt::ISODate);
}

/// What comes from the other side gets no more room than a sentence has.
[[nodiscard]] QString shortened(const QString& text)
{
    constexpr qsizetype longest = 200;
    return text.size() <= longest ? text : text.first(longest) + QStringLiteral("…");
}

[[nodiscard]] Finding judgeIssuer(const QString& title, const Certificate& certificate, const QString& detail)
{
    if (!certificate.subject.isEmpty() && certificate.subject == certificate.issuer) {
        return failed(
            title
            + QStringLiteral(": the certificate is signed by nobody but itself; install it on this machine with "
                             "update-ca-certificates, or have the server given one of a known authority."));
    }
    return failed(
        title
        + QStringLiteral(": the certificate is of an authority that this machine does not know (%1); install the "
                         "authority's certificate with update-ca-certificates, or have the server send its whole "
                         "chain.")
              .arg(shortened(detail)));
}

} // namespace

Finding judgeTrusted(const QString& title, const Certificate& certificate, const QDateTime& now)
{
    constexpr qint64 soon = 30; // days
    if (!certificate.until.isValid()) {
        return warning(title
                       + QStringLiteral(": the certificate is trusted, but when it ends cannot be read; look it up."));
    }
    constexpr qint64 secondsOfDay = 24 * 60 * 60;
    const qint64 days = now.secsTo(certificate.until) / secondsOfDay;
    const QString left = counted(days, QStringLiteral("day"));
    return days < soon
        ? warning(
            title
            + QStringLiteral(": the certificate is trusted, but ends in %1; have it renewed on the server.").arg(left))
        : ok(title + QStringLiteral(": the certificate is trusted and ends in %1.").arg(left));
}

Findings judgeUntrusted(const QString& title, const QString& host, const Exchange& failure, const Exchange& look,
                        const QDateTime& now)
{
    const Certificate& certificate = look.certificate;
    if (!certificate.until.isValid()) {
        return { failed(
            title
            + QStringLiteral(": TLS is not agreed on (%1); write http:// in hosts if the server has no TLS, or "
                             "correct the port.")
                  .arg(shortened(failure.detail))) };
    }
    Findings findings;
    if (certificate.until <= now) {
        findings.append(
            failed(title
                   + QStringLiteral(": the certificate has ended on %1; have it renewed on the server, or set the "
                                    "clock of this machine.")
                         .arg(dayOf(certificate.until))));
    }
    if (certificate.from.isValid() && certificate.from > now) {
        findings.append(
            failed(title
                   + QStringLiteral(": the certificate begins on %1; set the clock of this machine, or have the "
                                    "certificate replaced on the server.")
                         .arg(dayOf(certificate.from))));
    }
    if (look.code == CURLE_PEER_FAILED_VERIFICATION) {
        const QString names
            = certificate.names.isEmpty() ? QStringLiteral("no name at all") : shortened(certificate.names);
        findings.append(
            failed(title
                   + QStringLiteral(": the certificate is not made for %1, but for %2; write in hosts the name that "
                                    "it is made for.")
                         .arg(host, names)));
    }
    if (findings.isEmpty()) {
        findings.append(judgeIssuer(title, certificate, failure.detail));
    }
    return findings;
}

} // namespace till::diagnosis
