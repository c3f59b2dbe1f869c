#pragma once

#include "host/export.h"

#include <QStringList>

namespace till {

/// What decides how many points a cheque may take, in roubles, as the loyalty system and the till have it. A plain
/// value.
struct PointsLimit {
    double offered = 0.0; // by the service, for this cheque
    double needed = 0.0; // what points may still pay of it
    double balance = 0.0; // of the card
    double step = 0.0; // 0: none is set, and whole points count
    double most = 0.0; // what the loyalty system has made of it
};

/// Tells the cashier what points may pay, which of the limits it is that allows no more, and the next amounts below.
/// Where nothing may be paid: why. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QStringList explained(const PointsLimit& limit);

} // namespace till
