#pragma once

#include "bonus/vantiro_bonus_interface.h"

/// The client with the steps of the cheque open to call and its settings open to set. Asks no server. [cheque-thread]
class OpenClient : public VantiroBonusInterface {
public:
    using VantiroInterface::addChequeLinesTag;
    using VantiroInterface::addChequeLineTag;
    using VantiroInterface::addChequeTag;
    using VantiroInterface::addCouponsTags;
    using VantiroInterface::addDiscountCardTag;
    using VantiroInterface::addDiscountsMessagesPaymentsTags;
    using VantiroInterface::addDiscountsTag;
    using VantiroInterface::getSubtractedBonus;
    using VantiroInterface::getXmlCheckString;

    using VantiroBonusInterface::addSaleChequeTag;
    using VantiroBonusInterface::getCertificatesFromDocument;

    using VantiroInterface::forbidDiscountForDiscountedPosition;
    using VantiroInterface::noBonusForMinprice;
};
