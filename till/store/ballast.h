#pragma once

#include <QString>

/// A file of some space that is held back beside the database. On a full disk it is given up, so that what was begun
/// can still be ended: a cheque is paid and closed, its message queued, a delivered one removed. While it is missing,
/// no new document is begun; it is made again as soon as there is room.
///
/// None of these throws. Any process of the till may do any of it at any time. [any-thread] [blocks: the disk]
namespace till::store {

/// Of the largest cheques: their closing, the message and the journals of both.
inline constexpr qint64 ballastSize = 2 * 1024 * 1024; // bytes

/// Makes the ballast of the folder where it is missing. False when the disk has no room for it, or none beside it. True
/// when it stands, and when something else is in its way: whoever writes then, learns what.
[[nodiscard]] bool keepBallast(const QString& folder);

/// Gives its space back to the disk.
void giveUpBallast(const QString& folder);

} // namespace till::store
