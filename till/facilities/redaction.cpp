#include "till/facilities/redaction.h"

#include <QList>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace till {

namespace {

// Each pattern names what it masks `secret`. Repetitions are possessive or bounded wherever a hostile text could make
// the search start over and over: replies of the server are logged.

[[nodiscard]] QRegularExpression rule(const QString& pattern)
{
    QRegularExpression expression(QString(pattern)
                                      .replace(u"KEY"_s, uR"((?:authorization|passw(?:or)?d|pwd|пароль)\w{0,32}+)"_s)
                                      .replace(u"QUOTE"_s, uR"((?:\\*+["']|&quot;|&apos;|&#3[49];))"_s),
                                  QRegularExpression::CaseInsensitiveOption
                                      | QRegularExpression::UseUnicodePropertiesOption
                                      | QRegularExpression::DotMatchesEverythingOption);
    expression.optimize();
    return expression;
}

/// Each begins with a key.
[[nodiscard]] const QList<QRegularExpression>& keyRules()
{
    static const QList<QRegularExpression> list {
        // <password>…</password>, whatever stands between
        rule(uR"((?:<|&lt;)(?:[\w.-]{1,64}:)?(?<key>KEY)(?:\s[^<>]{0,256})?(?<!/)(?:>|&gt;))"
             uR"((?<secret>.*?)(?=(?:<|&lt;)/(?:[\w.-]{1,64}:)?\k<key>|\z))"_s),
        // "password": "…", also escaped; a quote behind a backslash belongs to the value
        rule(uR"(KEY(?:QUOTE\s*+,|QUOTE?\s*+[:=])\s*+(?<quote>QUOTE)(?<secret>.*?)(?:(?<!\\)\k<quote>|\z))"_s),
        // Authorization: …, with the lines that continue it
        rule(uR"(authorization\w{0,32}+(?:QUOTE\s*+,|QUOTE?\s*+[:=])(?!\s*+QUOTE)[ \t]*+)"
             uR"((?<secret>(?:[^\r\n]++|\r?\n[ \t]++)++))"_s),
        rule(uR"(KEY(?:QUOTE\s*+,|QUOTE?\s*+[:=])(?!\s*+QUOTE)[ \t]*+(?<secret>[^\r\n]++))"_s),
    };
    return list;
}

[[nodiscard]] const QRegularExpression& schemeRule()
{
    static const QRegularExpression scheme
        = rule(uR"(\b(?:basic|bearer)(?:\s|%20|\\[nrt])++(?<secret>(?:[a-z0-9+/=._~%-]|\\/){4,}+))"_s);
    return scheme;
}

/// Each ends with an @.
[[nodiscard]] const QList<QRegularExpression>& addressRules()
{
    static const QList<QRegularExpression> list {
        // The user information of a URL reaches to the last @ before its path.
        rule(uR"(:(?:\\?/){2}(?<secret>[^\s/?#<>"]*)@)"_s),
        // A password with an unescaped / ? or #: what stands behind the colon is no port.
        rule(uR"(:(?:\\?/){2}(?<secret>[^\s/?#@:<>"]{1,256}+:(?!\d*+(?:[/?#\s]|\z))\S{1,256})@)"_s),
    };
    return list;
}

/// Whether the text speaks of a password at all: most that is logged does not, and one search tells it of four rules.
[[nodiscard]] bool namesAKey(const QString& text)
{
    static const QRegularExpression key = rule(u"authorization|passw|pwd|пароль"_s);
    const QRegularExpressionMatch match = key.match(text, 0, QRegularExpression::NormalMatch,
                                                    QRegularExpression::DontCheckSubjectStringMatchOption);
    return !match.isValid() || match.hasMatch();
}

[[nodiscard]] QString mask()
{
    return QStringLiteral("***");
}

[[nodiscard]] QString masked(const QString& text, const QRegularExpression& pattern)
{
    QString result;
    qsizetype kept = 0;
    for (qsizetype offset = 0; offset <= text.size();) {
        // Checking the text anew for each match would make many of them quadratic.
        const QRegularExpressionMatch match = pattern.match(text, offset, QRegularExpression::NormalMatch,
                                                            QRegularExpression::DontCheckSubjectStringMatchOption);
        if (!match.isValid()) {
            return mask(); // the search has failed: nobody knows what the text holds
        }
        if (!match.hasMatch()) {
            break;
        }
        result += QStringView(text).sliced(kept, match.capturedStart(u"secret") - kept);
        result += mask();
        kept = match.capturedEnd(u"secret");
        offset = match.capturedEnd();
    }
    return kept == 0 ? text : result + QStringView(text).sliced(kept).toString();
}

[[nodiscard]] QString masked(QString text, const QList<QRegularExpression>& patterns)
{
    for (const QRegularExpression& pattern : patterns) {
        text = masked(text, pattern);
    }
    return text;
}

} // namespace

QString redact(const QString& text)
{
    // Halves of a pair, left by a cut or by JSON, would make every search fail.
    QString result = text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
    if (namesAKey(result)) {
        result = masked(result, keyRules());
    }
    result = masked(result, schemeRule());
    return result.contains(u'@') ? masked(result, addressRules()) : result;
}

} // namespace till
