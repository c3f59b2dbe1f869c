#include "bonus/vantiro_bonus_interface.h"

#include "client/exceptions.h"
#include "client/outside_xml.h"
#include "client/reply.h"
#include "client/wire.h"

using namespace vantiro;

QMap<int, QList<QString>> VantiroBonusInterface::getMessages(
    const QSharedPointer<AbstractDocument>& document, const QList<QSharedPointer<DiscountImpact>>& discountImpacts,
    const QMap<int, QList<QString>>& positionCoupons, const QList<QString>& checkCoupons)
{
    logger->info("Получение сообщений от системы лояльности");

    const QString action = QStringLiteral("GetMessages");
    wire::Request request(action);
    // With the discounts just granted: the server is to see the cheque as they have left it.
    request.addCheque(getXmlCheckString(buildXmlCheck(document, positionCoupons, checkCoupons, discountImpacts)));
    const QDomDocument answer = processSoapMessage(request.getDocument(), request.getBody(), action);

    // Messages are an extra: a server that has none may leave the result out, and of several the first is taken.
    const QString text = answer.elementsByTagName(QStringLiteral("GetMessagesResult")).at(0).toElement().text();
    if (text.isEmpty()) {
        return {};
    }
    const XmlReading inner = readOutsideXml(text);
    if (!inner.ok) {
        logger->error("Не удалось интерпретировать ответ от сервера(%1, [%2,%3])", inner.errorText, inner.line,
                      inner.column);
        throw VantiroException(reply::incorrectAnswer());
    }

    QMap<int, QList<QString>> messages;
    const QDomNodeList elements = inner.document.elementsByTagName(QStringLiteral("Msg"));
    for (int i = 0; i < elements.length(); ++i) {
        const QDomElement message = elements.at(i).toElement();
        bool ok = false;
        const int device = message.attribute(QStringLiteral("Device")).toInt(&ok, 10);
        if (!ok) {
            logger->warn("Ошибка получения атрибута 'Device'");
            continue;
        }
        messages[device].append(message.attribute(QStringLiteral("Body")));
    }
    return messages;
}
