#pragma once

#include "tests/walk/dice.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace walk {

/// A configuration of the coupons, and which of `couponNumbers` are coupons of which kind by it. A plain value.
struct CouponRules {
    QString name;
    QMap<QString, QVariant> keys;
    QStringList ofCheque;
    QStringList ofPosition;
};

/// What the till is configured with for a whole walk. A plain value.
struct Setting {
    CouponRules coupons;
    QStringList hosts; // an empty one is a gap in the configured list
    bool restoreLoyaltyState = false;
    double step = 0.0; // by which points are counted, in roubles

    /// The configuration that says this.
    [[nodiscard]] QMap<QString, QVariant> keys() const;
};

/// All numbers that a cashier enters in a walk.
[[nodiscard]] const QStringList& couponNumbers();

[[nodiscard]] Setting drawSetting(Dice& dice);
[[nodiscard]] QString told(const Setting& setting);

} // namespace walk
