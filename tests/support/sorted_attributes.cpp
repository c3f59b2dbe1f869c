#include "tests/support/sorted_attributes.h"

#include <QRegularExpression>
#include <QStringList>

QString sortedAttributes(const QString& xml)
{
    static const QRegularExpression startTag(QStringLiteral(R"(<([\w:.-]+)((?:\s+[\w:.-]+="[^"<]*")+)(\s*/?>))"));
    static const QRegularExpression attribute(QStringLiteral(R"([\w:.-]+="[^"<]*")"));

    QString result;
    qsizetype done = 0;
    for (auto tags = startTag.globalMatch(xml); tags.hasNext();) {
        const QRegularExpressionMatch tag = tags.next();
        QStringList attributes;
        for (auto found = attribute.globalMatch(tag.captured(2)); found.hasNext();) {
            attributes.append(found.next().captured());
        }
        attributes.sort();
        result += xml.mid(done, tag.capturedStart() - done);
        result += u'<' + tag.captured(1) + u' ' + attributes.join(u' ') + tag.captured(3);
        done = tag.capturedEnd();
    }
    return result + xml.mid(done);
}

QString sortedAttributes(const QByteArray& xml)
{
    return sortedAttributes(QString::fromUtf8(xml));
}
