#include "client/xml_declaration.h"

#include <QList>

namespace vantiro {

namespace {

[[nodiscard]] constexpr bool isLetter(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

/// The per cent sign has no place there, but is harmless: the refusal can then name the value.
[[nodiscard]] constexpr bool isDeclaredValue(char16_t c)
{
    return isLetter(c) || c == u'%' || (c >= u'0' && c <= u'9') || c == u'.' || c == u'_' || c == u'-';
}

} // namespace

// To the parser the declaration is no processing instruction but a row of attributes, so a "?>" within quotes does not
// end it. The letters that a version, an encoding and "standalone" are made of leave no room for such a thing.
std::optional<XmlDeclaration> readXmlDeclaration(QStringView text)
{
    qsizetype at = 5;
    const auto here = [&] { return at < text.size() ? text[at].unicode() : u'\0'; };
    const auto passAll = [&](auto isOne) {
        const qsizetype start = at;
        while (isOne(here())) {
            ++at;
        }
        return text.sliced(start, at - start);
    };
    XmlDeclaration declaration;
    QList<QStringView> names; // none may come twice
    if (!text.startsWith(u"<?xml") || !(isXmlSpace(here()) || here() == u'?')) {
        return declaration;
    }
    for (;;) {
        const bool parted = !passAll(isXmlSpace).isEmpty();
        if (text.sliced(at).startsWith(u"?>")) {
            declaration.size = at + 2;
            return declaration;
        }
        const QStringView name = passAll(isLetter);
        passAll(isXmlSpace);
        if (!parted || name.isEmpty() || names.contains(name) || here() != u'=') {
            return std::nullopt;
        }
        names.append(name);
        ++at;
        passAll(isXmlSpace);
        const char16_t quote = here();
        if (quote != u'"' && quote != u'\'') {
            return std::nullopt;
        }
        ++at;
        const QStringView value = passAll(isDeclaredValue);
        if (here() != quote) {
            return std::nullopt;
        }
        ++at;
        if (name == u"encoding") {
            declaration.encoding = value;
        }
    }
}

} // namespace vantiro
