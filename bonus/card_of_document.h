#pragma once

#include "host/document/abstract_document.h"

#include <QSharedPointer>

namespace vantiro {

/// The card of this system on the document. Throws `VantiroException` when there is none.
[[nodiscard]] QSharedPointer<DocumentCardRecord> requireCard(const QSharedPointer<AbstractDocument>& document);

} // namespace vantiro
