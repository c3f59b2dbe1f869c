#include "till/money/spread.h"

#include <algorithm>

namespace till {

namespace {

    /// What a share would get, as a whole number of kopecks and the remainder of the division by all weights.
    struct Claim {
        qsizetype share = 0;
        Kopecks remainder = 0;
    };

    __extension__ typedef __int128 Wide; // products of two sums of money leave 64 bits

    /// One pass over those that have room, by their weights; what full ones cannot take is left for the next pass.
    [[nodiscard]] Kopecks pass(Kopecks sum, const QList<Share>& shares, QList<Kopecks>& result)
    {
        Wide weights = 0;
        QList<Claim> claims;
        for (qsizetype i = 0; i < shares.size(); ++i) {
            if (result.at(i) < shares.at(i).room && shares.at(i).weight > 0) {
                claims.append({ i, 0 });
                weights += shares.at(i).weight;
            }
        }
        if (claims.isEmpty()) {
            return 0;
        }

        Kopecks given = 0;
        const auto give = [&](qsizetype share, Kopecks amount) {
            const Kopecks taken = std::min(amount, shares.at(share).room - result.at(share));
            result[share] += taken;
            given += taken;
        };
        Kopecks rest = sum;
        for (Claim& claim : claims) {
            const Wide product = static_cast<Wide>(sum) * shares.at(claim.share).weight;
            const auto whole = static_cast<Kopecks>(product / weights);
            claim.remainder = static_cast<Kopecks>(product % weights);
            give(claim.share, whole);
            rest -= whole;
        }
        std::ranges::stable_sort(claims, std::ranges::greater(), &Claim::remainder);
        for (const Claim& claim : claims) {
            if (rest == 0) {
                break;
            }
            give(claim.share, 1);
            --rest;
        }
        return given;
    }

} // namespace

QList<Kopecks> spread(Kopecks sum, const QList<Share>& shares)
{
    QList<Kopecks> result(shares.size(), 0);
    for (Kopecks rest = sum; rest > 0;) {
        const Kopecks given = pass(rest, shares, result);
        if (given == 0) {
            break; // no room is left
        }
        rest -= given;
    }
    return result;
}

} // namespace till
