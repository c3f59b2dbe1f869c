#include "till/desk/print_form.h"

#include <QXmlStreamReader>

namespace till {

namespace {

    [[nodiscard]] QString aligned(const QString& line, QStringView align, int columns)
    {
        const qsizetype room = columns - line.size();
        if (room <= 0 || align == u"left" || align.isEmpty()) {
            return line;
        }
        return QString(align == u"right" ? room : room / 2, u' ') + line;
    }

    /// Breaks at the last blank that fits, and in the middle of a word that is longer than the paper is wide.
    [[nodiscard]] QStringList broken(const QString& text, int columns)
    {
        QStringList lines;
        for (QString rest : text.split(u'\n')) {
            while (rest.size() > columns) {
                const qsizetype blank = rest.lastIndexOf(u' ', columns);
                const qsizetype cut = blank > 0 ? blank : columns;
                lines.append(rest.left(cut));
                rest.remove(0, blank > 0 ? cut + 1 : cut);
            }
            lines.append(rest);
        }
        return lines;
    }

    [[nodiscard]] QString rule(const QString& symbols, int columns)
    {
        return symbols.isEmpty() ? QString() : symbols.repeated(columns / symbols.size() + 1).left(columns);
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
            lines.append(aligned(code, u"center", columns));
        }
        reader.skipCurrentElement();
    }

} // namespace

QStringList layOut(const QString& printForm, int columns)
{
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
    return !isPrintForm || reader.hasError() ? printForm.split(u'\n') : lines;
}

} // namespace till
