#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"

#include <QList>
#include <QSharedPointer>
#include <QString>

namespace till::store {

/// Where a document stands in its life.
enum class DocumentState {
    open, // the one that the till works on
    closing, // paid for; what the loyalty system has to be told of it may not be told or queued yet
    aside,
    closed,
    cancelling, // given up; what the loyalty system has to be told of it may not be told or queued yet
    cancelled,
    damaged, // cannot be read back; kept as it is
};

/// A document as the store lists it. A plain value.
struct DocumentEntry {
    QString identity;
    DocumentState state = DocumentState::open;
    int type = 0;
    int number = 0;
};

/// Writes the document in this state. When it has returned, all of it is on disk; when it throws (a `BasicException`),
/// the state saved before is whole. `SaveToFileLogic` writes a document without touching the state that it is in.
/// [cheque-thread] [blocks: until the document is on disk]
VANTIRO_HOST_API void saveAs(const QSharedPointer<AbstractDocument>& document, DocumentState state);

/// Puts a document that cannot be read out of the way of those behind it; its record stays as it is. Throws
/// `BasicException`. [cheque-thread] [blocks: until it is on disk]
VANTIRO_HOST_API void quarantine(const QString& identity);

/// All documents in the order of their first saving. Throws `BasicException`. [any-thread] [blocks: the disk]
[[nodiscard]] VANTIRO_HOST_API QList<DocumentEntry> documents();

/// The highest number of all documents, 0 when there is none. Looks at each document once in the life of an open store.
/// Throws `BasicException`. [cheque-thread] [blocks: the disk]
[[nodiscard]] VANTIRO_HOST_API int highestNumber();

/// The document of the identity, null if there is none. Throws `BasicException`, also for a damaged record.
/// [cheque-thread] [blocks: the disk]
[[nodiscard]] VANTIRO_HOST_API QSharedPointer<AbstractDocument> documentOf(const QString& identity);

} // namespace till::store
