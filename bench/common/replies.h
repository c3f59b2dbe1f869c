#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <string>

/// A reply of the service: the operation's result as escaped text within its envelope.
[[nodiscard]] QByteArray reply(const QString& operation, const QString& result);

/// The inner document of a reply to `GetDiscounts`: one discount on each of so many lines.
[[nodiscard]] QString discountsOn(int lineCount);

/// What the service answers to every operation of a sale of so many lines: the card is good and holds 1,000 points, of
/// which 50 can be spent, each line has a discount, every coupon is valid, and 30 points are spread over all lines.
[[nodiscard]] std::map<std::string, QByteArray> repliesToSale(int lineCount);
