#include "till/document/coupon_record.h"

namespace till {

CouponRecord::CouponRecord(const QString& couponNumber)
    : number(couponNumber)
{
}

CouponRecord::~CouponRecord() = default;

QString CouponRecord::getNumber() const
{
    return number;
}

}
