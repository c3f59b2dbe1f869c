#pragma once

#include "host/export.h"

#include <QString>

namespace till {

/// The text with every credential in it masked by asterisks: the values of `Authorization` and of passwords in whatever
/// shape they stand (a header line, JSON however often escaped, an attribute, an element, `name=value`), `Basic` and
/// `Bearer` tokens, the user information of URLs. In doubt it masks too much: a value without quotes ends with its
/// line, and one whose end is missing takes the rest of the text. All that is logged passes through here. The time
/// taken grows with the length of the text alone, whatever stands in it. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QString redact(const QString& text);

} // namespace till
