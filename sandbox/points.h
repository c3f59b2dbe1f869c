#pragma once

#include "sandbox/cheque.h"
#include "sandbox/rules.h"

#include <vector>

/// The arithmetic of points. Nothing here knows the state.
namespace sandbox {

/// The points that may still be spent on an open cheque: the rules' share of the cheque without what was spent on it,
/// no more than the lines that take points leave above their least sums, and no more than the balance. `spent` is what
/// the service has given to this cheque already; the larger of that and what the cheque itself says counts.
/// [any-thread]
[[nodiscard]] Kopecks spendable(const Cheque& cheque, const PointRule& rule, Kopecks balance, Kopecks spent);

struct LinePoints {
    int line = 0;
    Kopecks amount = 0;
};

/// An amount of points spread over the lines that take them, by what each can take, so that the sum is exact. Only
/// lines with a share. [any-thread]
[[nodiscard]] std::vector<LinePoints> spreadSpending(const Cheque& cheque, const PointRule& rule, Kopecks amount);

/// Points that a cheque earns, line by line: the rate on what was paid with money for lines that earn, rounded once for
/// the cheque, and then spread. A discount on the cheque that no line shows is taken off all lines alike. [any-thread]
[[nodiscard]] std::vector<Kopecks> earnedByLine(const Cheque& cheque, const PointRule& rule);

}
