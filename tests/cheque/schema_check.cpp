#include "tests/cheque/schema_check.h"

#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60000; // milliseconds

SchemaVerdict verdictOf(const QProcess& process)
{
    if (process.exitStatus() != QProcess::NormalExit) {
        return SchemaVerdict::unknown;
    }
    switch (process.exitCode()) {
    case 0:
        return SchemaVerdict::valid;
    case 1:
        return SchemaVerdict::malformed;
    case 3:
        return SchemaVerdict::invalid;
    default:
        return SchemaVerdict::unknown;
    }
}

bool write(const QString& path, const QString& text)
{
    QFile file(path);
    const QByteArray bytes = text.toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

}

SchemaReport checkAgainstSchema(const QList<QString>& texts)
{
    const QTemporaryDir folder;
    QStringList arguments { u"--noout"_s, u"--nonet"_s, u"--schema"_s, QStringLiteral(VANTIRO_CHEQUE_SCHEMA) };
    for (const QString& text : texts) {
        const QString path = folder.filePath(u"%1.xml"_s.arg(arguments.size()));
        if (!write(path, text)) {
            return { SchemaVerdict::unknown, "cannot write " + path.toStdString() };
        }
        arguments.append(path);
    }
    QProcess process;
    process.start(u"xmllint"_s, arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(patience)) {
        const std::string reason = process.errorString().toStdString();
        process.kill();
        process.waitForFinished(patience);
        return { SchemaVerdict::unknown, "xmllint: " + reason };
    }
    return { verdictOf(process), process.readAllStandardError().left(2000).toStdString() };
}

testing::AssertionResult areValidCheques(const QList<QString>& texts)
{
    const SchemaReport report = checkAgainstSchema(texts);
    if (report.verdict == SchemaVerdict::valid) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << report.complaint;
}

testing::AssertionResult isValidCheque(const QString& text)
{
    return areValidCheques({ text });
}
