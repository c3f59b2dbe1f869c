#include "host/framework/coupon_logic.h"

#include "host/framework/session.h"
#include "till/document/cheque_contents.h"

template class MockFactory<CouponLogic>;

CouponLogic::CouponLogic() = default;
CouponLogic::~CouponLogic() = default;

void CouponLogic::deleteCoupon(const control::Action& action)
{
    const QString number = action.value(QStringLiteral("couponNumber"), QVariant()).toString();
    const auto contents = Singleton<Session>::get()->getDocument().dynamicCast<till::ChequeContents>();
    if (!contents) {
        return;
    }
    contents->coupons.removeIf([&number](const QSharedPointer<Coupon>& coupon) {
        return coupon->getNumber() == number;
    });
}
