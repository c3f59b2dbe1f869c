#include "bonus/vantiro_bonus_interface.h"

#include "client/exceptions.h"
#include "client/reply.h"
#include "client/wire.h"

using namespace vantiro;

void VantiroBonusInterface::getCardNumberAndCodeByPhone(const QString& phone, QString& cardNumber,
                                                        QString& confirmCode)
{
    const QString action = QStringLiteral("GetVerifyCode");
    wire::Request request(action);
    request.addText(wire::cardNumberTag, phone); // the service's contract: the number travels as that of a card
    const QDomDocument answer = processSoapMessage(request.getDocument(), request.getBody(), action);

    const QDomElement result = reply::requireSingle(
        answer, QStringLiteral("GetVerifyCodeResult"),
        tr::Tr(QStringLiteral("vantiroConfirmCodeNotFound"),
               QStringLiteral("В ответе от сервера не найден код подтверждения для добавления карты")));
    const QStringList parts = result.text().split(u':', Qt::KeepEmptyParts, Qt::CaseSensitive);
    if (parts.size() != 2) {
        throw VantiroException(reply::incorrectAnswer());
    }
    cardNumber = parts.last();
    confirmCode = parts.first();
    if (cardNumber.isEmpty() || confirmCode.isEmpty()) {
        throw VantiroException(reply::incorrectAnswer());
    }
}

bool VantiroBonusInterface::isCouponValid(const QString& couponNumber)
{
    logger->info("Валидация купона на сервере");

    const QString action = QStringLiteral("IsCouponValid");
    wire::Request request(action);
    request.addText(wire::couponNumberTag, couponNumber);
    const QDomDocument answer = processSoapMessage(request.getDocument(), request.getBody(), action);

    const QDomElement result
        = reply::requireSingle(answer, QStringLiteral("IsCouponValidResult"), reply::incorrectAnswer());
    return result.text() == u"true";
}
