#pragma once

#include "host/document/money_item.h"
#include "host/export.h"

#include <QString>

namespace till {

/// What a payment line says. A plain value.
struct PaymentFields {
    double amount = 0.0; // roubles
    QString cardNumber; // of the card or certificate; empty for cash
    int valutOperation = 0;
    int opCode = 0;
};

/// A payment line of the reference till. [cheque-thread]
class VANTIRO_HOST_API Payment : public MoneyItem {
public:
    explicit Payment(const PaymentFields& paymentFields);
    ~Payment() override;

    [[nodiscard]] double getAmount() const override;
    [[nodiscard]] QString getCardNum() const override;
    [[nodiscard]] int getValutOperation() const override;
    [[nodiscard]] int getOpCode() const override;

private:
    PaymentFields fields;
};

}
