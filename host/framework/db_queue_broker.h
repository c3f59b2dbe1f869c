#pragma once

#include "host/export.h"
#include "host/facilities/singleton.h"

#include <QJsonObject>
#include <QString>
#include <QtGlobal>

/// The host's durable queue. The host delivers the messages later, in order and at least once, by itself: a message
/// holds all that this needs ("url", "headers" and "body" of an HTTP POST). Messages hold credentials, so what keeps
/// them must be closed to others. [cheque-thread]
class VANTIRO_HOST_API DBQueueBroker {
public:
    DBQueueBroker();
    virtual ~DBQueueBroker();

    /// Adds the message to the end of the queue. When it has returned, the message survives a crash of the till and a
    /// loss of power; when that cannot be had it throws a `BasicException`, and the message is not in the queue.
    /// `extra` is the host's; plug-ins pass an empty text. [blocks: until the message is on disk]
    virtual void enqueue(const QString& queue, const QJsonObject& message, const QString& extra);

private:
    Q_DISABLE_COPY(DBQueueBroker)
};

extern template class VANTIRO_HOST_API Singleton<DBQueueBroker>;
