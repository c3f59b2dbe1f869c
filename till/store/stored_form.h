#pragma once

#include <QString>

/// What the writing and the reading of a stored document have in common.
namespace till::stored {

inline constexpr int formatVersion = 1;

inline const QString discountImpact = QStringLiteral("discount");
inline const QString bonusImpact = QStringLiteral("bonus");

} // namespace till::stored
