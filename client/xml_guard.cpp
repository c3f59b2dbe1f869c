#include "client/xml_guard.h"

#include "client/xml_declaration.h"
#include "client/xml_limits.h"

#include <optional>

namespace vantiro {

namespace {

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
        const std::optional<XmlDeclaration> declaration = readXmlDeclaration(text);
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

    /// One node more of the tree to come.
    bool count(qsizetype where)
    {
        return ++nodes <= maximumXmlNodes || refuse(where, QStringLiteral("document has too many parts"));
    }

    [[nodiscard]] char16_t peek(qsizetype distance) const
    {
        return at + distance < text.size() ? text[at + distance].unicode() : u'\0';
    }

    /// Passes one character outside the common range.
    bool passUncommon()
    {
        const char16_t c = text[at].unicode();
        if (isXmlSpace(c) || (c > 0xDFFF && c < 0xFFFE)) {
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
            return moveThroughReferencesTo<u'<'>() || fault.isEmpty();
        }
        while (at < text.size() && isXmlSpace(text[at].unicode())) {
            ++at;
        }
        return at == text.size() || peek(0) == u'<'
            || refuse(at, QStringLiteral("text is not allowed outside the root element"));
    }

    /// As `moveTo`, where the text may hold references.
    template <char16_t... stops>
    bool moveThroughReferencesTo()
    {
        while (moveTo<u'&', stops...>()) {
            if (peek(0) != u'&') {
                return true;
            }
            // "&#x0x41;": the parser takes the prefix that C++ writes before such a number for digits of it.
            if (peek(1) == u'#' && text.sliced(at).startsWith(u"&#x0x", Qt::CaseInsensitive)) {
                return refuse(at, QStringLiteral("character reference is malformed"));
            }
            ++at;
        }
        return false;
    }

    bool passMarkup()
    {
        markupStart = at;
        if (peek(1) != u'/' && !count(at)) {
            return false;
        }
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
        if (text.sliced(at + 2).startsWith(u"xml", Qt::CaseInsensitive) && (isXmlSpace(peek(5)) || peek(5) == u'?')) {
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
        if (!moveThroughReferencesTo<u'<', stops...>()) {
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
            if (!count(at - 1)) {
                return false;
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
    int nodes = 0;
    bool hasElement = false;
};

} // namespace

XmlVerdict checkXml(QStringView text)
{
    Guard guard(text);
    if (guard.passes()) {
        return {};
    }
    return { guard.fault, guard.faultAt };
}

} // namespace vantiro
