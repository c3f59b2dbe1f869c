#pragma once

#include <QString>

namespace vantiro {

/// The text without the characters that XML 1.0 cannot carry: control characters other than tab, line feed and return,
/// unpaired surrogates, U+FFFE and U+FFFF. Qt writes them as they are, and then no parser reads the request, so a stray
/// byte of a scanner (a group separator, say) would cost the whole cheque. Everything else stays as it is.
[[nodiscard]] QString xmlText(const QString& text);

} // namespace vantiro
