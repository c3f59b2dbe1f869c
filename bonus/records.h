#pragma once

#include <QString>

/// What marks the records that this plug-in makes. The names are labels and keys at once: the host shows them, and the
/// cheque builders tell our records from all others by them.
namespace vantiro::records {

inline const QString bonusName = QStringLiteral("Баллы Vantiro");
inline const QString positionDiscountName = QStringLiteral("Скидка Vantiro на позицию");
inline const QString chequeDiscountName = QStringLiteral("Скидка Vantiro на чек");

/// The mode under which the card of this system lies in a document.
inline constexpr int cardMode = 7;

} // namespace vantiro::records
