#include "till/desk/points_limit.h"

#include "till/money/kopecks.h"

#include <algorithm>

namespace till {

namespace {

    [[nodiscard]] QString money(double sum)
    {
        return QString::number(sum, 'f', 2);
    }

    [[nodiscard]] double stepOf(const PointsLimit& limit)
    {
        return kopecks(limit.step) > 0 ? limit.step : 1.0;
    }

    /// All that allow no more: two may be equal, and a cashier who is told of one alone would look for the other.
    [[nodiscard]] QString whatBinds(const PointsLimit& limit)
    {
        const Kopecks least = std::min({ kopecks(limit.offered), kopecks(limit.needed), kopecks(limit.balance) });
        QStringList binding;
        if (kopecks(limit.offered) == least) {
            binding.append(QStringLiteral("сервис предлагает %1").arg(money(limit.offered)));
        }
        if (kopecks(limit.needed) == least) {
            binding.append(QStringLiteral("баллами можно оплатить в чеке %1").arg(money(limit.needed)));
        }
        if (kopecks(limit.balance) == least) {
            binding.append(QStringLiteral("на карте %1").arg(money(limit.balance)));
        }
        if (kopecks(limit.most) < least) {
            binding.append(QStringLiteral("шаг списания %1").arg(money(stepOf(limit))));
        }
        return binding.join(QStringLiteral(", "));
    }

    /// The next amounts below the most.
    [[nodiscard]] QStringList amountsBelow(const PointsLimit& limit)
    {
        constexpr int count = 3;
        const Kopecks step = kopecks(stepOf(limit));
        QStringList amounts;
        // The most need not be a multiple of the step; those below it are.
        Kopecks next = (kopecks(limit.most) - 1) / step * step;
        for (int i = 0; i < count && next > 0; ++i, next -= step) {
            amounts.append(money(roubles(next)));
        }
        return amounts;
    }

} // namespace

QStringList explained(const PointsLimit& limit)
{
    if (kopecks(limit.most) <= 0) {
        return { QStringLiteral("Баллами не оплатить: ") + whatBinds(limit) };
    }
    QStringList lines {
        QStringLiteral("Баллами можно оплатить %1, не больше: %2").arg(money(limit.most), whatBinds(limit))
    };
    if (const QStringList amounts = amountsBelow(limit); !amounts.isEmpty()) {
        lines.append(QStringLiteral("Можно и меньше: ") + amounts.join(QStringLiteral(", ")));
    }
    return lines;
}

} // namespace till
