#include "till/document/payment.h"

namespace till {

Payment::Payment(const PaymentFields& paymentFields)
    : fields(paymentFields)
{
}

Payment::~Payment() = default;

double Payment::getAmount() const
{
    return fields.amount;
}

QString Payment::getCardNum() const
{
    return fields.cardNumber;
}

int Payment::getValutOperation() const
{
    return fields.valutOperation;
}

int Payment::getOpCode() const
{
    return fields.opCode;
}

}
