#pragma once

#include "tests/disk/faults/failing_disk.h"
#include "tests/disk/faults/till_day.h"

#include <QString>
#include <QStringList>

/// What a till could get wrong, so that the tests are seen to notice.
enum class Defect {
    none,
    swallows, // a failure of the store: the cashier is told that the step is done
    saysItInEnglish, // that the store has failed
    hasNoJournal, // what is written in part stays
    repeatsTwice, // the step that had failed
    hasNoBallast,
};

/// A till at its work on a disk. It tells of each step how it has ended, and what the cashier has been shown.
/// [cheque-thread]
class TillLife {
public:
    /// Opens the till's store in the folder. Throws what the till throws.
    TillLife(const QString& pluginFile, const QString& folder, FailingDisk& disk, Defect defect);

    /// Works the story; while the fault of the disk lasts, too. A failed step ends the process, as a till that is
    /// switched off, or is repeated until it is done.
    void work(const QString& story, bool repeats);
    void workUntil(const QString& story, int steps);
    /// From one step on the disk is full. Then one more cheque is opened, and again when there is room.
    void workOnFullDisk(const QString& story, int fullFrom);
    /// From one step on the disk takes nothing until a step has been repeated in vain.
    void workOnClosedDisk(const QString& story, int closedFrom);
    /// What a till does after its start, and what the cashier then does to end what stands open.
    void goOn();

private:
    enum class End {
        done,
        refused, // by the till
        storeFailed,
    };

    End attempt(const QString& step);
    void repeat(const QString& step);

    FailingDisk& disk;
    Defect defect;
    QString folder;
    TillDay day;
};
