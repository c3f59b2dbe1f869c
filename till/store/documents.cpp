#include "host/framework/documents_dao.h"
#include "host/framework/save_to_file_logic.h"

#include "till/store/document_json.h"
#include "till/store/store.h"
#include "till/work_events.h"

#include <QDateTime>

template class Singleton<DocumentsDao>;
template class MockFactory<SaveToFileLogic>;

DocumentsDao::DocumentsDao() = default;
DocumentsDao::~DocumentsDao() = default;

QSharedPointer<AbstractDocument> DocumentsDao::getDocument(const QVariant& key, int /*flags*/)
{
    QSqlQuery query = till::store::prepare(QStringLiteral("SELECT body FROM documents WHERE identity = ?"));
    query.addBindValue(key.toString());
    till::store::execute(query);
    if (!till::store::nextRow(query)) {
        return nullptr;
    }
    return till::documentFromJson(query.value(0).toString().toUtf8());
}

SaveToFileLogic::SaveToFileLogic() = default;
SaveToFileLogic::~SaveToFileLogic() = default;

void SaveToFileLogic::save(const QSharedPointer<AbstractDocument>& document, const QString& extra)
{
    const QByteArray body = till::toJson(document); // refuses what is not this till's, before anything is asked of it
    QSqlQuery& query = till::store::prepareOnce(
        QStringLiteral("INSERT INTO documents (identity, body, extra, saved_at) VALUES (?, CAST(? AS TEXT), ?, ?) "
                       "ON CONFLICT (identity) DO UPDATE SET body = excluded.body, extra = excluded.extra, "
                       "saved_at = excluded.saved_at"));
    query.bindValue(0, document->getDocumentIdentity());
    query.bindValue(1, body);
    query.bindValue(2, extra.isNull() ? QStringLiteral("") : extra); // a null text would be bound as NULL
    query.bindValue(3, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    // One statement, hence one transaction: the old state or the new one, never a mixture.
    till::store::executeEnding(query);
    query.finish();
    if (till::isWorkObserved()) {
        till::tellWork({ QStringLiteral("save"), QString(), QString::fromUtf8(body) });
    }
}
