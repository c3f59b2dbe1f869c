#include "till/program/doctor_names.h"

#include <QStringDecoder>

#include <algorithm>
#include <optional>
#include <vector>

namespace till::diagnosis {

namespace {

[[nodiscard]] std::optional<QString> decoded(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

class NameReader {
public:
    void takeLine(const QByteArray& line)
    {
        ++number;
        if (line.isEmpty() || line.startsWith('#') || line.startsWith(';')) {
            return;
        }
        if (!(line.startsWith('[') ? takeHead(line) : takeName(line))) {
            found.damagedLines.append(number);
        }
    }

    [[nodiscard]] const ConfigNames& result() const
    {
        return found;
    }

private:
    [[nodiscard]] bool takeHead(const QByteArray& line)
    {
        section.reset();
        const std::optional<QString> name
            = line.endsWith(']') ? decoded(line.sliced(1, line.size() - 2).trimmed()) : std::nullopt;
        if (name.value_or(QString()).isEmpty()) {
            return false;
        }
        section = name;
        found.sections.append({ number, *name });
        return true;
    }

    [[nodiscard]] bool takeName(const QByteArray& line)
    {
        const qsizetype equals = line.indexOf('=');
        const std::optional<QString> name = decoded(line.first(qMax(equals, 0)).trimmed());
        const QByteArray value = line.sliced(equals + 1).trimmed();
        if (!section || name.value_or(QString()).isEmpty() || !decoded(value)) {
            return false;
        }
        found.names.append({ number, *section, *name, !value.isEmpty() });
        return true;
    }

    ConfigNames found;
    std::optional<QString> section = QString();
    int number = 0;
};

/// How many letters must be changed, added or left out to turn one text into the other.
[[nodiscard]] qsizetype mistakesBetween(const QString& one, const QString& other)
{
    std::vector<qsizetype> row(static_cast<std::size_t>(other.size()) + 1);
    for (std::size_t j = 0; j < row.size(); ++j) {
        row[j] = static_cast<qsizetype>(j);
    }
    for (qsizetype i = 0; i < one.size(); ++i) {
        qsizetype diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 1; j < row.size(); ++j) {
            const qsizetype replaced = diagonal + (one[i] == other[static_cast<qsizetype>(j) - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({ replaced, row[j] + 1, row[j - 1] + 1 });
        }
    }
    return row.back();
}

} // namespace

ConfigNames namesIn(const QByteArray& content)
{
    constexpr QByteArrayView mark = "\xEF\xBB\xBF";
    NameReader reader;
    for (const QByteArray& line : (content.startsWith(mark) ? content.sliced(mark.size()) : content).split('\n')) {
        reader.takeLine(line.trimmed());
    }
    return reader.result();
}

QString nearest(const QString& name, const QStringList& known)
{
    constexpr qsizetype mistakesAllowed = 2;
    constexpr qsizetype longest = 100; // the comparison is quadratic, and no known name is near that long
    if (name.size() > longest) {
        return {};
    }
    QString best;
    qsizetype fewest = mistakesAllowed + 1;
    for (const QString& candidate : known) {
        const qsizetype mistakes = mistakesBetween(name.toLower(), candidate.toLower());
        if (mistakes < fewest) {
            fewest = mistakes;
            best = candidate;
        }
    }
    return best;
}

} // namespace till::diagnosis
