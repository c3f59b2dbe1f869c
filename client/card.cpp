#include "client/vantiro_interface.h"

#include "client/exceptions.h"
#include "client/outside_xml.h"
#include "client/reply.h"
#include "client/wire.h"

#include <cmath>

using namespace vantiro;

bool VantiroInterface::isCardValid(const QString& cardNumber)
{
    logger->info("Валидация карты на сервере");

    const QString action = QStringLiteral("IsCardValid");
    wire::Request request(action);
    request.addText(wire::cardNumberTag, cardNumber);
    const QDomDocument answer = processSoapMessage(request.getDocument(), request.getBody(), action);

    const QDomElement result
        = reply::requireSingle(answer, QStringLiteral("IsCardValidResult"), reply::incorrectAnswer());
    return result.text() == u"true";
}

double VantiroInterface::getCardBalance(const QString& cardNumber)
{
    logger->info("Получение баланса карты Vantiro");

    const QString action = QStringLiteral("GetCardBalance");
    wire::Request request(action);
    request.addText(wire::cardNumberTag, cardNumber);
    const QDomDocument answer = processSoapMessage(request.getDocument(), request.getBody(), action);

    const tr::Tr notFound(QStringLiteral("vantiroBalanceNotFound"),
                          QStringLiteral("В ответе от сервера не найден баланс карты"));
    const QDomElement result = reply::requireSingle(answer, QStringLiteral("GetCardBalanceResult"), notFound);

    const XmlReading inner = readOutsideXml(removeEscapeFromXml(result.text()));
    if (!inner.ok) {
        // Filled in one step: a marker in the parser's text stays what it was.
        logger->error(QStringLiteral("Не удалось интерпретировать ответ от сервера(%1, [%2,%3])")
                          .arg(inner.errorText, QString::number(inner.line), QString::number(inner.column)));
        throw VantiroException(reply::incorrectAnswer());
    }

    const QDomElement balance = reply::requireSingle(inner.document, QStringLiteral("Balance"), notFound);
    bool ok = false;
    const double value
        = balance.attribute(QStringLiteral("Value"), QString()).replace(u',', u'.').toDouble(&ok);
    if (!ok || !std::isfinite(value)) { // Qt reads "nan" and "inf" as numbers
        throw VantiroException(reply::incorrectAnswer());
    }
    return value;
}
