#include "client/vantiro_interface.h"

#include "client/exceptions.h"
#include "client/outside_xml.h"
#include "client/reply.h"
#include "client/wire.h"
#include "client/xml_writer.h"
#include "host/facilities/rest_client.h"

using namespace vantiro;

QDomDocument VantiroInterface::processSoapMessage(QDomDocument& document, const QDomNode& body, const QString& action)
{
    createXmlRequest(document, body);
    const QByteArray request = writeXml(document).toUtf8();

    const QSharedPointer<RestClient> client = MockFactory<RestClient>::create();
    client->setTimeout(timeout);
    const QHash<QString, QString> headers = createHttpHeaders(action);

    // Kept for the whole request: the result of a ping may move the index meanwhile.
    const int first = currentServerIndex;

    // An index outside the list asks the empty address, which no client can reach: a lost server like any other.
    client->post(hosts.value(first), request, headers);

    if (client->hasConnectionError()) {
        for (int index = 0; index < hosts.size(); ++index) {
            if (index == first) {
                continue;
            }
            client->post(hosts.at(index), request, headers);
            if (client->isSuccess()) {
                currentServerIndex = index;
                break;
            }
        }
    }

    // The client now tells of the last post made, whichever server that went to. Status 500 is how the service delivers
    // a fault, so it is a reply; any other error status comes from something in between.
    constexpr int faultStatus = 500;
    if (client->hasConnectionError() || (client->hasHttpError() && client->getHttpStatus() != faultStatus)) {
        logger->error("Произошла ошибка при выполнении запроса %1", client->getErrorText().ru());
        throw VantiroNoConnectionException(reply::noConnection());
    }
    return createXmlAnswer(client->getResponseBody());
}

QHash<QString, QString> VantiroInterface::createHttpHeaders(const QString& action) const
{
    QHash<QString, QString> headers;
    headers.insert(QStringLiteral("Content-Type"), QStringLiteral("text/xml; charset=UTF-8"));
    headers.insert(QStringLiteral("SOAPAction"), wire::serviceNamespace + QStringLiteral("IVantiroService/") + action);
    if (!authorizationHeader.isEmpty()) {
        headers.insert(QStringLiteral("Authorization"), authorizationHeader);
    }
    return headers;
}

void VantiroInterface::createXmlRequest(QDomDocument& document, const QDomNode& body) const
{
    QDomElement envelope = document.createElement(QStringLiteral("soapenv:Envelope"));
    envelope.setAttribute(QStringLiteral("xmlns:soapenv"), wire::soapNamespace);
    envelope.setAttribute(QStringLiteral("xmlns:tem"), wire::serviceNamespace);
    envelope.appendChild(body);
    document.appendChild(envelope);
}

QDomDocument VantiroInterface::createXmlAnswer(const QByteArray& bytes) const
{
    const XmlReading reading = readOutsideXml(bytes);
    if (!reading.ok) {
        logger->error("Не удалось интерпретировать ответ от сервера([%1, %2] %3)", reading.line, reading.column,
                      reading.errorText);
        throw VantiroException(reply::incorrectAnswer());
    }

    // The prefix is part of the test: what the service writes with another prefix is an ordinary reply to its
    // operation.
    if (reading.document.elementsByTagName(QStringLiteral("s:Fault")).length() == 0) {
        return reading.document;
    }
    const QDomNodeList elements = reading.document.elementsByTagName(QStringLiteral("faultstring"));
    QStringList texts;
    for (int i = 0; i < elements.length(); ++i) {
        texts.append(elements.at(i).toElement().text());
    }
    throw VantiroFaultException(tr::Tr(texts.join(u'\n')));
}
