#include "tests/support/xml_compare.h"

#include <QList>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

/// Where the reader is, and what it has found.
class Reading {
public:
    void takeStart(const QXmlStreamReader& reader)
    {
        takeText();
        const int ordinal = ++elementsBefore.last();
        elementsBefore.append(0);
        path += QStringLiteral("/%1:%2").arg(QString::number(ordinal), reader.qualifiedName().toString());
        lines.append(path);
        QStringList attributes;
        for (const QXmlStreamAttribute& attribute : reader.attributes()) {
            attributes.append(
                QStringLiteral("%1 @%2 = %3")
                    .arg(path, attribute.qualifiedName().toString(), visible(attribute.value().toString())));
        }
        std::sort(attributes.begin(), attributes.end());
        lines.append(attributes);
    }

    void takeEnd()
    {
        takeText();
        path.truncate(path.lastIndexOf(QLatin1Char('/')));
        elementsBefore.removeLast();
    }

    void takeCharacters(const QString& characters)
    {
        text += characters;
    }

    void takeLine(const QString& line)
    {
        takeText();
        lines.append(path + QLatin1Char(' ') + visible(line));
    }

    QStringList lines;

private:
    void takeText()
    {
        if (!text.trimmed().isEmpty()) {
            lines.append(QStringLiteral("%1 \"%2\"").arg(path, visible(text)));
        }
        text.clear();
    }

    static QString visible(QString value)
    {
        value.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
        value.replace(QLatin1Char('\n'), QLatin1String("\\n"));
        value.replace(QLatin1Char('\r'), QLatin1String("\\r"));
        value.replace(QLatin1Char('\t'), QLatin1String("\\t"));
        return value;
    }

    QString path;
    QString text;
    QList<int> elementsBefore { 0 }; // among the siblings, by depth
};

QString lineAt(const QStringList& lines, qsizetype index)
{
    return index < lines.size() ? lines.at(index) : QStringLiteral("(nothing more)");
}

}

CanonicalXml canonicalXml(const QString& text)
{
    QXmlStreamReader reader(text);
    // The prefixes of a fragment may be declared around it.
    reader.setNamespaceProcessing(false);
    Reading reading;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartDocument:
            if (!reader.documentVersion().isEmpty()) {
                reading.takeLine(QStringLiteral("declaration %1 %2")
                                     .arg(reader.documentVersion().toString(), reader.documentEncoding().toString()));
            }
            break;
        case QXmlStreamReader::StartElement:
            reading.takeStart(reader);
            break;
        case QXmlStreamReader::EndElement:
            reading.takeEnd();
            break;
        case QXmlStreamReader::Characters:
            reading.takeCharacters(reader.text().toString());
            break;
        case QXmlStreamReader::Comment:
            reading.takeLine(QStringLiteral("comment ") + reader.text().toString());
            break;
        case QXmlStreamReader::DTD:
            reading.takeLine(QStringLiteral("document type ") + reader.text().toString());
            break;
        case QXmlStreamReader::EntityReference:
            reading.takeLine(QStringLiteral("entity ") + reader.name().toString());
            break;
        case QXmlStreamReader::ProcessingInstruction:
            reading.takeLine(QStringLiteral("instruction %1 %2")
                                 .arg(reader.processingInstructionTarget().toString(),
                                      reader.processingInstructionData().toString()));
            break;
        case QXmlStreamReader::NoToken:
        case QXmlStreamReader::Invalid:
        case QXmlStreamReader::EndDocument:
            break;
        }
    }
    if (reader.hasError()) {
        return { {}, QStringLiteral("line %1: %2").arg(QString::number(reader.lineNumber()), reader.errorString()) };
    }
    return { reading.lines, {} };
}

testing::AssertionResult sameXml(const QString& actual, const QString& expected)
{
    const CanonicalXml wanted = canonicalXml(expected);
    if (!wanted.error.isEmpty()) {
        return testing::AssertionFailure() << "the expected text is not XML: " << wanted.error.toStdString();
    }
    const CanonicalXml given = canonicalXml(actual);
    if (!given.error.isEmpty()) {
        return testing::AssertionFailure() << "the text is not XML: " << given.error.toStdString();
    }
    const qsizetype count = std::max(wanted.lines.size(), given.lines.size());
    for (qsizetype i = 0; i < count; ++i) {
        const QString wantedLine = lineAt(wanted.lines, i);
        const QString givenLine = lineAt(given.lines, i);
        if (wantedLine != givenLine) {
            return testing::AssertionFailure() << "the first difference:\n  expected " << wantedLine.toStdString()
                                               << "\n  but got  " << givenLine.toStdString();
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult sameXml(const QDomDocument& actual, const QString& expected)
{
    return sameXml(actual.toString(), expected);
}
