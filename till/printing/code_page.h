#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace till {

/// The text in code page 866, the one that receipt printers have for Russian: one byte for each character, a question
/// mark for each that the page lacks, a blank for a tab. A letter and its accent are one character where the page has
/// them as one. The result holds no control characters, so no text can command the printer. [any-thread]
[[nodiscard]] QByteArray toPrinterPage(const QString& text);

/// The characters of the text that the page lacks, each once, in the order of the text, as people look them up:
/// "“ (U+201C)"; control characters by their number alone. Line ends are none. [any-thread]
[[nodiscard]] QStringList outsidePrinterPage(const QString& text);

} // namespace till
