#pragma once

#include "host/document/coupon.h"
#include "host/export.h"

#include <QString>

namespace till {

/// A coupon of the reference till. Two coupons of the same number are two coupons. [cheque-thread]
class VANTIRO_HOST_API CouponRecord : public Coupon {
public:
    explicit CouponRecord(const QString& couponNumber);
    ~CouponRecord() override;

    [[nodiscard]] QString getNumber() const override;

private:
    QString number;
};

}
