#pragma once

#include <QDateTime>
#include <QString>

/// The forms in which values stand on the wire and in the cheque. Money is held in doubles and rounded by its printing
/// alone.
namespace vantiro::forms {

/// Roubles with two decimals and a point, no thousands separator: 1234.50.
[[nodiscard]] QString money(double value);

/// Quantity with three decimals: 0.350.
[[nodiscard]] QString quantity(double value);

/// 2026-11-21T09:30:00, in the time zone that the value holds; empty for an invalid value.
[[nodiscard]] QString dateTime(const QDateTime& value);

[[nodiscard]] inline QString boolean(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace vantiro::forms
