#pragma once

#include "sandbox/money.h"

#include <vector>

namespace sandbox {

/// Divides a sum by weights so that the shares add up to it exactly: each takes its part rounded down, and the kopecks
/// that are left go to the largest remainders, the earlier first. No share is above its weight while the sum is not
/// above theirs. All shares are 0 when the weights are. Neither the sum nor a weight is negative. [any-thread]
[[nodiscard]] std::vector<Kopecks> spread(Kopecks sum, const std::vector<Kopecks>& weights);

}
