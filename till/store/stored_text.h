#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace till {

/// Whether a stored JSON text holds what Qt's reader takes though JSON does not allow it: control characters as they are,
/// other than white space, and escapes that are none. Nobody writes such a text, so it was damaged. [any-thread]
[[nodiscard]] inline bool isLooseJson(QByteArrayView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r') {
            return true;
        }
        if (c == '\\') { // within a text, or the reader has refused it
            ++i;
            if (i == text.size() || !QByteArrayView("\"\\/bfnrtu").contains(text[i])) {
                return true;
            }
        }
    }
    return false;
}

} // namespace till
