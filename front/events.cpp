#include "front/vantiro.h"

#include "bonus/records.h"
#include "client/exceptions.h"
#include "host/framework/coupon_logic.h"

using namespace vantiro;

namespace {

const QString documentKey = QStringLiteral("document");

/// The argument as a shared pointer, converted where the sender has another type; null when that cannot be done.
template <class T>
[[nodiscard]] QSharedPointer<T> argument(const Event& event, const QString& name)
{
    return event.value(name, QVariant()).value<QSharedPointer<T>>();
}

[[nodiscard]] bool isSaleOrReturn(int type)
{
    return type == EDocumentType::sale || type == EDocumentType::goodsReturn || type == EDocumentType::returnBySale;
}

} // namespace

void Vantiro::handleEvent(const Event& event)
{
    switch (event.getCode()) {
    case EActivityListener::restoreDocument:
        restoreLoyaltySystem();
        break;
    case EActivityListener::documentClosed:
        sendClosedDocument(argument<AbstractDocument>(event, documentKey));
        break;
    case EActivityListener::documentCancelled:
    case EActivityListener::documentCancelledBeforeClose:
        sendCancelledDocument(event);
        break;
    case EActivityListener::positionRemoved:
        removePositionCoupons(event);
        break;
    default:
        break;
    }
}

void Vantiro::sendClosedDocument(const QSharedPointer<AbstractDocument>& doc)
{
    constexpr int otherLoyaltyCardType = 3;

    // The end of a cheque is the moment to look for a better server: nobody waits at the till.
    interface->actualizeServer();

    const int type = doc->getDocumentType();
    if (doc->hasCardRecord(records::cardMode)
        || (type == EDocumentType::sale && doc->hasCardRecordOfType(otherLoyaltyCardType))
        || !doc->getBonusRecords().isEmpty() || !isSaleOrReturn(type)) {
        return; // told by `commit`, or none of the service's business
    }
    try {
        logger->info("Отправка чека на сервер в online режиме");
        interface->accrualAnyCheck(doc);
        printReport();
        logger->info("Чек отправлен в online режиме");
    } catch (const VantiroNoConnectionException&) {
        logger->error("Ошибка отправки чека на сервер в online режиме");
        interface->offlineAccrualAnyCheck(doc);
        logger->info("Чек отправлен в offline режиме");
    } catch (const VantiroException& exception) {
        logger->error(exception.tr().ru());
    }
    clearLoyaltyData();
}

void Vantiro::sendCancelledDocument(const Event& event)
{
    const QString beforeKey = QStringLiteral("documentBeforeStorno");
    const auto doc = argument<AbstractDocument>(event, event.contains(beforeKey) ? beforeKey : documentKey);

    const QString identity = doc->getDocumentIdentity();
    const bool hasLines = doc->getPositionCount() >= 1 || !doc->getDeletedGoodsItems().isEmpty();
    if (identity != lastCanceledDocumentId && isSaleOrReturn(doc->getDocumentType()) && hasLines) {
        try {
            logger->info("Отправка отмененного чека на сервер в online режиме");
            interface->accrualCanceledCheck(doc, positionCoupons, checkCoupons);
            lastCanceledDocumentId = identity;
            logger->info("Отмененный чек отправлен в online режиме");
        } catch (const VantiroNoConnectionException&) {
            logger->error("Ошибка отправки отмененного чека на сервер в online режиме");
            interface->offlineAccrualCanceledCheck(doc, positionCoupons, checkCoupons);
            lastCanceledDocumentId = identity;
            logger->info("Отмененный чек отправлен в offline режиме");
        } catch (const VantiroException& exception) {
            logger->error(exception.tr().ru()); // not marked as sent: a further event tries again
        }
    }
    if (!checkCoupons.isEmpty() || !positionCoupons.isEmpty()) {
        clearCoupons();
    }
}

void Vantiro::removePositionCoupons(const Event& event)
{
    const auto position = argument<GoodsItem>(event, QStringLiteral("position"));
    if (!position || !positionCoupons.contains(position->getPosnum())) {
        return;
    }
    const auto doc = argument<AbstractDocument>(event, documentKey);
    if (doc->getPositionCount() > 0) {
        // A copy: the host answers each deletion with the trigger that edits this very list.
        const QList<QString> numbers = positionCoupons.value(position->getPosnum());
        for (const QString& number : numbers) {
            MockFactory<CouponLogic>::create()->deleteCoupon(
                control::Action().appendArgument(number, QStringLiteral("couponNumber")));
        }
    }
    positionCoupons.remove(position->getPosnum());
    updateCouponsPluginData(doc);
}
