#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Sums and points in whole kopecks, a point being worth a rouble. Nothing here goes through floating point.
namespace sandbox {

using Kopecks = std::int64_t;

/// The largest sum that is accepted, ten billion roubles: far above any cheque, and any two of them can be added.
inline constexpr Kopecks moneyLimit = 1'000'000'000'000;

enum class Rounding { down, nearest, up };

/// The number in units of its last decimal, when the text is a number with exactly that many decimals, written without
/// needless zeros in front: "12.50" with two decimals is 1250. Beyond `moneyLimit` is no number either. [any-thread]
[[nodiscard]] std::optional<std::int64_t> parseFixed(std::string_view text, int decimals);

/// The same for texts that people write: up to that many decimals, so that "5" with two decimals is 500. [any-thread]
[[nodiscard]] std::optional<std::int64_t> parseDecimal(std::string_view text, int decimals);

/// Roubles with two decimals: 1250 is "12.50". [any-thread]
[[nodiscard]] std::string moneyText(Kopecks sum);

/// `value * factor / divisor`, exact up to the one rounding, which works on the distance from zero: `nearest` takes a
/// half away from zero. The divisor is positive, and the result must fit. [any-thread]
[[nodiscard]] std::int64_t multiplyDivide(std::int64_t value, std::int64_t factor, std::int64_t divisor,
                                          Rounding rounding);

}
