#include "bonus/vantiro_bonus_interface.h"

#include "client/outside_xml.h"
#include "client/xml_writer.h"

using namespace vantiro;

namespace {

/// A slip that is not XML prints as the text that came.
[[nodiscard]] QDomDocument plainSlip(const QString& text)
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("doc"));
    QDomElement plain = document.createElement(QStringLiteral("noformat"));
    plain.appendChild(document.createTextNode(text));
    root.appendChild(plain);
    document.appendChild(root);
    return document;
}

} // namespace

void VantiroBonusInterface::fillReport(const QDomDocument& answer)
{
    const QDomNodeList results = answer.elementsByTagName(QStringLiteral("AccrualResult"));
    if (results.length() != 1) {
        return;
    }
    const QString text = results.at(0).toElement().text();
    if (text.isEmpty()) {
        return;
    }
    const XmlReading slip = readOutsideXml(removeEscapeFromXml(text));
    lastReport = slip.ok ? slip.document : plainSlip(text);
    logger->info("lastReport = %1", writeXml(lastReport));
}

QString VantiroBonusInterface::getReport()
{
    if (lastReport.isNull()) {
        return QString();
    }
    const QDomDocument report = transformReport(lastReport);
    lastReport.clear();
    return writeXml(report);
}

QList<QString> VantiroBonusInterface::getReports()
{
    if (lastReport.isNull()) {
        return {};
    }
    const QList<QDomDocument> reports = transformReports(lastReport);
    lastReport.clear();
    QList<QString> texts;
    for (const QDomDocument& report : reports) {
        texts.append(writeXml(report));
    }
    return texts;
}
