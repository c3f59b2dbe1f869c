#include "host/framework/coupon_logic.h"

#include "host/framework/session.h"
#include "till/document/cheque_contents.h"

template class MockFactory<CouponLogic>;

CouponLogic::CouponLogic() = default;
CouponLogic::~CouponLogic() = default;

void CouponLogic::deleteCoupon(const control::Action& action)
{
    const QVariant number = action.value(QStringLiteral("couponNumber"), QVariant());
    const auto contents = Singleton<Session>::get()->getDocument().dynamicCast<till::ChequeContents>();
    if (!contents || !number.isValid()) {
        return; // no number is not the empty number
    }
    contents->coupons.removeIf([text = number.toString()](const QSharedPointer<Coupon>& coupon) {
        return coupon->getNumber() == text;
    });
}
