#include "sandbox/spread.h"

#include <algorithm>
#include <numeric>

namespace sandbox {

std::vector<Kopecks> spread(Kopecks sum, const std::vector<Kopecks>& weights)
{
    __extension__ using Wide = __int128;

    std::vector<Kopecks> shares(weights.size(), 0);
    const Kopecks whole = std::accumulate(weights.begin(), weights.end(), Kopecks { 0 });
    if (whole == 0) {
        return shares;
    }
    std::vector<Kopecks> remainders(weights.size());
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const Wide product = static_cast<Wide>(sum) * weights[i];
        shares[i] = static_cast<Kopecks>(product / whole);
        remainders[i] = static_cast<Kopecks>(product % whole);
    }
    std::vector<std::size_t> order(weights.size());
    std::iota(order.begin(), order.end(), std::size_t { 0 });
    std::stable_sort(order.begin(), order.end(),
                     [&remainders](std::size_t a, std::size_t b) { return remainders[a] > remainders[b]; });
    Kopecks left = sum - std::accumulate(shares.begin(), shares.end(), Kopecks { 0 });
    for (auto next = order.begin(); left > 0; ++next, --left) {
        ++shares[*next];
    }
    return shares;
}

}
