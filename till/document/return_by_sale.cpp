#include "till/document/return_by_sale.h"

namespace till {

template class ChequeOver<BackBySaleDocument>;

ReturnBySale::ReturnBySale(const QSharedPointer<SaleDocumentSource>& saleSource, const ChequeHead& chequeHead,
                           const QString& identity)
    : ChequeOver(chequeHead, identity)
    , source(saleSource)
{
    head.type = EDocumentType::returnBySale;
}

ReturnBySale::~ReturnBySale() = default;

QSharedPointer<SaleDocumentSource> ReturnBySale::getSource()
{
    return source;
}

}
