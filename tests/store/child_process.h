#pragma once

#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QStringList>

/// One run of the child program. Whatever is left running is killed. [cheque-thread]
class ChildProcess {
public:
    explicit ChildProcess(const QStringList& arguments);
    ~ChildProcess();

    /// Waits until the child has told so many numbers.
    void waitFor(int count);
    /// Kills the child as a loss of power would. The test fails when it had ended by itself.
    void kill();
    /// Waits until it has ended by itself; the test fails when it has failed.
    void waitForEnd();
    /// The numbers told. [after `kill` or `waitForEnd`]
    [[nodiscard]] QList<int> told() const;
    [[nodiscard]] QByteArray output() const;

private:
    Q_DISABLE_COPY_MOVE(ChildProcess)

    QProcess process;
    QByteArray written;
};

/// Runs the child to its end and gives the facts that it reports.
[[nodiscard]] QJsonObject factsOf(const QStringList& arguments);
