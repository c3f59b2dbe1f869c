#pragma once

#include <QByteArray>
#include <QString>

namespace vantiro {

/// Bytes of XML as text. A plain value.
struct XmlDecoding {
    QString text;
    QString fault; // empty when the text is good
};

/// Decodes by what a byte order mark or the zero bytes of UTF-16 and UTF-32 tell, else by what the XML declaration
/// names, else as UTF-8. An encoding that is not known, contradicts the bytes, or does not fit them is a fault.
/// [any-thread]
[[nodiscard]] XmlDecoding decodeXml(const QByteArray& bytes);

} // namespace vantiro
