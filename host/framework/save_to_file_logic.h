#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"
#include "host/facilities/mock_factory.h"

#include <QSharedPointer>
#include <QString>
#include <QtGlobal>

/// Writes the open document to the host's store, made through `MockFactory<SaveToFileLogic>`. [cheque-thread]
class VANTIRO_HOST_API SaveToFileLogic {
public:
    SaveToFileLogic();
    virtual ~SaveToFileLogic();

    /// Writes the document with its `PluginData` and its plug-in data JSON. When it has returned, all of it survives a
    /// crash of the till and a loss of power; when it throws (a `BasicException`), the state saved before is whole.
    /// `extra` is the host's; plug-ins pass an empty text. [blocks: until the document is on disk]
    virtual void save(const QSharedPointer<AbstractDocument>& document, const QString& extra);

private:
    Q_DISABLE_COPY(SaveToFileLogic)
};

extern template class VANTIRO_HOST_API MockFactory<SaveToFileLogic>;
