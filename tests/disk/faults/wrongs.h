#pragma once

#include "tests/disk/faults/child_run.h"
#include "tests/disk/faults/disk_books.h"

#include <string>

// What is wrong after a disk has failed, in a few words each; empty when nothing is.

/// Every step that failed was repeated until it was done: in the end all is as on a disk that has not failed.
[[nodiscard]] std::string wrongAfterRepeating(const ChildRun& run, const DiskBooks& books, const DiskBooks& sound);

/// The till was switched off at the step that failed. What the cashier was told of as done is on disk; the failed step
/// is there wholly or not at all. `shapes` are those of the books after so many steps on a disk that does not fail.
[[nodiscard]] std::string wrongAfterSwitchingOff(const ChildRun& run, const DiskBooks& books,
                                                 const QStringList& shapes);

/// The next start has gone on: nothing is open, and the service knows of all.
[[nodiscard]] std::string wrongAfterGoingOn(const ChildRun& run, const ChildRun& next, const DiskBooks& books);

/// The disk was full from one step of the story on. The story has ended as on any other; the cheque after it could not
/// be opened, as long as there was no room, and then could.
[[nodiscard]] std::string wrongAfterFullDisk(const ChildRun& run, const DiskBooks& books, const DiskBooks& sound);
