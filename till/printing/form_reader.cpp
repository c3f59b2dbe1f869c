#include "till/printing/form_reader.h"

#include "till/printing/ean13.h"
#include "till/printing/text_rows.h"

#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>

namespace till {

namespace {

    const QString textTag = QStringLiteral("text");
    const QString printerTag = QStringLiteral("printer");
    const QString breakTag = QStringLiteral("br");

    class FormReader {
    public:
        explicit FormReader(const QString& text)
            : reader(text)
        {
        }

        [[nodiscard]] Slip read()
        {
            QString root;
            if (reader.readNextStartElement()) {
                root = reader.qualifiedName().toString();
                if (root == u"report") {
                    readReport();
                }
            }
            while (!reader.atEnd()) {
                reader.readNext(); // text behind the form would be lost in silence
            }
            return judged(root);
        }

    private:
        [[nodiscard]] Slip judged(const QString& root)
        {
            Slip other;
            if (reader.hasError()) {
                other.findings.append({ reader.lineNumber(),
                                        QStringLiteral("this is no print form: %1; it is printed as it stands")
                                            .arg(withoutControls(reader.errorString())) });
                return other;
            }
            if (root == u"report") {
                slip.kind = SlipKind::printForm;
                return slip;
            }
            if (root == u"doc" || root == u"docs") {
                other.kind = SlipKind::serviceForm;
                return other;
            }
            other.findings.append({ 1,
                                    QStringLiteral("this is no print form: its root is %1 instead of \"report\"; it is "
                                                   "printed as it stands")
                                        .arg(quoted(root)) });
            return other;
        }

        void note(const QString& finding)
        {
            slip.findings.append({ line, finding });
        }

        void readReport()
        {
            begin(QStringLiteral("report"), { u"name", u"type", u"cached", u"title" });
            while (nextChild()) {
                const QString tag = reader.qualifiedName().toString();
                if (tag == textTag) {
                    readText();
                } else if (tag == printerTag) {
                    readPrinter();
                } else if (tag == breakTag) {
                    begin(QStringLiteral("br"), {});
                    slip.blocks.append(SlipBreak { line });
                    skipContent(breakTag);
                } else {
                    line = reader.lineNumber();
                    note(QStringLiteral("the element %1 is unknown; it is not printed, with all that it holds")
                             .arg(quoted(tag)));
                    reader.skipCurrentElement();
                }
            }
        }

        /// The next element at this level. Text on the way to it is told.
        [[nodiscard]] bool nextChild()
        {
            while (!reader.atEnd()) {
                switch (reader.readNext()) {
                case QXmlStreamReader::StartElement:
                    return true;
                case QXmlStreamReader::EndElement:
                    return false;
                case QXmlStreamReader::Characters:
                    if (!reader.isWhitespace()) {
                        line = reader.lineNumber();
                        note(QStringLiteral("text between the elements is not printed: %1")
                                 .arg(quoted(reader.text().trimmed().toString())));
                    }
                    break;
                default:
                    break;
                }
            }
            return false;
        }

        /// Takes the attributes of the element; those that it does not have are told.
        void begin(const QString& element, const QList<QStringView>& known)
        {
            line = reader.lineNumber();
            attributes = reader.attributes();
            for (const QXmlStreamAttribute& attribute : std::as_const(attributes)) {
                if (!known.contains(attribute.qualifiedName())) {
                    note(QStringLiteral("the attribute %1 of \"%2\" is unknown")
                             .arg(quoted(attribute.qualifiedName().toString()), element));
                }
            }
        }

        [[nodiscard]] QString attribute(const char* name) const
        {
            return attributes.value(QLatin1String(name)).toString();
        }

        void noteValue(const char* name, const QString& element, const char* instead)
        {
            note(QStringLiteral("the value %1 of the attribute \"%2\" of \"%3\" is unknown; %4")
                     .arg(quoted(attribute(name)), QLatin1String(name), element, QLatin1String(instead)));
        }

        void readText()
        {
            begin(textTag, { u"align", u"maxwidth", u"fillsymbol" });
            const QString text = reader.readElementText();
            if (attributes.hasAttribute(QStringLiteral("maxwidth")) && attribute("maxwidth") != u"all") {
                noteValue("maxwidth", textTag, "the whole width is used");
            }
            const SlipAlign align = readAlign();
            if (!attributes.hasAttribute(QStringLiteral("fillsymbol"))) {
                slip.blocks.append(SlipText { line, text, align, size });
                return;
            }
            const QString symbols = attribute("fillsymbol");
            slip.blocks.append(SlipRule { line, symbols, size });
            if (symbols.isEmpty()) {
                note(QStringLiteral("the rule has no symbols; it is an empty line"));
            }
            if (!text.isEmpty()) {
                note(QStringLiteral("the text of a rule is not printed: %1").arg(quoted(text)));
            }
        }

        [[nodiscard]] SlipAlign readAlign()
        {
            const QString align = attribute("align");
            if (align == u"left") {
                return SlipAlign::left;
            }
            if (align == u"center") {
                return SlipAlign::center;
            }
            if (align == u"right") {
                return SlipAlign::right;
            }
            if (attributes.hasAttribute(QStringLiteral("align"))) {
                noteValue("align", textTag, "the text begins at the left");
            }
            return SlipAlign::none;
        }

        void readPrinter()
        {
            const QString op = reader.attributes().value(QStringLiteral("op")).toString();
            if (op == u"setfont") {
                begin(QStringLiteral("printer setfont"), { u"op", u"size" });
                setFont();
            } else if (op == u"resetfont") {
                begin(QStringLiteral("printer resetfont"), { u"op" });
                size = SlipSize::normal;
            } else if (op == u"barcode") {
                readCode();
            } else {
                line = reader.lineNumber();
                note(QStringLiteral("the printer command %1 is unknown; nothing is done").arg(quoted(op)));
            }
            skipContent(printerTag);
        }

        void setFont()
        {
            const QString name = attribute("size");
            size = name == u"smaller" ? SlipSize::smaller : name == u"enlarge" ? SlipSize::enlarge : SlipSize::normal;
            if (size == SlipSize::normal && name != u"normal") {
                noteValue("size", QStringLiteral("printer setfont"), "the normal size is used");
            }
        }

        void readCode()
        {
            const QString type = reader.attributes().value(QStringLiteral("type")).toString();
            if (type == u"EAN13") {
                readEan13();
            } else if (type == u"QR") {
                begin(QStringLiteral("printer barcode QR"), { u"op", u"type", u"barcode" });
                const QString content = attribute("barcode");
                if (content.isEmpty()) {
                    note(QStringLiteral("the QR code is empty; its kind is printed as text"));
                }
                slip.blocks.append(SlipCode { .line = line,
                                              .kind = SlipCodeKind::qr,
                                              .type = type,
                                              .content = content,
                                              .drawable = !content.isEmpty() });
            } else {
                begin(QStringLiteral("printer barcode"),
                      { u"op", u"type", u"showmode", u"barcode", u"width", u"height" });
                note(QStringLiteral("codes of the type %1 are unknown; the code is printed as text").arg(quoted(type)));
                slip.blocks.append(SlipCode { .line = line, .type = type, .content = attribute("barcode") });
            }
        }

        void readEan13()
        {
            const QString element = QStringLiteral("printer barcode EAN13");
            begin(element, { u"op", u"type", u"showmode", u"barcode", u"width", u"height" });
            SlipCode code { .line = line,
                            .kind = SlipCodeKind::ean13,
                            .type = QStringLiteral("EAN13"),
                            .content = attribute("barcode") };
            const QString defect = defectOfEan13(code.content);
            code.drawable = defect.isEmpty();
            if (!code.drawable) {
                note(QStringLiteral("%1 is no EAN-13 code: it %2; it is printed as text")
                         .arg(quoted(code.content), defect));
            }
            code.moduleWidth = numberOf("width", 2, 6, code.moduleWidth);
            code.height = numberOf("height", 1, 255, code.height);
            code.withDigits = attributes.hasAttribute(QStringLiteral("showmode"));
            if (code.withDigits && attribute("showmode") != u"SHOW_DOWN") {
                noteValue("showmode", element, "the digits stand below the code");
            }
            slip.blocks.append(code);
        }

        /// The number that the attribute holds, in the bounds that a printer knows.
        [[nodiscard]] int numberOf(const char* name, int least, int most, int otherwise)
        {
            if (!attributes.hasAttribute(QLatin1String(name))) {
                return otherwise;
            }
            bool isNumber = false;
            const int number = attribute(name).toInt(&isNumber);
            if (isNumber && number >= least && number <= most) {
                return number;
            }
            note(QStringLiteral("the %1 %2 of the code is no number from %3 to %4; %5 is used")
                     .arg(QLatin1String(name), quoted(attribute(name)), QString::number(least), QString::number(most),
                          QString::number(otherwise)));
            return otherwise;
        }

        /// Elements that are empty in every print form.
        void skipContent(const QString& element)
        {
            bool isTold = false;
            for (int depth = 1; depth > 0 && !reader.atEnd();) {
                const QXmlStreamReader::TokenType token = reader.readNext();
                depth += token == QXmlStreamReader::StartElement ? 1 : token == QXmlStreamReader::EndElement ? -1 : 0;
                const bool isContent = token == QXmlStreamReader::StartElement
                    || (token == QXmlStreamReader::Characters && !reader.isWhitespace());
                if (isContent && !isTold) {
                    isTold = true;
                    note(QStringLiteral("what stands in \"%1\" is not printed").arg(element));
                }
            }
        }

        QXmlStreamReader reader;
        QXmlStreamAttributes attributes;
        SlipSize size = SlipSize::normal;
        qint64 line = 0; // of the element that is being read
        Slip slip;
    };

} // namespace

Slip readForm(const QString& text)
{
    return FormReader(text).read();
}

} // namespace till
