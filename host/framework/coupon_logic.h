#pragma once

#include "host/export.h"
#include "host/facilities/mock_factory.h"
#include "host/framework/action.h"

/// The host's own handling of coupons, made through `MockFactory<CouponLogic>`. [cheque-thread]
class VANTIRO_HOST_API CouponLogic {
public:
    CouponLogic();
    virtual ~CouponLogic();

    /// Takes the coupon of "couponNumber" off the cheque.
    virtual void deleteCoupon(const control::Action& action);

private:
    Q_DISABLE_COPY(CouponLogic)
};

extern template class VANTIRO_HOST_API MockFactory<CouponLogic>;
