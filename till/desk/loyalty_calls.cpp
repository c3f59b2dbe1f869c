#include "till/desk/loyalty_calls.h"

#include "till/work_events.h"

namespace till {

namespace {

    [[nodiscard]] QString money(double sum)
    {
        return QString::number(sum, 'f', 2);
    }

    [[nodiscard]] bool told(const char* hook, bool result)
    {
        tellWork({ QStringLiteral("hook"), QString::fromLatin1(hook),
                   result ? QStringLiteral("true") : QStringLiteral("false") });
        return result;
    }

    void told(const char* hook, const QString& detail = {})
    {
        tellWork({ QStringLiteral("hook"), QString::fromLatin1(hook), detail });
    }

} // namespace

LoyaltyCalls::LoyaltyCalls(BasicLoyaltySystem& calledSystem)
    : system(calledSystem)
{
}

bool LoyaltyCalls::identifyByCard(QSharedPointer<DocumentCardRecord>& card, const QString& number) const
{
    const bool ours = system.identifyByCard(card, ECardNumberType());
    told("identifyByCard",
         QStringLiteral("%1: %2").arg(number, ours ? QStringLiteral("true") : QStringLiteral("false")));
    return ours;
}

CardNumberResult LoyaltyCalls::cardNumberOfPhone(const QString& phone) const
{
    const CardNumberResult found = system.getCardNumber({ loyalty::CardNumberInputData::phone, phone });
    told("getCardNumber", QStringLiteral("%1: %2").arg(phone, found.ok ? found.cardNumber : found.error.ru()));
    return found;
}

bool LoyaltyCalls::request(const QSharedPointer<AbstractDocument>& document) const
{
    return told("request", system.request(document));
}

bool LoyaltyCalls::hasPointsForSpend() const
{
    return told("hasPointsForSpend", system.hasPointsForSpend());
}

double LoyaltyCalls::getPointsForSpend(const QSharedPointer<AbstractDocument>& document) const
{
    const double points = system.getPointsForSpend(document);
    told("getPointsForSpend", money(points));
    return points;
}

void LoyaltyCalls::setPointsForSpend(const QSharedPointer<AbstractDocument>& document, double points) const
{
    system.setPointsForSpend(document, points);
    told("setPointsForSpend", money(points));
}

bool LoyaltyCalls::spendPoints() const
{
    return told("spendPoints", system.spendPoints());
}

bool LoyaltyCalls::rollback(const QSharedPointer<AbstractDocument>& document) const
{
    return told("rollback", system.rollback(document));
}

bool LoyaltyCalls::commit(const QSharedPointer<AbstractDocument>& document) const
{
    return told("commit", system.commit(document));
}

bool LoyaltyCalls::cancel() const
{
    return told("cancel", system.cancel());
}

void LoyaltyCalls::clearAfterClose() const
{
    system.clearAfterClose();
    told("clearAfterClose");
}

void LoyaltyCalls::beforePutoutCheck() const
{
    system.beforePutoutCheck();
    told("beforePutoutCheck");
}

void LoyaltyCalls::afterPutoutCheck() const
{
    system.afterPutoutCheck();
    told("afterPutoutCheck");
}

void LoyaltyCalls::revealCheck() const
{
    system.revealCheck();
    told("revealCheck");
}

} // namespace till
