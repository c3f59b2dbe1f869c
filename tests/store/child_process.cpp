#include "tests/store/child_process.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <csignal>

namespace {

constexpr int patience = 30'000; // milliseconds

}

ChildProcess::ChildProcess(const QStringList& arguments)
{
    process.start(QStringLiteral(VANTIRO_STORE_CHILD), arguments);
    EXPECT_TRUE(process.waitForStarted(patience));
}

ChildProcess::~ChildProcess()
{
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(patience);
    }
}

void ChildProcess::waitFor(int count)
{
    while (process.peek(process.bytesAvailable()).count('\n') < count) {
        ASSERT_TRUE(process.waitForReadyRead(patience)) << process.readAllStandardError().toStdString();
    }
}

void ChildProcess::kill()
{
    process.kill();
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit) << process.readAllStandardError().toStdString();
    EXPECT_EQ(process.exitCode(), SIGKILL);
    written = process.readAllStandardOutput();
}

void ChildProcess::waitForEnd()
{
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    written = process.readAllStandardOutput();
}

QList<int> ChildProcess::told() const
{
    QList<int> numbers;
    for (const QByteArray& line : written.split('\n')) {
        if (!line.isEmpty()) {
            numbers.append(line.toInt());
        }
    }
    return numbers;
}

QByteArray ChildProcess::output() const
{
    return written;
}

QJsonObject factsOf(const QStringList& arguments)
{
    ChildProcess child(arguments);
    child.waitForEnd();
    return QJsonDocument::fromJson(child.output()).object();
}
