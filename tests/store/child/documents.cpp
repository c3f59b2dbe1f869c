#include "host/framework/documents_dao.h"
#include "host/framework/save_to_file_logic.h"
#include "tests/store/child/jobs.h"
#include "tests/store/numbered_records.h"
#include "till/store/store.h"

void saveNumbered(const QString& folder, int first)
{
    till::store::open(folder);
    for (int number = first;; ++number) {
        MockFactory<SaveToFileLogic>::create()->save(numberedVersion(number), QString());
        tell(number);
    }
}

QJsonObject readDocument(const QString& folder, const QString& key)
{
    till::store::open(folder);
    const QSharedPointer<AbstractDocument> document = DocumentsDao().getDocument(key, 0);
    if (!document) {
        return {};
    }
    return {
        { QStringLiteral("identity"), document->getDocumentIdentity() },
        { QStringLiteral("number"), document->getChequeNumber() },
        { QStringLiteral("lines"), document->getPositionCount() },
        { QStringLiteral("sum"), document->getDocumentSum() },
        { QStringLiteral("offlineMode"),
          document->getValue(QStringLiteral("Vantiro"), QStringLiteral("offlineMode"), QStringLiteral("none"))
              .toString() },
        { QStringLiteral("pluginDataJson"), document->getPluginDataJson() },
    };
}
