#include "tests/documents/source_text.h"

using namespace Qt::StringLiterals;

namespace {

/// One pass over a file. What is neither a text, a character nor a comment is code.
class Reader {
public:
    explicit Reader(const QString& source)
        : text(source)
    {
    }

    [[nodiscard]] QList<Literal> read()
    {
        while (at < text.size()) {
            if (startsWith(u"//"_s)) {
                skipTo(u"\n"_s);
            } else if (startsWith(u"/*"_s)) {
                skipTo(u"*/"_s);
            } else if (startsWith(u"#include"_s)) {
                skipTo(u"\n"_s);
            } else if (text[at] == u'\'' && (!endsInWord() || !prefix().isEmpty())) { // else it parts digits
                ++at;
                static_cast<void>(takeText(u'\''));
            } else if (text[at] == u'"') {
                takeLiteral();
            } else {
                takeCode();
            }
        }
        return literals;
    }

private:
    [[nodiscard]] bool startsWith(QStringView mark) const
    {
        return QStringView(text).sliced(at).startsWith(mark);
    }

    [[nodiscard]] bool endsInWord(qsizetype behind = 0) const
    {
        const qsizetype last = code.size() - behind - 1;
        return last >= 0 && (code[last].isLetterOrNumber() || code[last] == u'_');
    }

    /// What the code ends in that tells the kind of the text behind it.
    [[nodiscard]] QString prefix() const
    {
        for (const QString& known : { u"u8R"_s, u"uR"_s, u"LR"_s, u"R"_s, u"u8"_s, u"u"_s, u"U"_s, u"L"_s }) {
            if (code.endsWith(known) && !endsInWord(known.size())) {
                return known;
            }
        }
        return QString();
    }

    void skipTo(const QString& mark)
    {
        const qsizetype end = text.indexOf(mark, at);
        at = end < 0 ? text.size() : end + mark.size();
    }

    void takeCode()
    {
        constexpr qsizetype enough = 80;
        const QChar c = text[at++];
        if (!c.isSpace()) {
            code += c;
        } else if (!code.endsWith(u' ')) {
            code += u' ';
        }
        if (code.size() > 2 * enough) {
            code = code.last(enough);
        }
    }

    /// Up to and with the closing mark.
    [[nodiscard]] QString takeText(QChar mark)
    {
        QString result;
        while (at < text.size() && text[at] != mark) {
            if (text[at] == u'\\' && at + 1 < text.size()) {
                const QChar escaped = text[at + 1];
                result += escaped == u'"' || escaped == u'\\' ? QString(escaped) : text.sliced(at, 2);
                at += 2;
            } else {
                result += text[at++];
            }
        }
        ++at;
        return result;
    }

    [[nodiscard]] QString takeRawText()
    {
        const qsizetype open = text.indexOf(u'(', at);
        const QString close = u')' + text.sliced(at, open - at) + u'"';
        const qsizetype end = text.indexOf(close, open);
        const QString result = text.sliced(open + 1, end - open - 1);
        at = end + close.size();
        return result;
    }

    void takeLiteral()
    {
        const QString kind = prefix();
        code.chop(kind.size());
        ++at;
        const QString found = kind.endsWith(u'R') ? takeRawText() : takeText(u'"');
        const QString between = code.trimmed();
        const bool joins = between == u'"' || between == u"\"_s";
        if (joins) {
            literals.last().text += found;
        } else {
            literals.append({ found, code });
        }
        code = u"\""_s; // stands for the literal
    }

    QString text;
    qsizetype at = 0;
    QString code;
    QList<Literal> literals;
};

} // namespace

QList<Literal> literalsOf(const QString& source)
{
    return Reader(source).read();
}
