#pragma once

#include "host/document/back_by_sale_document.h"
#include "host/export.h"
#include "till/document/cheque_over.h"

#include <QSharedPointer>
#include <QString>

namespace till {

extern template class VANTIRO_HOST_API ChequeOver<BackBySaleDocument>;

/// The reference till's return against a sale. [cheque-thread]
class VANTIRO_HOST_API ReturnBySale : public ChequeOver<BackBySaleDocument> {
public:
    /// Opens a return, of `EDocumentType::returnBySale` whatever the head says. `saleSource` is null when the sale is
    /// not known. An empty identity makes a new one.
    explicit ReturnBySale(const QSharedPointer<SaleDocumentSource>& saleSource, const ChequeHead& chequeHead = {},
                          const QString& identity = {});
    ~ReturnBySale() override;

    [[nodiscard]] QSharedPointer<SaleDocumentSource> getSource() override;

private:
    QSharedPointer<SaleDocumentSource> source;
};

}
