#include "bonus/vantiro_bonus_interface.h"

namespace {

const QString smaller = QStringLiteral("smaller");
const QString normal = QStringLiteral("normal");
const QString enlarge = QStringLiteral("enlarge");

const QString textTag = QStringLiteral("text");
const QString printerTag = QStringLiteral("printer");
const QString breakTag = QStringLiteral("br");

/// Appends an element with the attributes, in their order.
QDomElement append(QDomDocument& document, QDomNode& parent, const QString& tag,
                   const QList<std::pair<QString, QString>>& attributes = {})
{
    QDomElement element = document.createElement(tag);
    for (const auto& [name, value] : attributes) {
        element.setAttribute(name, value);
    }
    parent.appendChild(element);
    return element;
}

/// The size that a tag of the server's slip names; empty for any other tag.
[[nodiscard]] QString sizeOf(const QString& tag)
{
    if (tag == u"f0") {
        return smaller;
    }
    if (tag == u"f1") {
        return normal;
    }
    if (tag == u"f2") {
        return enlarge;
    }
    return QString();
}

void appendBarcode(QDomDocument& document, QDomNode& report, const QString& code)
{
    append(document, report, printerTag,
           { { QStringLiteral("op"), QStringLiteral("barcode") },
             { QStringLiteral("type"), QStringLiteral("EAN13") },
             { QStringLiteral("showmode"), QStringLiteral("SHOW_DOWN") },
             { QStringLiteral("barcode"), code },
             { QStringLiteral("width"), QStringLiteral("2") },
             { QStringLiteral("height"), QStringLiteral("255") } });
    append(document, report, breakTag);
}

void appendQrCode(QDomDocument& document, QDomNode& report, const QString& code)
{
    append(document, report, printerTag,
           { { QStringLiteral("op"), QStringLiteral("barcode") },
             { QStringLiteral("type"), QStringLiteral("QR") },
             { QStringLiteral("barcode"), code } });
    append(document, report, breakTag);
}

} // namespace

void VantiroInterface::processXmlTextNode(QDomDocument& document, QDomNode& parent, const QString& text,
                                          const QString& align, const QString& size) const
{
    append(document, parent, printerTag,
           { { QStringLiteral("op"), QStringLiteral("setfont") }, { QStringLiteral("size"), size } });
    QDomElement line = append(
        document, parent, textTag,
        { { QStringLiteral("align"), align }, { QStringLiteral("maxwidth"), QStringLiteral("all") } });
    line.appendChild(document.createTextNode(text));
    append(document, parent, printerTag, { { QStringLiteral("op"), QStringLiteral("resetfont") } });
}

void VantiroInterface::processXmlAlignNode(QDomDocument& document, QDomNode& parent, const QDomNode& block) const
{
    const QString align = block.toElement().tagName();
    for (QDomNode child = block.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.isText()) {
            processXmlTextNode(document, parent, child.toText().data(), align, smaller);
        } else if (const QString size = sizeOf(child.toElement().tagName()); !size.isEmpty()) {
            processXmlTextNode(document, parent, child.toElement().text(), align, size);
        }
    }
}

QDomDocument VantiroBonusInterface::transformReport(const QDomNode& source) const
{
    QDomDocument result;
    const QDomElement root = source.firstChildElement();
    if (root.tagName() != u"doc") {
        logger->error("Ошибка преобразования отчёта от Vantiro");
        return result;
    }

    QDomElement report = result.createElement(QStringLiteral("report"));
    report.setAttribute(QStringLiteral("name"), QStringLiteral("custom"));
    report.setAttribute(QStringLiteral("type"), QStringLiteral("document"));
    report.setAttribute(QStringLiteral("cached"), QStringLiteral("false"));
    report.setAttribute(QStringLiteral("title"), QStringLiteral("vantiro check"));

    for (QDomElement child = root.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        const QString tag = child.tagName();
        if (tag == u"left" || tag == u"right" || tag == u"center") {
            processXmlAlignNode(result, report, child);
        } else if (tag == u"pair") {
            const QString text
                = child.attribute(QStringLiteral("left")) + u' ' + child.attribute(QStringLiteral("right"));
            processXmlTextNode(result, report, text, QStringLiteral("center"), smaller);
        } else if (tag == u"line") {
            append(result, report, textTag,
                   { { QStringLiteral("fillsymbol"),
                       child.attribute(QStringLiteral("symbols"), QStringLiteral(" ")) },
                     { QStringLiteral("maxwidth"), QStringLiteral("all") } });
        } else if (tag == breakTag) {
            append(result, report, breakTag);
        } else if (tag == u"barcode") {
            appendBarcode(result, report, child.text());
        } else if (tag == u"qrcode") {
            appendQrCode(result, report, child.text());
        } else if (const QString size = sizeOf(tag); !size.isEmpty()) {
            processXmlTextNode(result, report, child.text(), QStringLiteral("left"), size);
        } else if (tag == u"noformat") {
            append(result, report, textTag).appendChild(result.createTextNode(child.text()));
        }
    }
    result.appendChild(report);
    return result;
}

QList<QDomDocument> VantiroBonusInterface::transformReports(const QDomDocument& source) const
{
    QList<QDomDocument> reports;
    const QDomElement root = source.firstChildElement();
    if (root.tagName() != u"docs") {
        logger->error("Ошибка преобразования отчёта от Vantiro");
        return reports;
    }
    for (QDomNode child = root.firstChild(); !child.isNull(); child = child.nextSibling()) {
        reports.append(transformReport(child)); // looks inside: each child wraps a `doc`
    }
    return reports;
}
