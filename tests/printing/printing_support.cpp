#include "tests/printing/printing_support.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace {

Ended finished(QProcess& process)
{
    Ended ended;
    if (!process.waitForFinished(60'000)) {
        ADD_FAILURE() << process.program().toStdString() << ": " << process.errorString().toStdString();
        process.kill();
        process.waitForFinished();
        return ended;
    }
    ended.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    ended.output = process.readAllStandardOutput();
    ended.errors = process.readAllStandardError();
    return ended;
}

} // namespace

Ended PrintingTill::slip(const QString& file, const QString& format, int columns, const QString& output) const
{
    QStringList arguments { QStringLiteral("gui"), QStringLiteral("slip"), file, format, QString::number(columns) };
    if (!output.isEmpty()) {
        arguments.append(output);
    }
    return run(arguments);
}

Ended PrintingTill::run(const QStringList& arguments, const QStringList& environment, const QByteArray& input) const
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.path()); // else Qt complains of its absence
    for (const QString& variable : environment) {
        variables.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    }
    QProcess process;
    process.setProcessEnvironment(variables);
    process.start(QStringLiteral(VANTIRO_PRINTING_PROBE), arguments);
    process.write(input);
    process.closeWriteChannel();
    return finished(process);
}

QString PrintingTill::path(const QString& name) const
{
    return folder.filePath(name);
}

QString PrintingTill::write(const QString& name, const QByteArray& content) const
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size())
        << file.errorString().toStdString();
    return file.fileName();
}

QByteArray PrintingTill::contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString() << ": " << file.errorString().toStdString();
    return file.readAll();
}

QString sampleForm(const QString& name)
{
    return QStringLiteral(VANTIRO_PRINTING_FOLDER "/forms/") + name;
}

QString reportOf(const QString& content)
{
    return QStringLiteral(R"(<report name="custom" type="document" cached="false" title="vantiro check">)") + content
        + QStringLiteral("</report>");
}

std::string told(const QList<till::SlipFinding>& findings)
{
    QString result;
    for (const till::SlipFinding& finding : findings) {
        result += QStringLiteral("%1: %2\n").arg(QString::number(finding.line), finding.text);
    }
    return result.toStdString();
}

std::string codesIn(const QString& picture)
{
    QProcess process;
    process.start(QStringLiteral(VANTIRO_ZBARIMG), { QStringLiteral("--quiet"), QStringLiteral("--nodbus"), picture });
    const Ended ended = finished(process);
    EXPECT_EQ(ended.status, 0) << ended.errors.toStdString();
    QStringList codes = QString::fromUtf8(ended.output).split(u'\n', Qt::SkipEmptyParts);
    codes.sort();
    return codes.join(u'\n').toStdString();
}
