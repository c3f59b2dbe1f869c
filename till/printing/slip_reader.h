#pragma once

#include "host/export.h"
#include "till/printing/slip.h"

namespace till {

/// Reads a print form. What it does not know is left out, as a printer would, and told in the findings; so are codes
/// that cannot be drawn and characters that the printer's code page lacks. A text that cannot be read as a print form
/// becomes one block of plain text; when it has the look of XML, a finding says what is wrong with it. Never throws for
/// the text's sake; its time grows with the text and no faster. [any-thread]
[[nodiscard]] VANTIRO_HOST_API Slip readSlip(const QString& text);

} // namespace till
