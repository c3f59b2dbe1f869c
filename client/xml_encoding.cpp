#include "client/xml_encoding.h"

#include "client/xml_declaration.h"

#include <QStringDecoder>
#include <QtEndian>

namespace vantiro {

namespace {

/// Qt's decoders keep silent about units cut short, and about numbers of UTF-32 that are no character and come out as
/// other ones.
[[nodiscard]] bool isWholeAndValid(const QByteArray& bytes, QStringConverter::Encoding encoding)
{
    if (encoding == QStringConverter::Utf8) {
        return true;
    }
    if (encoding == QStringConverter::Utf16LE || encoding == QStringConverter::Utf16BE) {
        return bytes.size() % 2 == 0;
    }
    bool valid = bytes.size() % 4 == 0;
    for (qsizetype i = 0; valid && i < bytes.size(); i += 4) {
        const void* unit = bytes.constData() + i;
        const char32_t c
            = encoding == QStringConverter::Utf32BE ? qFromBigEndian<quint32>(unit) : qFromLittleEndian<quint32>(unit);
        valid = c <= QChar::LastValidCodePoint && !QChar::isSurrogate(c);
    }
    return valid;
}

/// The encoding that the declaration of an ASCII-like text names, empty when there is none or it is malformed.
[[nodiscard]] QByteArray encodingDeclaredInAscii(const QByteArray& bytes)
{
    const qsizetype end = bytes.indexOf("?>");
    if (!bytes.startsWith("<?xml") || end < 0) {
        return QByteArray();
    }
    const QString start = QString::fromLatin1(bytes.first(end + 2));
    const std::optional<XmlDeclaration> declaration = readXmlDeclaration(start);
    return declaration ? declaration->encoding.toLatin1() : QByteArray();
}

/// The declaration may name the very encoding, or UTF-16 and UTF-32 without their order of bytes.
[[nodiscard]] bool isDeclaredAs(const QString& text, const QByteArray& encoding)
{
    const std::optional<XmlDeclaration> declaration = readXmlDeclaration(text);
    if (!declaration || declaration->encoding.isEmpty()) {
        return true;
    }
    const QStringDecoder declared(declaration->encoding.toLatin1().constData());
    return declared.isValid() && encoding.startsWith(declared.name());
}

} // namespace

XmlDecoding decodeXml(const QByteArray& bytes)
{
    const QString contradiction = QStringLiteral("declared encoding contradicts the bytes");
    const auto detected = QStringConverter::encodingForData(bytes, u'<');
    QByteArray encoding
        = detected ? QByteArray(QStringConverter::nameForEncoding(*detected)) : encodingDeclaredInAscii(bytes);
    if (encoding.isEmpty()) {
        encoding = QByteArrayLiteral("UTF-8");
    }
    // Without the flag a character that is cut at the end would be kept for bytes to come, and no error.
    QStringDecoder decoder(encoding.constData(), QStringConverter::Flag::Stateless);
    if (!decoder.isValid()) {
        return { QString(), QStringLiteral("encoding is not supported: %1").arg(QLatin1String(encoding)) };
    }
    const QByteArray name = decoder.name();
    if (!detected && (name.startsWith("UTF-16") || name.startsWith("UTF-32"))) {
        return { QString(), contradiction };
    }
    const QString text = decoder.decode(bytes);
    if (decoder.hasError() || (detected && !isWholeAndValid(bytes, *detected))) {
        return { QString(), QStringLiteral("bytes do not fit the encoding %1").arg(QLatin1String(encoding)) };
    }
    if (detected && !isDeclaredAs(text, encoding)) {
        return { QString(), contradiction };
    }
    return { text, QString() };
}

} // namespace vantiro
