#pragma once

#include "host/export.h"
#include "till/printing/slip_arrangement.h"

#include <QStringList>

namespace till {

/// The slip as lines for a terminal of so many columns, without trailing line feed. Enlarged text is spaced out: it
/// takes the room that it takes on paper, breaks where it would break there, and stays the text that it is. Codes are
/// drawn with block characters where they fit, dark where the code is dark, so a light screen shows them as paper does;
/// else they stand there as text. [any-thread]
[[nodiscard]] VANTIRO_HOST_API Rendered<QStringList> renderForTerminal(const Slip& slip, int columns);

} // namespace till
