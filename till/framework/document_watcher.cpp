#include "host/framework/document_watcher.h"

DocumentWatcher::DocumentWatcher() = default;
DocumentWatcher::~DocumentWatcher() = default;

void DocumentWatcher::setDocument(const QSharedPointer<AbstractDocument>& newDocument)
{
    document = newDocument;
}
