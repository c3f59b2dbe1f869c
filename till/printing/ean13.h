#pragma once

#include <QString>

namespace till {

/// What keeps the text from being an EAN-13 code, as the end of a sentence ("has 12 characters instead of 13"), or
/// nothing for a valid one. [any-thread]
[[nodiscard]] QString defectOfEan13(const QString& code);

} // namespace till
