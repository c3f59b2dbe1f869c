#pragma once

#include <QDateTime>
#include <QString>

namespace till {

/// `2024-03-05T14:07:09.250+03:00`, and `Z` for no distance, as Qt::ISODateWithMs has it of a moment that knows its
/// distance from UTC: the time of the till alone comes twice in the hour in which clocks are set back. The moment must
/// be valid. [any-thread]
[[nodiscard]] QString momentText(const QDateTime& moment);

/// Two moments of the same bits are the same: what they share besides stays as it is while both live. That they differ
/// is not said of others. For those who look for the moment before: to compare two, Qt asks the system for the distance
/// from UTC of both. [any-thread]
[[nodiscard]] bool hasSameBits(const QDateTime& one, const QDateTime& other);

}
