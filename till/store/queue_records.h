#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace till::store {

/// Where a queued message stands. All but the pending ones are left alone until a person releases them.
enum class RecordState {
    pending,
    held, // by a person
    refused, // by the server, or never answered as it should be
    damaged, // cannot be read
};

/// A queued message. A plain value; it holds credentials.
struct QueueRecord {
    qint64 id = 0; // rising in the order of queuing, never used twice
    QString queue;
    QByteArray message; // JSON text
    RecordState state = RecordState::pending;
    QString reason; // why it is not pending, or why it was not delivered the last time
    int attempts = 0; // that a server replied to, but not as it should
    QDateTime queuedAt;
    QDateTime notBefore; // invalid: at once
};

/// All messages in the order of queuing. All of these throw `BasicException` when the store fails; what they have
/// returned for is on disk. [any-thread] [blocks: the disk]
[[nodiscard]] VANTIRO_HOST_API QList<QueueRecord> queueRecords();
[[nodiscard]] VANTIRO_HOST_API std::optional<QueueRecord> queueRecord(qint64 id);
/// The oldest pending message, none when none is pending.
[[nodiscard]] VANTIRO_HOST_API std::optional<QueueRecord> firstPending();

/// It has been answered: it leaves the queue, and its bytes the file.
VANTIRO_HOST_API void removeDelivered(qint64 id);
/// It stays where it is and in the state that it is in, also one that a person has given it meanwhile. A pending one is
/// to be tried again at that time.
VANTIRO_HOST_API void postpone(qint64 id, int attempts, const QString& reason, const QDateTime& notBefore);
/// It steps aside, so that it blocks nobody.
VANTIRO_HOST_API void setAside(qint64 id, RecordState state, int attempts, const QString& reason);
/// It takes its place in the order again, as if it had never been tried.
VANTIRO_HOST_API void release(qint64 id);

} // namespace till::store
