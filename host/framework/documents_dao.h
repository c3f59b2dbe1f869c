#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"
#include "host/facilities/singleton.h"

#include <QSharedPointer>
#include <QVariant>

/// The host's store of finished documents. [cheque-thread]
class VANTIRO_HOST_API DocumentsDao {
public:
    DocumentsDao();
    virtual ~DocumentsDao();

    /// Reads a stored document by the key that `AbstractDocument::getSourceDocumentId` gives; null if there is none.
    /// `flags` is the host's; plug-ins pass 0. [blocks: for a read of the store]
    [[nodiscard]] virtual QSharedPointer<AbstractDocument> getDocument(const QVariant& key, int flags);

private:
    Q_DISABLE_COPY(DocumentsDao)
};

extern template class VANTIRO_HOST_API Singleton<DocumentsDao>;
