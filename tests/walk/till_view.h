#pragma once

#include "tests/front/till_at_work.h"
#include "tests/walk/records.h"

#include <QMap>
#include <QSharedPointer>
#include <QStringList>

namespace walk {

/// The coupons that the plug-in has in memory. A plain value.
struct CouponStores {
    QStringList ofCheque;
    QMap<int, QStringList> ofPosition;
};

/// Nothing but the plug-in sees its stores, so it is made to write them into a document of their own; the save that
/// belongs to it is the caller's to catch.
[[nodiscard]] CouponStores storesOf(const OpenVantiro& plugin, const QSharedPointer<AbstractDocument>& probe);

/// What can be seen of the till.
[[nodiscard]] View viewOf(TillAtWork& till, const CouponStores& coupons);

} // namespace walk
