#pragma once

#include "till/document/cheque.h"
#include "till/store/document_json.h"

#include <QSharedPointer>

/// The document that the stored form of this one gives; null when it is of another class.
template <class Document>
[[nodiscard]] QSharedPointer<Document> roundTrip(const QSharedPointer<Document>& document)
{
    return till::documentFromJson(till::toJson(document)).template dynamicCast<Document>();
}

/// What is read from the stored form of a cheque with this head.
[[nodiscard]] inline QSharedPointer<till::Cheque> roundTripOf(const till::ChequeHead& head)
{
    return roundTrip(QSharedPointer<till::Cheque>::create(head));
}
