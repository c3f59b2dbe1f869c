#pragma once

#include "host/export.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

/// The till's one database: queued messages and documents. What a call has returned for is on disk, whatever happens to
/// the process or the power afterwards.
///
/// A rollback journal with full synchronisation, since that alone lost nothing when power was cut at every point:
/// write-ahead logging with its usual synchronisation loses what was acknowledged, and on a full disk cannot even mark
/// a message as delivered. Deleted rows are overwritten and the files are closed to others: messages hold credentials.
namespace till::store {

/// Opens the database in the folder, and makes both where they are missing (0700 and 0600). Throws `BasicException`
/// when that cannot be done, and when the database was written by a newer till, whose bytes stay as they are; no store
/// is open then. Opened again with another folder, it moves there. [cheque-thread] [blocks: for the disk]
VANTIRO_HOST_API void open(const QString& folder);

/// Closes the calling thread's connection and forgets the folder. [cheque-thread]
VANTIRO_HOST_API void close();

/// Tells each opening of a store from all others of the process. [any-thread]
[[nodiscard]] VANTIRO_HOST_API quint64 opening();

/// The connection of the calling thread, made at its first use. Throws `BasicException` when no store is open. A thread
/// that is about to end calls `releaseConnection`. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QSqlDatabase connection();
VANTIRO_HOST_API void releaseConnection();

/// A prepared statement; parameters are always bound. Throw `BasicException` with the database's reason.
[[nodiscard]] VANTIRO_HOST_API QSqlQuery prepare(const QString& statement);
/// The same statement kept for the connection of the calling thread: prepared once, and bound anew each time. Whoever
/// is done with it calls its `finish`. Valid until the connection is released or the store is opened or closed.
[[nodiscard]] VANTIRO_HOST_API QSqlQuery& prepareOnce(const QString& statement);
VANTIRO_HOST_API void execute(QSqlQuery& query);
/// Moves to the next row of an executed query; false behind the last one. A row that cannot be read is no end: throws
/// `BasicException`.
[[nodiscard]] VANTIRO_HOST_API bool nextRow(QSqlQuery& query);
/// The same for what ends something that was begun: on a full disk it gives up the ballast and goes on.
VANTIRO_HOST_API void executeEnding(QSqlQuery& query);

/// Something new is about to be begun: throws `BasicException` while the disk is so full that it could not be ended.
VANTIRO_HOST_API void requireRoom();

} // namespace till::store
