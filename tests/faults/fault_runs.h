#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <string>

namespace faults {

/// Operations at tills that have the same fault, done one after the other by one process.
struct Batch {
    QString fault;
    QString arrangement; // of the servers: One, Two, Both
    int timeout = 1; // seconds
    QStringList operations;
};

/// What the process has told of one operation.
struct Told {
    QString operation;
    std::string outcome; // as `expectedOutcome` has it
    int wait = 0; // milliseconds
};

/// How a process has ended, and what it has told.
struct RunOfABatch {
    bool well = false;
    std::string errors; // of standard error
    QList<Told> told;
};

/// Runs all of them, so many processes at a time. `planted` is the defect of the client, empty for none.
/// [blocks: until the last one has ended]
[[nodiscard]] QList<RunOfABatch> runAll(const QList<Batch>& batches, int processesAtATime, const QString& planted = {});

}
