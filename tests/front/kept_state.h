#pragma once

#include "tests/front/till_at_work.h"

#include <string>

/// The two kinds of coupon told apart: "cheque-…" is on the whole cheque, "item-…" on a position.
[[nodiscard]] TillAtWork::Settings couponsApart();

/// The coupons that the plug-in holds in memory: "cheque: a b; 1: c; 2: d e", empty when there is none. Neither the
/// open document nor the journal sees the question. [cheque-thread]
[[nodiscard]] std::string couponsInMemory(const Vantiro& plugin);

/// The coupons stored with the open document, in the same form; "none stored" when they never were. [cheque-thread]
[[nodiscard]] std::string couponsStored(const TillAtWork& till);

/// Stores the coupons as an earlier run would have, and has the plug-in take them up. [cheque-thread]
void giveCoupons(TillAtWork& till, const QStringList& ofCheque, const QMap<int, QStringList>& byPosition);

/// The server calls the coupon valid, and the host takes it; what that asks and tells is looked at. [cheque-thread]
void addWell(TillAtWork& till, const QString& number);

/// Gives the plug-in loyalty data as a request and a spending may have left them. [cheque-thread]
void giveLoyaltyData(OpenVantiro& plugin);

/// The loyalty data in memory: the points to spend, the numbers of impacts, the messages. [cheque-thread]
[[nodiscard]] std::string loyaltyDataOf(OpenVantiro& plugin);

namespace loyalty_data {

inline const std::string asGiven = "30 points, 1 discounts, 1 spent, кассиру, покупателю";
inline const std::string none = "0 points, 0 discounts, 0 spent, , ";

}
