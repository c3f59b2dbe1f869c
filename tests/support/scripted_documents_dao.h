#pragma once

#include "host/framework/documents_dao.h"

#include <QList>
#include <QPair>
#include <QSharedPointer>
#include <QStringList>
#include <QVariant>

/// A store of known documents. While one of these lives, it is the host's `DocumentsDao`; afterwards the former one is
/// back. [cheque-thread]
class ScriptedDocumentsDao : public DocumentsDao {
public:
    ScriptedDocumentsDao();
    ~ScriptedDocumentsDao() override;

    /// The document of the key, which is compared with its type. A key that was never added has none.
    void add(const QVariant& key, const QSharedPointer<AbstractDocument>& document);

    /// What was asked for, in order: "4711 flags 0".
    [[nodiscard]] QStringList questions() const;

    [[nodiscard]] QSharedPointer<AbstractDocument> getDocument(const QVariant& key, int flags) override;

private:
    DocumentsDao* former;
    QList<QPair<QVariant, QSharedPointer<AbstractDocument>>> documents;
    QStringList asked;
};
