#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"
#include "till/document/cheque_over.h"

#include <QString>

namespace till {

extern template class VANTIRO_HOST_API ChequeOver<AbstractDocument>;

/// The reference till's sale, return, or document of any other type. [cheque-thread]
class VANTIRO_HOST_API Cheque : public ChequeOver<AbstractDocument> {
public:
    /// Opens a document. An empty identity makes a new one.
    explicit Cheque(const ChequeHead& chequeHead = {}, const QString& identity = {});
    ~Cheque() override;
};

}
