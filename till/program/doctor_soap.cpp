#include "till/program/doctor_soap.h"

#include <QXmlStreamReader>

namespace till::diagnosis {

namespace {

constexpr QStringView envelopeNamespace = u"http://schemas.xmlsoap.org/soap/envelope/";

[[nodiscard]] bool isSoap(const QXmlStreamReader& reader, QStringView name)
{
    return reader.namespaceUri() == envelopeNamespace && reader.name() == name;
}

} // namespace

SoapReply soapReplyOf(const QByteArray& body)
{
    QXmlStreamReader reader(body);
    SoapReply reply = SoapReply::none;
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::DTD: // SOAP forbids it in a message
            return SoapReply::none;
        case QXmlStreamReader::StartElement:
            ++depth;
            if (depth == 1 && !isSoap(reader, u"Envelope")) {
                return SoapReply::none;
            }
            if (depth == 2 && isSoap(reader, u"Body")) {
                reply = SoapReply::answer;
            }
            if (depth == 3 && reply == SoapReply::answer && isSoap(reader, u"Fault")) {
                reply = reader.qualifiedName() == u"s:Fault" ? SoapReply::fault : SoapReply::foreignFault;
            }
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    return reader.hasError() ? SoapReply::none : reply;
}

QString serviceNamespace()
{
    return QStringLiteral(VANTIRO_SERVICE_NAMESPACE);
}

QByteArray soapRequest(const QByteArray& operation, const QByteArray& parameters)
{
    const QByteArray element = "tem:" + operation;
    return "<soapenv:Envelope xmlns:soapenv=\"" + envelopeNamespace.toUtf8() + "\" xmlns:tem=\""
        + serviceNamespace().toHtmlEscaped().toUtf8() + "\">\n <soapenv:Body>\n  "
        + (parameters.isEmpty() ? '<' + element + "/>" : '<' + element + '>' + parameters + "</" + element + '>')
        + "\n </soapenv:Body>\n</soapenv:Envelope>\n";
}

QList<QByteArray> soapHeaders(const QByteArray& operation, const QByteArray& authorization)
{
    return { "Content-Type: text/xml; charset=UTF-8",
             "SOAPAction: " + serviceNamespace().toUtf8() + "IVantiroService/" + operation,
             "Authorization: " + authorization };
}

} // namespace till::diagnosis
