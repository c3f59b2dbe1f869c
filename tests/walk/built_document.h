#pragma once

#include "host/document/abstract_document.h"
#include "tests/walk/records.h"

#include <QSharedPointer>

namespace walk {

/// A new document of the till that is what the record says; nothing is stored with it yet, whatever the record holds.
[[nodiscard]] QSharedPointer<AbstractDocument> build(const Document& document);

} // namespace walk
