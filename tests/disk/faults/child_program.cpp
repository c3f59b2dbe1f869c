#include "tests/disk/faults/child_program.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

ChildProgram::ChildProgram()
{
    process.start(QStringLiteral(VANTIRO_FAULT_CHILD), { QStringLiteral(VANTIRO_PLUGIN_FILE) });
}

ChildProgram::~ChildProgram()
{
    process.closeWriteChannel();
    static_cast<void>(process.waitForFinished());
}

/// Empty when the program is gone, or says nothing for longer than any life lasts.
QByteArray ChildProgram::nextLine()
{
    constexpr int patience = 120'000; // milliseconds
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(patience)) {
            return {};
        }
    }
    return process.readLine();
}

ChildRun ChildProgram::run(const QString& folder, const QStringList& job)
{
    process.write((QStringList { folder } + job).join(u'\t').toUtf8() + '\n');
    ChildRun run;
    for (QByteArray line = nextLine(); !line.isEmpty(); line = nextLine()) {
        const QJsonObject fact = QJsonDocument::fromJson(line).object();
        if (fact.contains(u"exit"_s)) {
            const QByteArray said = process.readAllStandardError(); // the log, which nobody misses when all is well
            EXPECT_EQ(fact[u"exit"_s].toInt(-1), 0) << job.join(u' ').toStdString() << ": " << said.toStdString();
            return run;
        }
        run.hear(fact);
    }
    ADD_FAILURE() << "the program is gone: " << job.join(u' ').toStdString();
    return run;
}
