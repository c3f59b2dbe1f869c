#include "client/xml_text.h"

#include <algorithm>

namespace vantiro {

namespace {

    [[nodiscard]] bool isCarried(const QChar c)
    {
        const char16_t code = c.unicode();
        if (code < 0x20) {
            return code == u'\t' || code == u'\n' || code == u'\r';
        }
        return code < 0xFFFE;
    }

    [[nodiscard]] bool isPlain(const QChar c)
    {
        return isCarried(c) && !c.isSurrogate();
    }

} // namespace

QString xmlText(const QString& text)
{
    if (std::all_of(text.cbegin(), text.cend(), isPlain)) {
        return text; // the rule; shares the data
    }
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            result.append(c).append(text.at(++i));
        } else if (isPlain(c)) {
            result.append(c);
        }
    }
    return result;
}

} // namespace vantiro
