#pragma once

#include "front/vantiro.h"

#include <QString>

/// The names under which the state of an open cheque is stored with its document. They outlive the program: a cheque
/// stored by one version is read by the next.
namespace vantiro::state {

/// The group of the plug-in: its class name.
[[nodiscard]] inline QString group(const Vantiro& plugin)
{
    return QString::fromLatin1(plugin.metaObject()->className());
}

inline const QString pointsForSpend = QStringLiteral("pointsForSpend");
inline const QString discountImpacts = QStringLiteral("discountImpacts");
inline const QString bonusImpacts = QStringLiteral("bonusImpacts");
inline const QString offlineMode = QStringLiteral("offlineMode");
inline const QString positionCoupons = QStringLiteral("positionCoupons");
inline const QString checkCoupons = QStringLiteral("checkCoupons");

/// The identity of a cheque that was set aside; kept under the system's own store key.
inline const QString deferredCheck = QStringLiteral("deferredCheck");
inline const QString chequeNo = QStringLiteral("chequeNo");
inline const QString chequeUid = QStringLiteral("chequeUid");
inline const QString shiftNo = QStringLiteral("shiftNo");

} // namespace vantiro::state
