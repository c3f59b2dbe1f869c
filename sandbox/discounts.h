#pragma once

#include "sandbox/cheque.h"
#include "sandbox/rules.h"

#include <string>
#include <vector>

namespace sandbox {

struct GrantedDiscount {
    int id = 0;
    Kopecks amount = 0;
    int percent = 0; // hundredths of a percent; 0 when the least sum of the line has cut the discount down
};

struct LineGrant {
    int line = 0;
    std::vector<GrantedDiscount> discounts;
};

struct Grants {
    std::vector<GrantedDiscount> ofCheque;
    std::vector<LineGrant> ofLines; // only lines with a discount
};

/// What the rules and the cheque's coupons grant. The discounts of this service that already lie on a line are added
/// back first, so that asking twice gives the same answer. [any-thread]
[[nodiscard]] Grants grantDiscounts(const Cheque& cheque, const Rules& rules);

/// The document of a reply; empty when nothing is granted. Lines stand beside the cheque and not inside it: readers
/// count everything inside as discounts on the cheque. [any-thread]
[[nodiscard]] std::string discountsText(const Grants& grants);

}
