#pragma once

#include <QByteArray>
#include <QDomDocument>
#include <QString>

/// Reading of XML that comes from outside: replies, the documents inside them, slips.
///
/// Such text is not trusted. It is checked in one linear pass before Qt's parser sees it, because the parser's work grows
/// with the square of some things that a few kilobytes can hold: the depth of elements, the attributes of one element,
/// the expansion of entities. Whatever passes the check is read in time and memory linear in its size.
namespace vantiro {

inline constexpr qsizetype maximumXmlSize = 8 * 1024 * 1024; // bytes of a reply, characters of an inner document
inline constexpr int maximumXmlDepth = 256; // the limit of other parsers too; writing a deeper tree out exhausts the stack
inline constexpr int maximumXmlAttributes = 256; // of one element

struct XmlReading {
    QDomDocument document; // null unless `ok`: a failed parse never leaves half a tree behind
    bool ok = false;
    QString errorText; // for the log, in English; text from outside may stand in it
    int line = 0; // where the failure was met, counted from 1
    int column = 0;
};

/// Reads a reply as it came. The encoding is told by its byte order mark or its declaration, and is UTF-8 without either;
/// bytes that are wrong in it are a failure. Not namespace-aware: tags are looked up as they stand. A document type
/// declaration is refused, as SOAP forbids it. Throws nothing. [any-thread]
[[nodiscard]] XmlReading readOutsideXml(const QByteArray& bytes);

/// Reads an inner document, whose text the parser of the outer one has already decoded. [any-thread]
[[nodiscard]] XmlReading readOutsideXml(const QString& text);

} // namespace vantiro
