#include "tests/front/closing_till.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

void fillState(TillAtWork& till)
{
    const QString position = u"positionCoupons"_s;
    const QString cheque = u"checkCoupons"_s;
    till.store(position, QVariantMap { { u"1"_s, QStringList { u"vantiro-p1"_s } } });
    till.store(cheque, QStringList { u"vantiro-c1"_s });
    EXPECT_TRUE(till.plugin.restoreLoyaltySystem());
    till.store(position, QVariant());
    till.store(cheque, QVariant());

    till.plugin.discountImpacts = { discountImpact(Detail(record_name::positionDiscount).on(1).code(77).sum(17.98)) };
    till.plugin.bonusImpacts = { bonusImpact({ { 1, 30.0 } }) };
    till.plugin.pointsForSpend = 20.0;
    if (till.card()) {
        till.card()->fields.pointsForSpend = 20.0;
        till.card()->fields.spentSum = 30.0;
    }
}

std::string stateOf(TillAtWork& till)
{
    till.plugin.updateCouponsPluginData(till.document());
    static_cast<void>(till.told()); // that was our own save
    QMap<int, QList<QString>> byPosition;
    const QVariantMap stored = till.stored(u"positionCoupons"_s).toMap();
    for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
        byPosition.insert(it.key().toInt(), it->toStringList());
    }
    return std::to_string(till.plugin.discountImpacts.size()) + " discounts, "
        + std::to_string(till.plugin.bonusImpacts.size()) + " spendings, points "
        + QString::number(till.plugin.pointsForSpend, 'f', 2).toStdString() + ", card "
        + (till.card() ? QString::number(till.card()->fields.pointsForSpend, 'f', 2).toStdString() : "none")
        + ", coupons " + told(till.stored(u"checkCoupons"_s).toStringList()) + " | " + told(byPosition);
}

QSharedPointer<AbstractDocument> returnOfKnownSale()
{
    return TillAtWork::saleWithCard().buildReturn(saleSource(4, at("2024-03-04T18:00:00"), at("2024-03-04T18:05:00")));
}
