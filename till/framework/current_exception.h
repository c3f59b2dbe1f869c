#pragma once

#include <QString>

namespace till {

/// What the exception being handled says, for the log. Call it in a handler only. [any-thread]
[[nodiscard]] QString currentExceptionText();

}
