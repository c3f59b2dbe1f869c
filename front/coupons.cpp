#include "front/vantiro.h"

#include "client/exceptions.h"
#include "client/reply.h"
#include "front/texts.h"
#include "host/facilities/finally.h"
#include "host/framework/activity_notifier.h"
#include "host/framework/dialog.h"
#include "host/framework/session.h"

#include <QRegExp>

using namespace vantiro;

namespace {

const QString couponNumberKey = QStringLiteral("couponNumber");
const QString couponTypeKey = QStringLiteral("couponType");

/// A mask outranks a prefix; with neither, nothing matches. The pattern must match the whole number, and one that the
/// class refuses matches nothing.
[[nodiscard]] bool matches(const QString& number, const QString& mask, const QString& prefix)
{
    if (!mask.isEmpty()) {
        return QRegExp(mask, Qt::CaseSensitive, QRegExp::RegExp).exactMatch(number);
    }
    return !prefix.isEmpty() && number.startsWith(prefix, Qt::CaseSensitive);
}

} // namespace

bool Vantiro::couponBelongsToSystem(ECoupon::Type type) const
{
    return type == ECoupon::loyaltySystem;
}

bool Vantiro::isCheckCouponNumber(const QString& number) const
{
    return matches(number, checkCouponMask, checkCouponPrefix);
}

bool Vantiro::isPositionCouponNumber(const QString& number) const
{
    return matches(number, positionCouponMask, positionCouponPrefix);
}

void Vantiro::clearCoupons()
{
    positionCoupons.clear();
    checkCoupons.clear();
}

EContext::Result Vantiro::addCoupon(const control::Action& action)
{
    logger->info("Добавление купона Vantiro");
    const QString number = action.value(couponNumberKey, QVariant()).toString();
    if (!isCheckCouponNumber(number) && !isPositionCouponNumber(number)) {
        logger->info("Купон %1 не является купоном Vantiro", number);
        return EContext::goOn;
    }

    const QSharedPointer<AbstractDocument> doc = Singleton<Session>::get()->getDocument();
    Singleton<Session>::get()->getModifiers()->clearAll();
    try {
        // Asked of a cheque coupon too, where its number is one of both kinds.
        if (isPositionCouponNumber(number) && doc->getCurrentPosition().state != Position::present) {
            throw CouponAddException(tr::Tr(QStringLiteral("vantiroNoPositionsForCoupon"),
                                            QStringLiteral("Нет позиций для добавления купона на позицию")),
                                     false);
        }
        if (isOfflineMode(doc)) {
            throw VantiroNoConnectionException(reply::noConnection());
        }

        ActivityNotifier* const notifier = Singleton<ActivityNotifier>::get();
        notifier->notify(Event(EActivityListener::processStarted)
                             .addArgument(QStringLiteral("message"),
                                          tr::Tr(QStringLiteral("processLoyaltyMessage"),
                                                 QStringLiteral("Обращение к системе лояльности"))));
        const Finally finished([notifier] { notifier->notify(Event(EActivityListener::processFinished)); });
        if (interface->isCouponValid(number)) {
            action.insert(couponTypeKey, static_cast<int>(ECoupon::loyaltySystem));
            action.insert(QStringLiteral("allowSameCouponNumber"), true);
        } // else it is not this system's, and the host goes on with it as with any other
        return EContext::goOn;
    } catch (const VantiroNoConnectionException& exception) {
        if (!isOfflineMode(doc)) {
            updatePluginData(doc, true);
        }
        dispatchCouponAddError(number, withRemark(exception.tr(), getCard() ? onlyEarn() : tr::Tr()));
    } catch (const VantiroException& exception) {
        dispatchCouponAddError(number, exception.tr());
    } catch (const CouponAddException& exception) {
        dispatchCouponAddError(number, exception.tr());
    }
    return EContext::refused;
}

EContext::Result Vantiro::appendCoupon(const control::Action& action)
{
    if (action.value(couponTypeKey, QVariant()).toInt() != ECoupon::loyaltySystem) {
        return EContext::goOn;
    }
    const QString number = action.value(couponNumberKey, QVariant()).toString();
    const QSharedPointer<AbstractDocument> doc = Singleton<Session>::get()->getDocument();
    if (isCheckCouponNumber(number)) {
        checkCoupons.append(number);
    } else {
        positionCoupons[doc->getCurrentPosition().number].append(number);
    }
    updateCouponsPluginData(doc);
    logger->info("Купон Vantiro %1 добавлен", number);
    return EContext::goOn;
}

EContext::Result Vantiro::deleteCoupons(const control::Action& action)
{
    logger->info("Удаление купона/купонов Vantiro");
    if (checkCoupons.isEmpty() && positionCoupons.isEmpty()) {
        return EContext::goOn;
    }
    try {
        const auto coupon = action.value(QStringLiteral("coupon"), QVariant()).value<CouponPtr>();
        const QString number = coupon ? coupon->getNumber() : QString();
        const bool isCheckCoupon = isCheckCouponNumber(number);
        if (!isCheckCoupon && !isPositionCouponNumber(number)) {
            return EContext::goOn;
        }
        logger->info("Удаление купона с номером %1", number);
        if (!document->hasCoupon(coupon)) {
            throw VantiroException(
                tr::Tr(QStringLiteral("vantiroNoCoupon"), QStringLiteral("Купон отсутствует в чеке")));
        }
        if (isCheckCoupon) {
            checkCoupons.removeAll(number);
        } else {
            for (auto it = positionCoupons.begin(); it != positionCoupons.end();) {
                it->removeAll(number);
                it = it->isEmpty() ? positionCoupons.erase(it) : std::next(it);
            }
        }
        logger->info("Купон Vantiro удален");
        updateCouponsPluginData(Singleton<Session>::get()->getDocument());
        return EContext::goOn;
    } catch (const VantiroException& exception) {
        MockFactory<Dialog>::create()->showMessage(exception.tr(), 1, 0, 0);
        return EContext::refused;
    }
}

void Vantiro::dispatchCouponAddError(const QString& couponNumber, const tr::Tr& text) const
{
    Singleton<ActivityNotifier>::get()->notify(Event(EActivityListener::couponRefused)
                                                   .addArgument(QStringLiteral("text"), text)
                                                   .addArgument(couponNumberKey, couponNumber)
                                                   .addArgument(QStringLiteral("forCustomer"), true));
}
