#include "sandbox/money.h"

#include <cstdlib>

namespace sandbox {

namespace {

// The product of two sums needs more than 64 bits.
__extension__ using Wide = __int128;

[[nodiscard]] bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

[[nodiscard]] std::optional<std::int64_t> parse(std::string_view text, int decimals, bool exactly)
{
    const bool negative = text.starts_with('-');
    if (negative) {
        text.remove_prefix(1);
    }
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view fraction = point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
    const auto wanted = static_cast<std::size_t>(decimals);
    const bool hasPoint = point != std::string_view::npos;
    if (whole.empty() || (whole.size() > 1 && whole.front() == '0') || (hasPoint && fraction.empty())
        || fraction.size() > wanted || (exactly && fraction.size() != wanted)) {
        return {};
    }
    std::int64_t value = 0;
    std::string digits(whole);
    digits.append(fraction).append(wanted - fraction.size(), '0');
    for (const char c : digits) {
        if (!isDigit(c)) {
            return {};
        }
        value = value * 10 + (c - '0');
        if (value > moneyLimit) {
            return {};
        }
    }
    return negative ? -value : value;
}

}

std::optional<std::int64_t> parseFixed(std::string_view text, int decimals)
{
    return parse(text, decimals, true);
}

std::optional<std::int64_t> parseDecimal(std::string_view text, int decimals)
{
    return parse(text, decimals, false);
}

std::string moneyText(Kopecks sum)
{
    const std::int64_t distance = std::abs(sum);
    std::string fraction = std::to_string(distance % 100);
    fraction.insert(0, 2 - fraction.size(), '0');
    return (sum < 0 ? "-" : "") + std::to_string(distance / 100) + '.' + fraction;
}

std::int64_t multiplyDivide(std::int64_t value, std::int64_t factor, std::int64_t divisor, Rounding rounding)
{
    const Wide product = static_cast<Wide>(value) * factor;
    const Wide distance = product < 0 ? -product : product;
    Wide quotient = distance / divisor;
    const Wide rest = distance % divisor;
    if ((rounding == Rounding::up && rest != 0) || (rounding == Rounding::nearest && rest * 2 >= divisor)) {
        ++quotient;
    }
    return static_cast<std::int64_t>(product < 0 ? -quotient : quotient);
}

}
