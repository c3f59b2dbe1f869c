#include "tests/program/program_run.h"

#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

ProgramRun runProgram(const QString& program, const QStringList& arguments, const QByteArray& input)
{
    constexpr int limit = 60'000; // milliseconds
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    ProgramRun run;
    if (!process.waitForFinished(limit)) {
        ADD_FAILURE() << program.toStdString() << " does not end";
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.output = process.readAllStandardOutput().toStdString();
    run.errors = process.readAllStandardError().toStdString();
    return run;
}

ProgramRun TillProgram::run(const QStringList& arguments, const QByteArray& input) const
{
    return runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), arguments + QStringList { "--data", path("data") }, input);
}

ProgramRun TillProgram::play(const QByteArray& script, const QStringList& options) const
{
    return run(QStringList { "play", write("script.till", script) } + options);
}

QString TillProgram::path(const QString& name) const
{
    return folder.filePath(name);
}

QString TillProgram::write(const QString& name, const QByteArray& content) const
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(content), content.size());
    return file.fileName();
}
