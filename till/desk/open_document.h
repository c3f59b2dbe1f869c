#pragma once

#include "host/document/abstract_document.h"

#include <QSharedPointer>
#include <QString>
#include <QStringList>

namespace till {

/// Makes the document the open one, which `Session::getDocument` gives, and tells every registered loyalty system; null
/// when the document has ended. [cheque-thread]
Q_DECL_EXPORT void setOpenDocument(const QSharedPointer<AbstractDocument>& document);

/// What the cashier has keyed in for the next position and `ModifiersContainer::clearAll` drops. [cheque-thread]
[[nodiscard]] Q_DECL_EXPORT QStringList& pendingModifiers();

} // namespace till
