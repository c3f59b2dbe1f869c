#pragma once

#include <QStringView>

#include <optional>

namespace vantiro {

/// White space of XML.
[[nodiscard]] constexpr bool isXmlSpace(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

/// The XML declaration of a text. A plain value, which refers to the text.
struct XmlDeclaration {
    qsizetype size = 0; // 0 when the text has none
    QStringView encoding; // empty when it names none
};

/// Reads the declaration at the start of the text; nothing when it is malformed. [any-thread]
[[nodiscard]] std::optional<XmlDeclaration> readXmlDeclaration(QStringView text);

} // namespace vantiro
