#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace till {

/// Whether a stored JSON text holds what Qt's reader takes though JSON does not allow it: within texts control
/// characters as they are and escapes that are none, outside of them other control characters than white space, and
/// numbers without a digit where one belongs. Nobody writes such a text, so it was damaged. [any-thread]
[[nodiscard]] inline bool isLooseJson(QByteArrayView text)
{
    const auto isDigitAt
        = [text](qsizetype at) { return at >= 0 && at < text.size() && text[at] >= '0' && text[at] <= '9'; };
    bool isWithinText = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (static_cast<unsigned char>(c) < 0x20 && (isWithinText || (c != '\t' && c != '\n' && c != '\r'))) {
            return true;
        }
        if (c == '"') {
            isWithinText = !isWithinText;
        } else if (c == '\\') { // within a text, or the reader has refused it
            ++i;
            if (i == text.size() || !QByteArrayView("\"\\/bfnrtu").contains(text[i])) {
                return true;
            }
        } else if (!isWithinText && c == '.' && (!isDigitAt(i - 1) || !isDigitAt(i + 1))) {
            return true;
        } else if (!isWithinText && c == '-' && !isDigitAt(i + 1)) {
            return true;
        }
    }
    return false;
}

} // namespace till
