#pragma once

#include "host/export.h"

#include <QString>
#include <QtGlobal>

/// One payment line. Plug-ins only read it. [cheque-thread]
class VANTIRO_HOST_API MoneyItem {
public:
    MoneyItem();
    virtual ~MoneyItem();

    /// The sum paid, in roubles.
    [[nodiscard]] virtual double getAmount() const = 0;
    /// Number of the card or certificate paid with; empty for cash.
    [[nodiscard]] virtual QString getCardNum() const = 0;
    /// Kind of operation; 3 is the one that counts for certificates.
    [[nodiscard]] virtual int getValutOperation() const = 0;
    /// Operation code; 70 and 74 are payments with a certificate.
    [[nodiscard]] virtual int getOpCode() const = 0;

private:
    Q_DISABLE_COPY(MoneyItem)
};
