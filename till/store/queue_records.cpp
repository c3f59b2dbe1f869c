#include "till/store/queue_records.h"

#include "till/store/store.h"

#include <QVariant>

#include <array>
#include <utility>

namespace till::store {

namespace {

    constexpr std::array<std::pair<RecordState, const char*>, 4> stateNames { {
        { RecordState::pending, "pending" },
        { RecordState::held, "held" },
        { RecordState::refused, "refused" },
        { RecordState::damaged, "damaged" },
    } };

    [[nodiscard]] QString nameOf(RecordState state)
    {
        for (const auto& [known, name] : stateNames) {
            if (known == state) {
                return QString::fromLatin1(name);
            }
        }
        return QString();
    }

    /// An unknown name is nothing to deliver by, and nothing to lose.
    [[nodiscard]] RecordState stateOf(const QString& text)
    {
        for (const auto& [known, name] : stateNames) {
            if (text == QLatin1String(name)) {
                return known;
            }
        }
        return RecordState::damaged;
    }

    const QString columns
        = QStringLiteral("SELECT id, queue, message, state, reason, attempts, queued_at, not_before FROM queue");

    [[nodiscard]] QList<QueueRecord> read(QSqlQuery& query)
    {
        execute(query);
        QList<QueueRecord> records;
        while (nextRow(query)) {
            QueueRecord record;
            record.id = query.value(0).toLongLong();
            record.queue = query.value(1).toString();
            record.message = query.value(2).toByteArray();
            record.state = stateOf(query.value(3).toString());
            record.reason = query.value(4).toString();
            record.attempts = query.value(5).toInt();
            record.queuedAt = QDateTime::fromString(query.value(6).toString(), Qt::ISODateWithMs);
            record.notBefore = QDateTime::fromString(query.value(7).toString(), Qt::ISODateWithMs);
            records.append(record);
        }
        return records;
    }

    [[nodiscard]] std::optional<QueueRecord> first(const QList<QueueRecord>& records)
    {
        return records.isEmpty() ? std::nullopt : std::optional(records.constFirst());
    }

    /// A null text would be bound as NULL.
    [[nodiscard]] QString bound(const QString& text)
    {
        return text.isNull() ? QStringLiteral("") : text;
    }

    void update(qint64 id, RecordState state, int attempts, const QString& reason)
    {
        QSqlQuery query = prepare(
            QStringLiteral("UPDATE queue SET state = ?, attempts = ?, reason = ?, not_before = '' WHERE id = ?"));
        query.addBindValue(nameOf(state));
        query.addBindValue(attempts);
        query.addBindValue(bound(reason));
        query.addBindValue(id);
        executeEnding(query);
    }

} // namespace

QList<QueueRecord> queueRecords()
{
    QSqlQuery query = prepare(columns + QStringLiteral(" ORDER BY id"));
    return read(query);
}

std::optional<QueueRecord> queueRecord(qint64 id)
{
    QSqlQuery query = prepare(columns + QStringLiteral(" WHERE id = ?"));
    query.addBindValue(id);
    return first(read(query));
}

std::optional<QueueRecord> firstPending()
{
    QSqlQuery query = prepare(columns + QStringLiteral(" WHERE state = ? ORDER BY id LIMIT 1"));
    query.addBindValue(nameOf(RecordState::pending));
    return first(read(query));
}

void removeDelivered(qint64 id)
{
    QSqlQuery query = prepare(QStringLiteral("DELETE FROM queue WHERE id = ?"));
    query.addBindValue(id);
    executeEnding(query);
}

void postpone(qint64 id, int attempts, const QString& reason, const QDateTime& notBefore)
{
    QSqlQuery query = prepare(QStringLiteral("UPDATE queue SET attempts = ?, reason = ?, not_before = ? WHERE id = ?"));
    query.addBindValue(attempts);
    query.addBindValue(bound(reason));
    query.addBindValue(notBefore.isValid() ? notBefore.toUTC().toString(Qt::ISODateWithMs) : QStringLiteral(""));
    query.addBindValue(id);
    executeEnding(query);
}

void setAside(qint64 id, RecordState state, int attempts, const QString& reason)
{
    update(id, state, attempts, reason);
}

void release(qint64 id)
{
    update(id, RecordState::pending, 0, QString());
}

} // namespace till::store
