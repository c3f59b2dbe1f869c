#include "sandbox/points.h"

#include "sandbox/spread.h"

#include <algorithm>
#include <numeric>

namespace sandbox {

namespace {

constexpr std::int64_t wholePercent = 10'000;
constexpr std::int64_t wholeRate = 1'000'000;

[[nodiscard]] Kopecks positive(Kopecks sum)
{
    return std::max<Kopecks>(sum, 0);
}

[[nodiscard]] Kopecks total(const std::vector<Kopecks>& sums)
{
    return std::accumulate(sums.begin(), sums.end(), Kopecks { 0 });
}

/// The cheque before points. A till whose sum does not hold the points, or which has a discount on the cheque that
/// its lines do not show, gives two answers here; the smaller one is right.
[[nodiscard]] Kopecks beforePoints(const Cheque& cheque)
{
    Kopecks lines = 0;
    for (const ChequeLine& line : cheque.lines) {
        lines += positive(line.amount);
    }
    return std::min(lines, positive(cheque.amount) + cheque.spent());
}

/// What each line can still take in points.
[[nodiscard]] std::vector<Kopecks> roomOfLines(const Cheque& cheque, const PointRule& rule)
{
    std::vector<Kopecks> rooms;
    for (const ChequeLine& line : cheque.lines) {
        const Kopecks share = multiplyDivide(positive(line.amount), rule.payable, wholePercent, Rounding::down);
        const Kopecks cap = std::min(share, positive(line.amount - line.minAmount));
        rooms.push_back(line.takesPoints ? positive(cap - line.bonus) : 0);
    }
    return rooms;
}

}

Kopecks spendable(const Cheque& cheque, const PointRule& rule, Kopecks balance, Kopecks spent)
{
    const Kopecks used = std::max(spent, cheque.spent());
    const Kopecks share = multiplyDivide(beforePoints(cheque), rule.payable, wholePercent, Rounding::down);
    return positive(std::min({ share - used, total(roomOfLines(cheque, rule)), balance }));
}

std::vector<LinePoints> spreadSpending(const Cheque& cheque, const PointRule& rule, Kopecks amount)
{
    const std::vector<Kopecks> shares = spread(amount, roomOfLines(cheque, rule));
    std::vector<LinePoints> lines;
    for (std::size_t i = 0; i < shares.size(); ++i) {
        if (shares[i] != 0) {
            lines.push_back({ cheque.lines[i].number, shares[i] });
        }
    }
    return lines;
}

std::vector<Kopecks> earnedByLine(const Cheque& cheque, const PointRule& rule)
{
    std::vector<Kopecks> paid;
    std::vector<Kopecks> earning;
    for (const ChequeLine& line : cheque.lines) {
        paid.push_back(positive(line.amount - line.bonus));
        earning.push_back(line.earnsPoints ? paid.back() : 0);
    }
    const Kopecks money = positive(beforePoints(cheque) - cheque.spent());
    const Kopecks ground = total(paid) == 0
        ? 0
        : multiplyDivide(std::min(money, total(paid)), total(earning), total(paid), Rounding::down);
    const std::int64_t steps = multiplyDivide(ground, rule.perRouble, wholeRate * rule.step, rule.rounding);
    return spread(steps * rule.step, earning);
}

}
