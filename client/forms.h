#pragma once

#include <QDateTime>
#include <QString>

/// The forms in which values stand on the wire and in the cheque. Money is held in doubles and rounded by its printing
/// alone.
namespace vantiro::forms {

/// Roubles with two decimals and a point, no thousands separator: 1234.50.
[[nodiscard]] inline QString money(double value)
{
    return QString::number(value, 'f', 2);
}

/// Quantity with three decimals: 0.350.
[[nodiscard]] inline QString quantity(double value)
{
    return QString::number(value, 'f', 3);
}

/// 2026-11-21T09:30:00, in the time zone that the value holds; empty for an invalid value.
[[nodiscard]] inline QString dateTime(const QDateTime& value)
{
    return value.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
}

[[nodiscard]] inline QString boolean(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace vantiro::forms
