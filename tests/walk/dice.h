#pragma once

#include <cstdint>
#include <random>

namespace walk {

/// Numbers that follow from the seed and the number of the walk alone. The engine is the same with every library; the
/// distributions of the standard are not, so they are left out. A value.
class Dice {
public:
    Dice(std::uint64_t seed, std::uint64_t walk)
        : engine(seed + walk * 0x9E3779B97F4A7C15U)
    {
    }

    /// From 0 to `count` - 1; `count` is at least 1.
    [[nodiscard]] int below(int count)
    {
        return static_cast<int>(engine() % static_cast<std::uint64_t>(count));
    }

    /// True once in so many throws.
    [[nodiscard]] bool onceIn(int count)
    {
        return below(count) == 0;
    }

    /// An entry of a list that is not empty.
    template <class List>
    [[nodiscard]] auto oneOf(const List& list)
    {
        return list.at(below(static_cast<int>(list.size())));
    }

private:
    std::mt19937_64 engine;
};

} // namespace walk
