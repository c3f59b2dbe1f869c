#include "bonus/vantiro_bonus_interface.h"

#include "bonus/card_of_document.h"
#include "client/exceptions.h"
#include "client/reply.h"
#include "client/wire.h"
#include "host/framework/dialog.h"

#include <cmath>

using namespace vantiro;

double VantiroInterface::getCardDiscountAmount(const QString& cardNumber,
                                               const QSharedPointer<AbstractDocument>& document,
                                               const QList<QSharedPointer<DiscountImpact>>& discountImpacts)
{
    const QString action = QStringLiteral("GetCardDiscountAmount");
    wire::Request request(action);
    request.addText(wire::cardNumberTag, cardNumber);
    request.addCheque(getXmlCheckString(buildXmlCheck(document, {}, {}, discountImpacts)));
    const QDomDocument answer = processSoapMessage(request.getDocument(), request.getBody(), action);

    const tr::Tr notFound(QStringLiteral("vantiroPaymentSumNotFound"),
                          QStringLiteral("В ответе от сервера не найдена максимальная сумма оплаты"));
    const QDomElement result
        = reply::requireSingle(answer, QStringLiteral("GetCardDiscountAmountResult"), notFound);
    bool ok = false;
    const double amount = result.text().toDouble(&ok); // with a point alone, unlike the balance
    if (!ok || !std::isfinite(amount)) {
        throw VantiroException(notFound);
    }
    return amount;
}

double VantiroBonusInterface::getCardDiscountAmount(const QSharedPointer<AbstractDocument>& document,
                                                    const QList<QSharedPointer<DiscountImpact>>& discountImpacts)
{
    logger->info("Получение баллов для списания");
    const QSharedPointer<DocumentCardRecord> card = requireCard(document);
    try {
        const double amount
            = VantiroInterface::getCardDiscountAmount(card->getNumber().toString(), document, discountImpacts);
        card->setPointsForSpend(amount);
        return amount;
    } catch (const VantiroFaultException& fault) {
        // The server's refusal means nothing to spend, not a failure of the request.
        tr::Tr text(QStringLiteral("cardExceptionLoyaltyIdentify"), QStringLiteral("Система лояльности: %1"));
        MockFactory<Dialog>::create()->showError(text.arg(fault.tr()), 0, 0);
        return 0.0;
    }
}
