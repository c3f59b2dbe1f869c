#include "till/printing/text_rows.h"

#include <QStringView>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace till {

namespace {

    /// How much of the front fits without parting a character: half of a surrogate pair is no text any more. At least
    /// one character, whatever its width, so that whoever cuts gets on.
    [[nodiscard]] qsizetype fitting(QStringView text, int columns)
    {
        if (text.size() <= columns) {
            return text.size();
        }
        const qsizetype seen = std::min<qsizetype>(text.size(), columns + 2); // the whole character behind the cut
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.first(seen));
        finder.setPosition(columns);
        if (finder.isAtBoundary()) {
            return columns;
        }
        const qsizetype before = finder.toPreviousBoundary();
        return before > 0 ? before : finder.toNextBoundary();
    }

} // namespace

QString withoutControls(QString text)
{
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control && c != u'\t') {
            c = QChar::ReplacementCharacter;
        }
    }
    return text;
}

QString quoted(const QString& text)
{
    constexpr int longest = 60;
    const QString line = withoutControls(text);
    const qsizetype cut = fitting(line, longest);
    return cut < line.size() ? QStringLiteral("\"%1…\"").arg(line.first(cut)) : QStringLiteral("\"%1\"").arg(line);
}

QStringList linesOf(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(u'\r', u'\n');
    return text.split(u'\n');
}

QStringList brokenLine(const QString& line, int columns)
{
    QStringList rows;
    QStringView rest = line;
    while (rest.size() > columns) {
        const qsizetype blank = rest.lastIndexOf(u' ', columns);
        const qsizetype cut = blank > 0 ? blank : fitting(rest, columns);
        rows.append(rest.first(cut).toString());
        rest = rest.sliced(blank > 0 ? cut + 1 : cut);
        if (rest.isEmpty()) {
            return rows; // what did not fit was a blank
        }
    }
    rows.append(rest.toString());
    return rows;
}

QString filledRow(const QString& symbols, int columns)
{
    if (symbols.isEmpty()) {
        return QString();
    }
    const QString endless = symbols.repeated(columns / symbols.size() + 1);
    return endless.left(fitting(endless, columns));
}

QString alignedRow(const QString& row, SlipAlign align, int columns)
{
    const qsizetype room = std::max<qsizetype>(columns - row.size(), 0);
    if (align == SlipAlign::right) {
        return QString(room, u' ') + row;
    }
    if (align == SlipAlign::center) {
        return QString(room / 2, u' ') + row;
    }
    return row;
}

} // namespace till
