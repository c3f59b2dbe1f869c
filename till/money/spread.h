#pragma once

#include "host/export.h"
#include "till/money/kopecks.h"

#include <QList>

namespace till {

/// One of those over whom a sum is spread. A plain value.
struct Share {
    Kopecks weight = 0; // its part of the whole; not negative
    Kopecks room = 0; // the most that it takes; not negative
};

/// Spreads the sum over the shares by their weights, to the kopeck: what is left after rounding down goes to those who
/// lost most by it, the earlier one first where two lost the same. A share that is full passes the rest on to the
/// others. The result has one entry per share, in their order; it adds up to the sum, or to all the room there is when
/// that is less. A sum of zero or less gives nothing. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QList<Kopecks> spread(Kopecks sum, const QList<Share>& shares);

} // namespace till
