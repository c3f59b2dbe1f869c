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

[[nodiscard]] inline double roubles(Kopecks sum)
{
    return static_cast<double>(sum) / 100.0;
}

} // namespace till
