#pragma once

#include <QtGlobal>

#include <cmath>

namespace till {

/// Money as it is counted: whole kopecks. Doubles in roubles stand in documents and on the wire only.
using Kopecks = qint64;

/// Rounded half away from zero.
[[nodiscard]] inline Kopecks kopecks(double roubles)
{
    return std::llround(roubles * 100.0);
}

/// What so much of something costs, half a kopeck rounded up. Price and quantity are taken as what they stand for,
/// whole kopecks and thousandths: the product of the doubles falls short of many a half.
[[nodiscard]] inline Kopecks cost(double price, double quantity)
{
    return std::llround(std::round(price * 100.0) * std::round(quantity * 1000.0) / 1000.0);
}

[[nodiscard]] inline double roubles(Kopecks sum)
{
    return static_cast<double>(sum) / 100.0;
}

} // namespace till
