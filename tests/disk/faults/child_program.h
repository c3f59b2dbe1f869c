#pragma once

#include "tests/disk/faults/child_run.h"

#include <QProcess>

/// The program whose lives fail. It lives each job in a process of its own, which may die.
class ChildProgram {
public:
    ChildProgram();
    ~ChildProgram();

    /// Lives the job to its end. The test fails when that is not the end that the job has in mind, also when the end
    /// does not come. [blocks: for two minutes at the longest]
    [[nodiscard]] ChildRun run(const QString& folder, const QStringList& job);

private:
    Q_DISABLE_COPY_MOVE(ChildProgram)

    [[nodiscard]] QByteArray nextLine();

    QProcess process;
};
