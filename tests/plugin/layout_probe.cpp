// Compiled by the test of the class layout, which reads the compiler's own account of these classes. Access is lifted
// so that the order of the fields can be asked; layout does not depend on it.
#include <QtCore>
#include <QtXml>

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>

#define private public
#define protected public
#include "front/vantiro.h"
#include "host/facilities/config.h"
#include "host/facilities/rest_client.h"
#include "till/document/cheque.h"
#undef private
#undef protected

#include <cstddef>

#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace {

template <class... Offsets>
constexpr bool rising(std::size_t first, Offsets... rest)
{
    bool result = true;
    ((result = result && first < rest, first = rest), ...);
    return result;
}

static_assert(rising(offsetof(VantiroInterface, logger), offsetof(VantiroInterface, authorizationHeader),
                     offsetof(VantiroInterface, currentServerIndex), offsetof(VantiroInterface, hosts),
                     offsetof(VantiroInterface, timeout), offsetof(VantiroInterface, noBonusForMinprice),
                     offsetof(VantiroInterface, forbidDiscountForDiscountedPosition),
                     offsetof(VantiroInterface, checkData)));
static_assert(offsetof(VantiroBonusInterface, lastReport) >= sizeof(VantiroInterface));

static_assert(rising(offsetof(BasicLoyaltySystem, document), offsetof(BasicLoyaltySystem, bonusImpacts),
                     offsetof(BasicLoyaltySystem, discountImpacts), offsetof(BasicLoyaltySystem, pointsForSpend),
                     offsetof(BasicLoyaltySystem, messagesToCashier), offsetof(BasicLoyaltySystem, messagesToClient),
                     offsetof(BasicLoyaltySystem, lastError), offsetof(BasicLoyaltySystem, cardMode)));

static_assert(rising(offsetof(Vantiro, interface), offsetof(Vantiro, checkCouponPrefix),
                     offsetof(Vantiro, checkCouponMask), offsetof(Vantiro, positionCouponPrefix),
                     offsetof(Vantiro, positionCouponMask), offsetof(Vantiro, checkCoupons),
                     offsetof(Vantiro, positionCoupons), offsetof(Vantiro, lastCanceledDocumentId),
                     offsetof(Vantiro, restoreLoyaltyState), static_cast<std::size_t>(offsetof(Vantiro, logger))));

} // namespace
