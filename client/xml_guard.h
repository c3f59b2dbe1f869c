#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace vantiro {

/// Why a text is not given to the parser, and where: an index into the text.
struct XmlRefusal {
    QString reason;
    qsizetype index = 0;
};

/// Checks the limits of `outside_xml.h`, the absence of a document type declaration, and the absence of characters that
/// XML forbids. One pass, no recursion, no memory that grows. It tells comments, character data, instructions and quoted
/// values from markup just as the parser does, for as long as the text is well-formed; from the first fault on the parser
/// refuses the rest. [any-thread]
[[nodiscard]] std::optional<XmlRefusal> findXmlRefusal(QStringView text);

} // namespace vantiro
