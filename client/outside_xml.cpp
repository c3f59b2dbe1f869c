#include "client/outside_xml.h"

#include "client/xml_guard.h"

#include <QStringDecoder>
#include <QtGlobal>

namespace vantiro {

namespace {

    [[nodiscard]] XmlReading failure(const QString& errorText, int line, int column)
    {
        XmlReading reading;
        reading.errorText = errorText;
        reading.line = line;
        reading.column = column;
        return reading;
    }

    [[nodiscard]] XmlReading failureAt(const QString& errorText, QStringView text, qsizetype index)
    {
        const QStringView before = text.first(index);
        const auto line = static_cast<int>(before.count(u'\n')) + 1;
        const auto column = static_cast<int>(index - before.lastIndexOf(u'\n'));
        return failure(errorText, line, column);
    }

    [[nodiscard]] XmlReading parse(const QString& text)
    {
        XmlReading reading;
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
        const QDomDocument::ParseResult result = reading.document.setContent(text);
        if (!result) {
            return failure(result.errorMessage, static_cast<int>(result.errorLine),
                           static_cast<int>(result.errorColumn));
        }
#else
        QString errorText;
        int line = 0;
        int column = 0;
        if (!reading.document.setContent(text, &errorText, &line, &column)) {
            return failure(errorText, line, column);
        }
#endif
        if (reading.document.documentElement().isNull()) {
            return failure(QStringLiteral("document has no element"), 1, 1);
        }
        reading.ok = true;
        return reading;
    }

    /// The value of `encoding` in the XML declaration, empty where there is none. The declaration is ASCII in every
    /// encoding that is not told apart by its first bytes.
    [[nodiscard]] QByteArray declaredEncoding(const QByteArray& bytes)
    {
        if (!bytes.startsWith("<?xml")) {
            return QByteArray();
        }
        const QByteArray declaration = bytes.first(qMax(qsizetype(0), bytes.indexOf("?>")));
        const qsizetype name = declaration.indexOf("encoding");
        if (name < 0) {
            return QByteArray();
        }
        const qsizetype assignment = declaration.indexOf('=', name);
        qsizetype start = assignment + 1;
        while (start < declaration.size() && declaration.at(start) == ' ') {
            ++start;
        }
        if (assignment < 0 || start >= declaration.size()) {
            return QByteArray();
        }
        const qsizetype end = declaration.indexOf(declaration.at(start), start + 1);
        return end < 0 ? QByteArray() : declaration.sliced(start + 1, end - start - 1);
    }

    /// The first bytes outweigh the declaration, which a relay may have left behind when it changed the encoding.
    [[nodiscard]] QStringDecoder decoderFor(const QByteArray& bytes, const QByteArray& declared)
    {
        constexpr auto flags = QStringConverter::Flag::Stateless; // so that a character cut at the end is a failure
        if (const auto encoding = QStringConverter::encodingForData(bytes, u'<')) {
            return QStringDecoder(*encoding, flags);
        }
        if (declared.isEmpty()) {
            return QStringDecoder(QStringConverter::Utf8, flags);
        }
        return QStringDecoder(declared.constData(), flags);
    }

} // namespace

XmlReading readOutsideXml(const QByteArray& bytes)
{
    if (bytes.size() > maximumXmlSize) {
        return failure(QStringLiteral("document is too large"), 1, 1);
    }
    const QByteArray declared = declaredEncoding(bytes);
    QStringDecoder decoder = decoderFor(bytes, declared);
    if (!decoder.isValid()) {
        return failure(QStringLiteral("encoding is not supported: ") + QString::fromLatin1(declared), 1, 1);
    }
    // Decoded here and not by the parser, so that the check and the parser can never see two different texts.
    const QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        return failure(QStringLiteral("text is wrong in its encoding"), 1, 1);
    }
    return readOutsideXml(text);
}

XmlReading readOutsideXml(const QString& text)
{
    if (text.size() > maximumXmlSize) {
        return failure(QStringLiteral("document is too large"), 1, 1);
    }
    if (const std::optional<XmlRefusal> refusal = findXmlRefusal(text)) {
        return failureAt(refusal->reason, text, refusal->index);
    }
    return parse(text);
}

} // namespace vantiro
