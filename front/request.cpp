#include "front/vantiro.h"

#include "bonus/records.h"
#include "client/exceptions.h"
#include "front/state_keys.h"
#include "front/texts.h"

using namespace vantiro;

bool Vantiro::isOfflineMode(const QSharedPointer<AbstractDocument>& doc) const
{
    return doc->getValue(state::group(*this), state::offlineMode, QVariant()).toBool();
}

bool Vantiro::request(const QSharedPointer<AbstractDocument>& doc)
{
    logger->info("Запрос к бонусной системе Vantiro");
    if (isOfflineMode(doc)) {
        return true;
    }
    try {
        discountImpacts = interface->getDiscounts(doc, positionCoupons, checkCoupons);
        logger->info("Дисконт получен");

        constexpr int clientDevice = 1;
        constexpr int cashierDevice = 2;
        const QMap<int, QList<QString>> messages
            = interface->getMessages(doc, discountImpacts, positionCoupons, checkCoupons);
        messagesToCashier = messages.value(cashierDevice);
        messagesToClient = messages.value(clientDevice);

        if (getCard()) {
            pointsForSpend = interface->getCardDiscountAmount(doc, discountImpacts);
        }
        updatePluginData(doc, false);
        return true;
    } catch (const VantiroNoConnectionException& exception) {
        return goOffline(doc, exception.tr(), doc->getCardRecord(records::cardMode) ? onlyEarn() : tr::Tr());
    } catch (const VantiroException& exception) {
        return fail(exception.tr());
    }
}

bool Vantiro::fail(const tr::Tr& reason)
{
    logger->error(reason.ru());
    lastError = reason;
    return false;
}

bool Vantiro::goOffline(const QSharedPointer<AbstractDocument>& doc, const tr::Tr& reason, const tr::Tr& remark)
{
    logger->error(reason.ru()); // without the remark, which is the cashier's
    lastError = withRemark(reason, remark);
    updatePluginData(doc, true);
    return false;
}
