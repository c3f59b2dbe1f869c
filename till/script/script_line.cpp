#include "till/script/script_line.h"

namespace till {

ScriptError::ScriptError(const QString& sentence)
    : std::runtime_error(sentence.toStdString())
{
}

ScriptError::ScriptError(const QString& sentence, int formerLine)
    : std::runtime_error(sentence.toStdString())
    , former(formerLine)
{
}

ScriptError::ScriptError(const ScriptError& other) = default;
ScriptError& ScriptError::operator=(const ScriptError& other) = default;
ScriptError::~ScriptError() = default;

QString ScriptError::text() const
{
    return QString::fromUtf8(what());
}

int ScriptError::line() const
{
    return former;
}

QStringList wordsOf(const QString& line)
{
    QStringList words;
    QString word;
    bool inWord = false;
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (quoted) {
            const bool escapes
                = c == u'\\' && i + 1 < line.size() && (line.at(i + 1) == u'"' || line.at(i + 1) == u'\\');
            if (c == u'"') {
                quoted = false;
            } else {
                word += escapes ? line.at(++i) : c;
            }
        } else if (c == u'"') {
            quoted = true;
            inWord = true; // "" is an empty word
        } else if (c.isSpace()) {
            if (inWord) {
                words.append(word);
            }
            word.clear();
            inWord = false;
        } else if (c == u'#' && !inWord) {
            break;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quoted) {
        throw ScriptError(QStringLiteral("a quote is not closed"));
    }
    if (inWord) {
        words.append(word);
    }
    return words;
}

QList<ScriptLine> parseScript(const QString& script)
{
    QList<ScriptLine> lines;
    int number = 0;
    const QChar byteOrderMark(u'\uFEFF'); // some editors begin a file with one
    const QStringList texts = (script.startsWith(byteOrderMark) ? script.sliced(1) : script).split(u'\n');
    for (const QString& text : texts) {
        ++number;
        try {
            const QStringList words = wordsOf(text);
            if (!words.isEmpty()) {
                lines.append({ number, words, text.trimmed() });
            }
        } catch (const ScriptError& error) {
            throw ScriptError(QStringLiteral("line %1: %2").arg(QString::number(number), error.text()));
        }
    }
    return lines;
}

} // namespace till
