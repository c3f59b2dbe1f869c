#include "front/vantiro.h"

#include "client/exceptions.h"
#include "front/texts.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace vantiro;

namespace {

/// For the log alone: truncated, and kept within what its format takes.
[[nodiscard]] int wholePoints(double points)
{
    if (std::isnan(points)) {
        return 0;
    }
    constexpr double limit = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(points, -limit, limit));
}

} // namespace

bool Vantiro::isAllowPartialPointsSpend()
{
    return true;
}

bool Vantiro::hasPointsForSpend()
{
    pointsForSpend = 0.0;
    if (!isOfflineMode(document)) {
        try {
            pointsForSpend = interface->getCardDiscountAmount(document, discountImpacts);
            logger->info("Бонусные баллы получены");
            updatePluginData(document, false);
        } catch (const VantiroNoConnectionException& exception) {
            goOffline(document, exception.tr(), onlyEarn());
        } catch (const VantiroException& exception) {
            fail(exception.tr());
        }
    }
    return pointsForSpend > 0.005;
}

double Vantiro::getPointsForSpend(const QSharedPointer<AbstractDocument>& doc)
{
    logger->debug(pointsMessage());

    const double balance = getCard()->getBonusBalance().toDouble();
    const double amount = std::min({ pointsForSpend, doc->getSumToPay(), balance });

    const double precision = getRoundPrecisionForSpend();
    const double step = precision == 0.0 ? 1.0 : precision;
    const double quotient = amount / step;
    // The thousandth keeps a quotient such as 32.99999999999999 from falling a whole step. It also lifts an amount that
    // lies less than that below a multiple up to it, above the balance even: the service takes such a sum.
    // As a whole number it has no negative zero, which would go out as "-0.00".
    const double whole = std::trunc(amount >= 0.0 ? quotient + 0.001 : quotient - 0.001) + 0.0;
    const double result = std::abs(quotient - whole) < 0.0001 ? amount : step * whole;

    pointsForSpend = std::min(result, pointsForSpend);
    return pointsForSpend;
}

void Vantiro::setPointsForSpend(const QSharedPointer<AbstractDocument>& /*doc*/, double points)
{
    pointsForSpend = points;
}

bool Vantiro::spendPoints()
{
    const QSharedPointer<DocumentCardRecord> card = getCard();
    if (!card) {
        return fail(
            tr::Tr(QStringLiteral("vantiroCardNotFound"), QStringLiteral("В документе отсутствует карта Vantiro")));
    }
    if (isOfflineMode(document)) {
        return true; // nothing is spent, and the sale goes on
    }
    logger->info("Создание оплаты бонусами в виде скидки на сумму %1, по карте %2", wholePoints(pointsForSpend),
                 card->getNumber().toString());
    // Points change what the cheque earns, so the discounts end here, whatever the server answers.
    discountImpacts.clear();
    try {
        if (const QSharedPointer<BonusImpact> impact = interface->subtractBonus(document, pointsForSpend)) {
            bonusImpacts.append(impact);
            pointsForSpend -= impact->getTotals()->getDiscountSum();
        }
        updatePluginData(document, false);
        return true;
    } catch (const VantiroNoConnectionException& exception) {
        return goOffline(document, exception.tr(), onlyEarn());
    } catch (const VantiroException& exception) {
        return fail(exception.tr());
    }
}
