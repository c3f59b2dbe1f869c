#pragma once

#include "tests/front/till_at_work.h"

#include <QString>

/// Gives the plug-in the state of a cheque that is about to close: a discount of 17.98, 30.00 points spent on position
/// 1, 20.00 more to spend, the coupon "vantiro-c1" on the cheque and "vantiro-p1" on position 1. Nothing is stored.
void fillState(TillAtWork& till);

/// What of that state is in memory: "1 discounts, 1 spendings, points 20.00, card 20.00, coupons vantiro-c1 | 1:
/// vantiro-p1"; without a card "card none". Writes the coupons into the document on the way.
[[nodiscard]] std::string stateOf(TillAtWork& till);

inline const std::string wholeState
    = "1 discounts, 1 spendings, points 20.00, card 20.00, coupons vantiro-c1 | 1: vantiro-p1";
inline const std::string emptyState = "0 discounts, 0 spendings, points 0.00, card 0.00, coupons  | ";

/// A return of the goods of the sale that is cheque 4 of the day before, from 18:00 to 18:05; of type 25.
[[nodiscard]] QSharedPointer<AbstractDocument> returnOfKnownSale();
