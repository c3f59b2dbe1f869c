#pragma once

#include "host/export.h"

#include <QString>

#include <functional>

namespace till {

/// One piece of the till's work on a document, for whoever records it. A plain value.
struct WorkEvent {
    QString kind; // "hook": the loyalty system was called; "save": a document is on disk
    QString name; // of the hook; the state that the document is saved in
    QString detail; // arguments and result of the hook; the document as it is stored
};

/// Calls the observer for every piece of work, when it is done; an empty one ends it. It must not throw.
/// [cheque-thread]
VANTIRO_HOST_API void observeWork(std::function<void(const WorkEvent&)> observer);

/// Whether there is an observer: what nobody hears need not be put together. [cheque-thread]
[[nodiscard]] VANTIRO_HOST_API bool isWorkObserved();

/// Tells the observer, if there is one. [cheque-thread]
void tellWork(const WorkEvent& event);

} // namespace till
