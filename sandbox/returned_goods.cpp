#include "sandbox/returned_goods.h"

#include <algorithm>
#include <cstdlib>

namespace sandbox {

namespace {

/// The part of a line's points that comes back when its returned quantity grows.
[[nodiscard]] Kopecks partOf(Kopecks points, const SoldLine& line, std::int64_t quantity)
{
    return multiplyDivide(points, line.returned + quantity, line.quantity, Rounding::down)
        - multiplyDivide(points, line.returned, line.quantity, Rounding::down);
}

}

ReturnedPoints takeBackGoods(ChequeBook& cheques, const std::string& sale, const Cheque& back, std::string& note)
{
    std::vector<SoldLine> sold = cheques.soldLines(sale);
    ReturnedPoints points;
    for (const ChequeLine& line : back.lines) {
        std::int64_t left = std::abs(line.quantity);
        for (SoldLine& from : sold) {
            const std::int64_t quantity = std::min(left, from.quantity - from.returned);
            if (from.item != line.item || quantity <= 0) {
                continue;
            }
            points.earned += partOf(from.earned, from, quantity);
            points.spent += partOf(from.spent, from, quantity);
            from.returned += quantity;
            left -= quantity;
            cheques.setReturned(sale, from.number, from.returned);
        }
        if (left > 0) {
            note = "more is returned than the sale has left: the rest changes no points";
        }
    }
    return points;
}

}
