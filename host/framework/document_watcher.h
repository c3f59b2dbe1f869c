#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"

#include <QSharedPointer>

/// Knows the document that is open. [cheque-thread]
class VANTIRO_HOST_API DocumentWatcher {
public:
    DocumentWatcher();
    virtual ~DocumentWatcher();

    /// Called by the host when a document is opened or brought back, before any hook, and with a null pointer when it
    /// has ended. The one reference that a plug-in keeps between hooks.
    virtual void setDocument(const QSharedPointer<AbstractDocument>& document);

protected:
    QSharedPointer<AbstractDocument> document;

private:
    Q_DISABLE_COPY(DocumentWatcher)
};
