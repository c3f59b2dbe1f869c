#pragma once

#include "host/export.h"

#include <QString>

namespace till {

/// Makes `Config` answer from the file, read here and now; what was configured before is forgotten. `[Vantiro]`
/// `hosts=…` is the key `Vantiro:hosts`. An empty path, a file that is missing or cannot be read leaves nothing
/// configured; the last two are logged. The file is only read, and by nobody else through `QSettings`, which keeps the
/// contents of a file by its path whatever the format. [any-thread] [blocks: the disk]
///
/// The file is UTF-8. A value is the text behind the first equals sign as it stands, without the blanks around it; one
/// pair of double quotes around it is taken off, and the blanks inside stay. Nothing else has a meaning: server lists
/// hold commas, passwords hold anything. Lines that begin with `#` or `;` are remarks. Of a name that comes twice, the
/// last one counts. A line that is none of these is logged by its number and passed over; below a damaged section head,
/// everything is, up to the next head.
///
/// Booleans are true, 1, yes, on and false, 0, no, off, in any case of letters; integers are decimal. A value that is
/// neither is logged by its key when it is asked for, and the default holds.
VANTIRO_HOST_API void setConfigFile(const QString& path);

} // namespace till
