#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"

#include <QByteArray>
#include <QSharedPointer>

namespace till {

/// The whole document as JSON text: head, lines live and deleted, payments, cards, coupons, impacts, what plug-ins have
/// stored. Throws `BasicException` for a document that is not this till's own. [cheque-thread]
[[nodiscard]] VANTIRO_HOST_API QByteArray toJson(const QSharedPointer<AbstractDocument>& document);

/// The document of such a text, equal to the one that was written. Throws `BasicException` when the text is not of a
/// document. [cheque-thread]
[[nodiscard]] VANTIRO_HOST_API QSharedPointer<AbstractDocument> documentFromJson(const QByteArray& text);

} // namespace till
