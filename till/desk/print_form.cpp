#include "till/desk/print_form.h"

#include <QTextBoundaryFinder>
#include <QXmlStreamReader>

#include <algorithm>

namespace till {

namespace {

    [[nodiscard]] QString aligned(const QString& line, QStringView align, int columns)
    {
        const qsizetype room = std::max<qsizetype>(columns - line.size(), 0);
        if (align == u"right") {
            return QString(room, u' ') + line;
        }
        if (align == u"center") {
            return QString(room / 2, u' ') + line;
        }
        return line;
    }

    [[nodiscard]] QStringList linesOf(QString text)
    {
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        text.replace(u'\r', u'\n');
        return text.split(u'\n');
    }

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

    /// Breaks at the last blank that fits, and in the middle of a word that is longer than the paper is wide.
    void appendBroken(QStringView rest, int columns, QStringList& lines)
    {
        while (rest.size() > columns) {
            const qsizetype blank = rest.lastIndexOf(u' ', columns);
            const qsizetype cut = blank > 0 ? blank : fitting(rest, columns);
            lines.append(rest.first(cut).toString());
            rest = rest.sliced(blank > 0 ? cut + 1 : cut);
            if (rest.isEmpty()) {
                return; // what did not fit was a blank
            }
        }
        lines.append(rest.toString());
    }

    [[nodiscard]] QStringList broken(const QString& text, int columns)
    {
        QStringList lines;
        for (const QString& line : linesOf(text)) {
            appendBroken(line, columns, lines);
        }
        return lines;
    }

    [[nodiscard]] QString rule(const QString& symbols, int columns)
    {
        if (symbols.isEmpty()) {
            return QString();
        }
        const QString endless = symbols.repeated(columns / symbols.size() + 1);
        return endless.left(fitting(endless, columns));
    }

    void layOutText(QXmlStreamReader& reader, QStringList& lines, int columns)
    {
        const QXmlStreamAttributes attributes = reader.attributes();
        const QString text = reader.readElementText();
        if (attributes.hasAttribute(QStringLiteral("fillsymbol"))) {
            lines.append(rule(attributes.value(QStringLiteral("fillsymbol")).toString(), columns));
            return;
        }
        const QString align = attributes.value(QStringLiteral("align")).toString();
        for (const QString& line : broken(text, columns)) {
            lines.append(aligned(line, align, columns));
        }
    }

    void layOutPrinter(QXmlStreamReader& reader, QStringList& lines, int columns)
    {
        const QXmlStreamAttributes attributes = reader.attributes();
        if (attributes.value(QStringLiteral("op")) == u"barcode") {
            const QString code = attributes.value(QStringLiteral("type")).toString() + u' '
                + attributes.value(QStringLiteral("barcode")).toString();
            for (const QString& line : broken(code, columns)) {
                lines.append(aligned(line, u"center", columns));
            }
        }
        reader.skipCurrentElement();
    }

} // namespace

QStringList layOut(const QString& printForm, int paperColumns)
{
    const int columns = std::max(paperColumns, 1);
    QXmlStreamReader reader(printForm);
    QStringList lines;
    bool isPrintForm = false;
    if (reader.readNextStartElement() && reader.name() == u"report") {
        isPrintForm = true;
        while (reader.readNextStartElement()) {
            if (reader.name() == u"text") {
                layOutText(reader, lines, columns);
            } else if (reader.name() == u"printer") {
                layOutPrinter(reader, lines, columns);
            } else if (reader.name() == u"br") {
                lines.append(QString());
                reader.skipCurrentElement();
            } else {
                reader.skipCurrentElement();
            }
        }
    }
    while (!reader.atEnd()) {
        reader.readNext(); // text behind the form would be lost in silence
    }
    return !isPrintForm || reader.hasError() ? linesOf(printForm) : lines;
}

} // namespace till
