#pragma once

#include "host/facilities/exceptions.h"
#include "host/framework/db_queue_broker.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

/// A queue that keeps what it is given, in memory. While one of these lives, it is the host's `DBQueueBroker`;
/// afterwards the former one is back. [cheque-thread]
class ScriptedQueue : public DBQueueBroker {
public:
    /// What one `enqueue` was given.
    struct Record {
        QString queue;
        QJsonObject message;
        QString extra;
    };

    ScriptedQueue()
        : former(std::exchange(Singleton<DBQueueBroker>::instance, this))
    {
    }

    ~ScriptedQueue() override
    {
        Singleton<DBQueueBroker>::instance = former;
    }

    /// Every later `enqueue` throws a `BasicException` with the text, and keeps nothing.
    void fail(const tr::Tr& text)
    {
        failure = text;
    }

    /// In the order in which they came.
    [[nodiscard]] QList<Record> records() const
    {
        return kept;
    }

    void enqueue(const QString& queue, const QJsonObject& message, const QString& extra) override
    {
        if (failure) {
            throw BasicException(*failure);
        }
        kept.append({ queue, message, extra });
    }

private:
    DBQueueBroker* former;
    QList<Record> kept;
    std::optional<tr::Tr> failure;
};
