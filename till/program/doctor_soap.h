#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace till::diagnosis {

/// What a reply's body is to the plug-in.
enum class SoapReply {
    none, // no SOAP 1.1 message
    answer,
    fault,
    foreignFault, // a fault with another prefix than the one that the plug-in knows faults by
};

[[nodiscard]] SoapReply soapReplyOf(const QByteArray& body);

/// The namespace of the service that till and plug-in were built for.
[[nodiscard]] QString serviceNamespace();

/// The request of an operation with these parameters, already XML, as its whole envelope.
[[nodiscard]] QByteArray soapRequest(const QByteArray& operation, const QByteArray& parameters);

/// The header lines of such a request.
[[nodiscard]] QList<QByteArray> soapHeaders(const QByteArray& operation, const QByteArray& authorization);

} // namespace till::diagnosis
