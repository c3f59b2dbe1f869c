#include "host/framework/db_queue_broker.h"

#include "till/store/store.h"

#include <QDateTime>
#include <QJsonDocument>

template class Singleton<DBQueueBroker>;

DBQueueBroker::DBQueueBroker() = default;
DBQueueBroker::~DBQueueBroker() = default;

void DBQueueBroker::enqueue(const QString& queue, const QJsonObject& message, const QString& extra)
{
    QSqlQuery query = till::store::prepare(
        QStringLiteral("INSERT INTO queue (queue, message, extra, queued_at) VALUES (?, ?, ?, ?)"));
    query.addBindValue(queue);
    query.addBindValue(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
    query.addBindValue(extra.isNull() ? QStringLiteral("") : extra); // a null text would be bound as NULL
    query.addBindValue(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    till::store::executeEnding(query); // one statement, hence one transaction: on disk, or not at all
}
