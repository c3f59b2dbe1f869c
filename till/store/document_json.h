#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"
#include "host/facilities/exceptions.h"

#include <QByteArray>
#include <QSharedPointer>

namespace till {

/// A text that is not of a document, or of a damaged one.
class VANTIRO_HOST_API DamagedDocument : public BasicException {
public:
    using BasicException::BasicException;
    ~DamagedDocument() override;
};

/// The whole document as JSON text: head, lines live and deleted, payments, cards, coupons, impacts, what plug-ins have
/// stored. Throws `BasicException` for a document that is not this till's own. [cheque-thread]
[[nodiscard]] VANTIRO_HOST_API QByteArray toJson(const QSharedPointer<AbstractDocument>& document);

/// The document of such a text, equal to the one that was written. Throws `DamagedDocument`. [cheque-thread]
[[nodiscard]] VANTIRO_HOST_API QSharedPointer<AbstractDocument> documentFromJson(const QByteArray& text);

} // namespace till
