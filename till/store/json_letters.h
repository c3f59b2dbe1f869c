#pragma once

#include <QStringView>

namespace till {

/// The most bytes that a UTF-16 letter becomes: an escape.
constexpr qsizetype longestLetter = 6;

/// Writes the text in UTF-8 as it stands between the quotation marks of JSON, letter by letter as Qt's own JSON
/// documents have it; halves of a pair are escaped. There is room for `longestLetter` bytes for each letter. Returns
/// the place behind the last byte. [any-thread]
[[nodiscard]] char* writeLetters(QStringView text, char* place);

}
