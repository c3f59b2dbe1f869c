#pragma once

#include "till/printing/slip.h"

namespace till {

/// Reads a text that looks like XML and that the guard has let pass. A slip of another kind than a print form comes
/// back without blocks, and with one finding when it is not the service's form either. [any-thread]
[[nodiscard]] Slip readForm(const QString& text);

} // namespace till
