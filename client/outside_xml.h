#pragma once

#include "client/xml_limits.h"

#include <QByteArray>
#include <QDomDocument>
#include <QString>

/// Reading of XML that comes from outside: replies, the documents inside them, slips.
///
/// Such text is not trusted. One linear pass, which neither recurses nor keeps anything that grows, checks it before
/// the parser sees it: the parser's work grows with the square of the depth and of the attributes of one element, and
/// an entity lets a few kilobytes become gigabytes.
namespace vantiro {

/// Characters of an error text. It may name what the sender chose, and must not fill the log.
inline constexpr qsizetype maximumXmlErrorText = 256;

struct [[nodiscard]] XmlReading {
    QDomDocument document; // null unless `ok`, never half a tree
    bool ok = false;
    QString errorText; // empty when `ok`; for the log, and may repeat a piece of the text, so "%1" can stand in it
    int line = 0; // where the fault is, counted from 1; 0 when `ok`
    int column = 0; // in UTF-16 units; the check counts from 1, the parser tells how many it has read of the line
};

/// Reads a reply as it came. The encoding is what a byte order mark or the zero bytes of UTF-16 and UTF-32 tell, else
/// what the XML declaration names, else UTF-8; one that is not known, contradicts the bytes, or does not fit them is a
/// failure. A text that is refused as a whole, for its size or encoding, is reported at line 1, column 1.
///
/// A document type declaration is refused whatever it holds (SOAP forbids it), and so are characters that XML 1.0
/// forbids and unpaired surrogates. What is well-formed and within the limits gives the document that `QDomDocument`
/// makes of it: without namespace processing, without text nodes of nothing but white space. Does not throw.
/// [any-thread]
[[nodiscard]] XmlReading readOutsideXml(const QByteArray& bytes);

/// Reads an inner document, which the parser of the outer one has already decoded: an encoding that its declaration
/// names does not count. The rest is as above. [any-thread]
[[nodiscard]] XmlReading readOutsideXml(const QString& text);

} // namespace vantiro
