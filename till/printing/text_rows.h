#pragma once

#include "till/printing/slip.h"

#include <QString>
#include <QStringList>

// How texts become rows of paper of so many columns. A column is a UTF-16 code unit: what Russian slips are made of
// takes one each. [any-thread]
namespace till {

/// The text with U+FFFD for every control character but tabs: a text must not command a terminal.
[[nodiscard]] QString withoutControls(QString text);

/// A text as a finding quotes it: on one line, without control characters, its end cut off where it is long.
[[nodiscard]] QString quoted(const QString& text);

/// The lines of the text, whatever its line ends.
[[nodiscard]] QStringList linesOf(QString text);

/// The line in rows of at most so many columns: broken at the last blank that fits, and in the middle of a word that is
/// longer than the paper is wide, but never within a character. At least one row. columns >= 1.
[[nodiscard]] QStringList brokenLine(const QString& line, int columns);

/// The symbols over and over, as far as the columns reach; nothing for no symbols. columns >= 1.
[[nodiscard]] QString filledRow(const QString& symbols, int columns);

/// The row with the blanks in front that its alignment asks for.
[[nodiscard]] QString alignedRow(const QString& row, SlipAlign align, int columns);

} // namespace till
