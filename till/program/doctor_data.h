#pragma once

#include "till/program/doctor_finding.h"

#include <QString>

namespace till::diagnosis {

/// The folder of the database and the log: who can look into it, whether all of it works, what waits in it. A folder or
/// a database that is not there yet is not made. One that others can look into is closed to them, as the till does when
/// it opens it. No store is open afterwards. [cheque-thread] [blocks: the disk]
[[nodiscard]] Findings checkDataFolder(const QString& folder);

/// Judges the space that is left, in bytes. [any-thread]
[[nodiscard]] Finding checkFreeSpace(const QString& folder, qint64 bytes);

} // namespace till::diagnosis
