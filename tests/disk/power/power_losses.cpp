#include "tests/disk/power/power_losses.h"

#include <algorithm>

namespace {

constexpr std::size_t sector = 512; // bytes, the least that any disk writes at once

using Loss = std::vector<Reached>;

/// The places within the data of a write where one sector of the file ends and the next begins.
[[nodiscard]] std::vector<std::size_t> boundaries(const Change& change)
{
    std::vector<std::size_t> places;
    if (change.kind == Change::Kind::write) {
        const std::size_t first = sector - static_cast<std::size_t>(change.offset) % sector;
        for (std::size_t place = first; place < change.data.size(); place += sector) {
            places.push_back(place);
        }
    }
    return places;
}

void addTorn(std::vector<Loss>& losses, const std::vector<Change>& pending, bool others)
{
    for (std::size_t i = 0; i < pending.size(); ++i) {
        for (const std::size_t place : boundaries(pending.at(i))) {
            Loss head(pending.size(), Reached { others });
            head.at(i) = { true, 0, place };
            losses.push_back(head);
            head.at(i) = { true, place, std::string::npos };
            losses.push_back(head);
        }
    }
}

[[nodiscard]] Loss shuffled(const std::vector<Change>& pending, bool bySector, std::mt19937& dice)
{
    std::bernoulli_distribution half;
    Loss loss;
    for (const Change& change : pending) {
        Reached reached { half(dice) };
        const std::vector<std::size_t> places = boundaries(change);
        if (bySector && reached.any && !places.empty()) {
            const std::size_t place = places.at(std::uniform_int_distribution<std::size_t>(0, places.size() - 1)(dice));
            if (half(dice)) {
                reached.from = place;
            } else {
                reached.to = place;
            }
        }
        loss.push_back(reached);
    }
    return loss;
}

}

std::vector<std::vector<Reached>> powerLosses(const std::vector<Change>& pending, const Thoroughness& thoroughness,
                                              std::mt19937& dice)
{
    const std::size_t count = pending.size();
    std::vector<Loss> losses;
    losses.emplace_back(count, Reached { false });
    losses.emplace_back(count, Reached { true });
    for (std::size_t i = 0; i < count; ++i) {
        Loss missing(count, Reached { true });
        missing.at(i).any = false;
        losses.push_back(missing);
        Loss alone(count, Reached { false });
        alone.at(i).any = true;
        losses.push_back(alone);
        Loss upTo(count, Reached { false });
        std::fill_n(upTo.begin(), i + 1, Reached { true });
        losses.push_back(upTo);
    }
    addTorn(losses, pending, true);
    if (thoroughness.tornAlone) {
        addTorn(losses, pending, false);
    }
    if (count > 1) {
        for (int i = 0; i < thoroughness.shuffles; ++i) {
            losses.push_back(shuffled(pending, i % 2 == 1, dice));
        }
    }
    return losses;
}
