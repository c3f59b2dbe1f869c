#include "client/wire.h"

#include "client/xml_text.h"

namespace vantiro::wire {

Request::Request(const QString& operationName)
    : body(document.createElement(QStringLiteral("soapenv:Body")))
    , operation(document.createElement(QStringLiteral("tem:") + operationName))
{
    body.appendChild(operation);
}

Request& Request::addText(const QString& tag, const QString& text)
{
    QDomElement parameter = document.createElement(tag);
    parameter.appendChild(document.createTextNode(xmlText(text)));
    operation.appendChild(parameter);
    return *this;
}

Request& Request::addCheque(const QString& chequeText)
{
    QDomElement parameter = document.createElement(chequeTag);
    parameter.appendChild(document.createCDATASection(chequeText));
    operation.appendChild(parameter);
    return *this;
}

QDomDocument& Request::getDocument()
{
    return document;
}

const QDomElement& Request::getBody() const
{
    return body;
}

} // namespace vantiro::wire
