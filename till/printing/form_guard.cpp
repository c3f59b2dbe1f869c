#include "till/printing/form_guard.h"

#include <algorithm>

namespace till {

namespace {

    constexpr qsizetype longestForm = 4'000'000; // characters
    constexpr int deepestElement = 64; // a print form has two levels
    constexpr int mostAttributes = 64; // and seven attributes

    /// Behind the end mark that is looked for, or at the end of the text.
    [[nodiscard]] qsizetype behind(QStringView text, QStringView end, qsizetype from)
    {
        const qsizetype at = text.indexOf(end, from);
        return at < 0 ? text.size() : at + end.size();
    }

    /// As "&#x0x41;", where the XML reader takes the prefix that C++ writes before such a number for digits of it.
    [[nodiscard]] bool hasMalformedReference(QStringView text)
    {
        return text.contains(u"&#x0x") || text.contains(u"&#x0X");
    }

    /// The XML reader takes the last word of a declaration that says the same thing twice.
    [[nodiscard]] bool repeatsItself(QStringView declaration)
    {
        return declaration.count(u"encoding") > 1 || declaration.count(u"standalone") > 1;
    }

    struct Tag {
        qsizetype end = 0; // behind its '>'
        int attributes = 0;
        bool closesItself = false;
    };

    [[nodiscard]] Tag tagAt(QStringView text, qsizetype from)
    {
        Tag tag;
        QChar quote;
        qsizetype i = from;
        for (; i < text.size(); ++i) {
            const QChar c = text[i];
            if (!quote.isNull()) {
                quote = c == quote ? QChar() : quote;
            } else if (c == u'"' || c == u'\'') {
                quote = c;
            } else if (c == u'=') {
                ++tag.attributes;
            } else if (c == u'>') {
                tag.closesItself = text[i - 1] == u'/';
                break;
            }
        }
        tag.end = std::min(i + 1, text.size());
        return tag;
    }

} // namespace

QString refusalOfForm(QStringView text)
{
    if (text.size() > longestForm) {
        return QStringLiteral("it is longer than %1 characters").arg(longestForm);
    }
    const QString malformedReference = QStringLiteral("it holds a malformed character reference");
    int depth = 0;
    qsizetype at = 0;
    for (qsizetype next = text.indexOf(u'<'); next >= 0; next = text.indexOf(u'<', at)) {
        if (hasMalformedReference(text.sliced(at, next - at))) {
            return malformedReference;
        }
        at = next;
        const QStringView rest = text.sliced(at);
        if (rest.startsWith(u"<!--")) {
            at = behind(text, u"-->", at + 4);
        } else if (rest.startsWith(u"<![CDATA[")) {
            at = behind(text, u"]]>", at + 9);
        } else if (rest.startsWith(u"<?")) {
            const qsizetype end = behind(text, u"?>", at + 2);
            if (at == 0 && repeatsItself(text.first(end))) {
                return QStringLiteral("its XML declaration says something twice");
            }
            at = end;
        } else if (rest.startsWith(u"<!")) {
            return QStringLiteral("it declares a document type");
        } else if (rest.startsWith(u"</")) {
            --depth;
            at = behind(text, u">", at + 2);
        } else {
            const Tag tag = tagAt(text, at + 1);
            if (hasMalformedReference(text.sliced(at, tag.end - at))) {
                return malformedReference;
            }
            at = tag.end;
            if (tag.attributes > mostAttributes) {
                return QStringLiteral("an element has more than %1 attributes").arg(mostAttributes);
            }
            depth += tag.closesItself ? 0 : 1;
            if (depth > deepestElement) {
                return QStringLiteral("its elements are nested more than %1 deep").arg(deepestElement);
            }
        }
    }
    return QString();
}

} // namespace till
