#pragma once

#include "host/export.h"

#include <QMetaType>
#include <QObject>
#include <QSharedPointer>
#include <QString>

/// A coupon on the cheque. [cheque-thread]
class VANTIRO_HOST_API Coupon : public QObject {
    Q_OBJECT

public:
    Coupon();
    ~Coupon() override;

    [[nodiscard]] virtual QString getNumber() const = 0;

private:
    Q_DISABLE_COPY(Coupon)
};

using CouponPtr = QSharedPointer<Coupon>;

Q_DECLARE_METATYPE(CouponPtr)
