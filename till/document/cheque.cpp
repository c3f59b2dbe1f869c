#include "till/document/cheque.h"

namespace till {

template class ChequeOver<AbstractDocument>;

Cheque::Cheque(const ChequeHead& chequeHead, const QString& identity)
    : ChequeOver(chequeHead, identity)
{
}

Cheque::~Cheque() = default;

}
