#include "client/outside_xml.h"

#include "client/xml_encoding.h"
#include "client/xml_guard.h"

namespace vantiro {

namespace {

[[nodiscard]] XmlReading failure(const QString& errorText, int line = 1, int column = 1)
{
    return { QDomDocument(), false, errorText.left(maximumXmlErrorText), line, column };
}

[[nodiscard]] XmlReading failureAt(qsizetype index, QStringView text, const QString& errorText)
{
    int line = 1;
    qsizetype lineStart = 0;
    for (qsizetype i = 0; i < index; ++i) {
        const QChar c = text[i];
        if (c == u'\n' || (c == u'\r' && !(i + 1 < text.size() && text[i + 1] == u'\n'))) {
            ++line;
            lineStart = i + 1;
        }
    }
    return failure(errorText, line, static_cast<int>(index - lineStart) + 1);
}

[[nodiscard]] XmlReading parse(const QString& text)
{
    XmlReading reading;
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    const auto result = reading.document.setContent(QAnyStringView(text), QDomDocument::ParseOption::Default);
    if (!result) {
        return failure(result.errorMessage, static_cast<int>(result.errorLine), static_cast<int>(result.errorColumn));
    }
#else
    QString errorText;
    int line = 0;
    int column = 0;
    if (!reading.document.setContent(text, &errorText, &line, &column)) {
        return failure(errorText, line, column);
    }
#endif
    reading.ok = true;
    return reading;
}

[[nodiscard]] XmlReading readDecoded(const QString& text)
{
    if (text.size() > maximumXmlSize) {
        return failure(QStringLiteral("document is too large"));
    }
    if (const XmlVerdict verdict = checkXml(text); !verdict.fault.isEmpty()) {
        return failureAt(verdict.at, text, verdict.fault);
    }
    return parse(text);
}

} // namespace

XmlReading readOutsideXml(const QByteArray& bytes)
{
    if (bytes.size() > maximumXmlSize) {
        return failure(QStringLiteral("document is too large"));
    }
    // Decoded here and not by the parser: the check and the parser must not see two different texts.
    const XmlDecoding decoding = decodeXml(bytes);
    return decoding.fault.isEmpty() ? readDecoded(decoding.text) : failure(decoding.fault);
}

XmlReading readOutsideXml(const QString& text)
{
    return readDecoded(text.startsWith(QChar(QChar::ByteOrderMark)) ? text.sliced(1) : text);
}

} // namespace vantiro
