#pragma once

#include "host/export.h"
#include "till/printing/slip_arrangement.h"

#include <QByteArray>

namespace till {

/// The slip in the command language ESC/POS, for a printer that has so many columns in its first font: from the
/// initialisation to feed and cut. Text is in code page 866, and codes are drawn by the printer itself. [any-thread]
[[nodiscard]] VANTIRO_HOST_API Rendered<QByteArray> renderForPrinter(const Slip& slip, int columns);

} // namespace till
