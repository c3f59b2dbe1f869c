#include "client/outside_xml.h"

#include <QStringDecoder>
#include <QStringView>
#include <QtEndian>

#include <optional>

namespace vantiro {

namespace {

[[nodiscard]] constexpr bool isSpace(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

[[nodiscard]] constexpr bool isLetter(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

/// The per cent sign has no place there, but is harmless: the refusal can then name the value.
[[nodiscard]] constexpr bool isDeclaredValue(char16_t c)
{
    return isLetter(c) || c == u'%' || (c >= u'0' && c <= u'9') || c == u'.' || c == u'_' || c == u'-';
}

struct Declaration {
    qsizetype size = 0; // 0 when the text has none
    QStringView encoding; // empty when it names none
};

/// Reads the XML declaration at the start of the text; nothing when it is malformed. It is no processing instruction
/// but a row of attributes to the parser, so a "?>" within quotes does not end it. The letters that a version, an
/// encoding and "standalone" are made of leave no room for such a thing.
[[nodiscard]] std::optional<Declaration> readDeclaration(QStringView text)
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
    Declaration declaration;
    if (!text.startsWith(u"<?xml") || !(isSpace(here()) || here() == u'?')) {
        return declaration;
    }
    for (;;) {
        const bool parted = !passAll(isSpace).isEmpty();
        if (text.sliced(at).startsWith(u"?>")) {
            declaration.size = at + 2;
            return declaration;
        }
        const QStringView name = passAll(isLetter);
        passAll(isSpace);
        if (!parted || name.isEmpty() || here() != u'=') {
            return std::nullopt;
        }
        ++at;
        passAll(isSpace);
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

/// The pass over the text. It must never take for a comment, character data, an instruction or a quoted value what
/// the parser takes for markup. What it does not understand it refuses; what it passes over without a judgement (the
/// names of tags, say) can only make the parser stop there.
class Guard {
public:
    explicit Guard(QStringView textToCheck)
        : text(textToCheck)
    {
    }

    /// False when the parser must not see the text: `fault` and `faultAt` tell why then.
    [[nodiscard]] bool passes()
    {
        const std::optional<Declaration> declaration = readDeclaration(text);
        if (!declaration) {
            return refuse(0, QStringLiteral("XML declaration is malformed"));
        }
        at = declaration->size;
        bool good = moveToMarkup();
        while (good && at < text.size()) {
            good = passMarkup() && moveToMarkup();
        }
        return good && endsWell();
    }

    QString fault;
    qsizetype faultAt = 0;

private:
    bool refuse(qsizetype where, const QString& why)
    {
        fault = why;
        faultAt = where;
        return false;
    }

    /// The end of the text came within a construct, unless a character in it has been refused already.
    bool refuseUnclosed(const QString& why)
    {
        return fault.isEmpty() ? refuse(markupStart, why) : false;
    }

    [[nodiscard]] char16_t peek(qsizetype distance) const
    {
        return at + distance < text.size() ? text[at + distance].unicode() : u'\0';
    }

    /// Passes one character outside the common range.
    bool passUncommon()
    {
        const char16_t c = text[at].unicode();
        if (isSpace(c) || (c > 0xDFFF && c < 0xFFFE)) {
            ++at;
            return true;
        }
        if (QChar::isHighSurrogate(c) && QChar::isLowSurrogate(peek(1))) {
            at += 2;
            return true;
        }
        const QString code = QString::number(c, 16).toUpper().rightJustified(4, u'0');
        return refuse(at, QStringLiteral("character U+%1 is not allowed").arg(code));
    }

    /// Moves to the first of the stops. False at the end of the text and at a character that XML forbids; only the
    /// latter sets the fault.
    template <char16_t... stops>
    bool moveTo()
    {
        while (at < text.size()) {
            const char16_t c = text[at].unicode();
            if (((c == stops) || ...)) {
                return true;
            }
            if (c >= 0x20 && c < 0xD800) {
                ++at;
            } else if (!passUncommon()) {
                return false;
            }
        }
        return false;
    }

    /// Moves to the next "<", or to the end of the text.
    bool moveToMarkup()
    {
        if (depth > 0) {
            return moveTo<u'<'>() || fault.isEmpty();
        }
        while (at < text.size() && isSpace(text[at].unicode())) {
            ++at;
        }
        return at == text.size() || peek(0) == u'<'
            || refuse(at, QStringLiteral("text is not allowed outside the root element"));
    }

    bool passMarkup()
    {
        markupStart = at;
        switch (peek(1)) {
        case u'!':
            return passExclamation();
        case u'?':
            return passInstruction();
        case u'/':
            return passEndTag();
        default:
            return passStartTag();
        }
    }

    bool passExclamation()
    {
        const QStringView rest = text.sliced(at);
        if (rest.startsWith(u"<!--")) {
            return passSection<u'-', u'-'>(4, QStringLiteral("comment is not closed")) && passCommentEnd();
        }
        if (rest.startsWith(u"<![CDATA[") && depth > 0) {
            return passSection<u']', u']', u'>'>(9, QStringLiteral("CDATA section is not closed"));
        }
        return refuse(at,
                      rest.startsWith(u"<!DOCTYPE") ? QStringLiteral("document type declaration is not allowed")
                                                    : QStringLiteral("markup declaration is not allowed"));
    }

    bool passCommentEnd()
    {
        if (peek(0) != u'>') {
            return refuse(at - 2, QStringLiteral("\"--\" is not allowed inside a comment"));
        }
        ++at;
        return true;
    }

    bool passInstruction()
    {
        // Here the parser would look for quoted values and not for the first "?>".
        if (text.sliced(at + 2).startsWith(u"xml", Qt::CaseInsensitive) && (isSpace(peek(5)) || peek(5) == u'?')) {
            return refuse(at, QStringLiteral("XML declaration is not at the start of the document"));
        }
        return passSection<u'?', u'>'>(2, QStringLiteral("processing instruction is not closed"));
    }

    /// Passes what holds no markup, up to and with its closing mark.
    template <char16_t first, char16_t... others>
    bool passSection(qsizetype openingSize, const QString& unclosed)
    {
        at += openingSize;
        while (moveTo<first>()) {
            ++at;
            qsizetype distance = 0;
            if (((peek(distance++) == others) && ...)) {
                at += distance;
                return true;
            }
        }
        return refuseUnclosed(unclosed);
    }

    /// As `moveTo`, within a tag, where neither a "<" nor the end of the text may come first.
    template <char16_t... stops>
    bool moveWithinTag()
    {
        if (!moveTo<u'<', stops...>()) {
            return refuseUnclosed(QStringLiteral("tag is not closed"));
        }
        return peek(0) != u'<' || refuse(at, QStringLiteral("\"<\" is not allowed inside a tag"));
    }

    bool passEndTag()
    {
        if (depth == 0) {
            return refuse(at, QStringLiteral("end tag without a start tag"));
        }
        at += 2;
        if (!moveWithinTag<u'>'>()) {
            return false;
        }
        ++at;
        --depth;
        return true;
    }

    bool passStartTag()
    {
        if (depth == maximumXmlDepth) {
            return refuse(at, QStringLiteral("elements are nested too deeply"));
        }
        hasElement = true;
        int attributes = 0;
        ++at;
        while (moveWithinTag<u'>', u'"', u'\''>()) {
            const char16_t c = text[at++].unicode();
            if (c == u'>') {
                depth += text[at - 2] == u'/' ? 0 : 1;
                return true;
            }
            if (++attributes > maximumXmlAttributes) {
                return refuse(at - 1, QStringLiteral("element has too many attributes"));
            }
            if (!(c == u'"' ? moveWithinTag<u'"'>() : moveWithinTag<u'\''>())) {
                return false;
            }
            ++at;
        }
        return false;
    }

    bool endsWell()
    {
        if (depth > 0) {
            return refuse(at, QStringLiteral("document ends inside an element"));
        }
        return hasElement || refuse(at, QStringLiteral("document has no element"));
    }

    QStringView text;
    qsizetype at = 0;
    qsizetype markupStart = 0;
    int depth = 0;
    bool hasElement = false;
};

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
    Guard guard(text);
    if (!guard.passes()) {
        return failureAt(guard.faultAt, text, guard.fault);
    }
    return parse(text);
}

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
    const std::optional<Declaration> declaration = readDeclaration(start);
    return declaration ? declaration->encoding.toLatin1() : QByteArray();
}

/// The declaration may name the very encoding, or UTF-16 and UTF-32 without their order of bytes.
[[nodiscard]] bool isDeclaredAs(const QString& text, const QByteArray& encoding)
{
    const std::optional<Declaration> declaration = readDeclaration(text);
    if (!declaration || declaration->encoding.isEmpty()) {
        return true;
    }
    const QStringDecoder declared(declaration->encoding.toLatin1().constData());
    return declared.isValid() && encoding.startsWith(declared.name());
}

struct Decoding {
    QString text;
    QString fault; // empty when the text is good
};

[[nodiscard]] Decoding decode(const QByteArray& bytes)
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

} // namespace

XmlReading readOutsideXml(const QByteArray& bytes)
{
    if (bytes.size() > maximumXmlSize) {
        return failure(QStringLiteral("document is too large"));
    }
    // Decoded here and not by the parser: the check and the parser must not see two different texts.
    const Decoding decoding = decode(bytes);
    return decoding.fault.isEmpty() ? readDecoded(decoding.text) : failure(decoding.fault);
}

XmlReading readOutsideXml(const QString& text)
{
    return readDecoded(text.startsWith(QChar(QChar::ByteOrderMark)) ? text.sliced(1) : text);
}

} // namespace vantiro
