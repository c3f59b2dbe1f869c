#include "sandbox/rules.h"

#include <algorithm>

namespace sandbox {

namespace {

[[nodiscard]] std::string significantDigits(const std::string& phone)
{
    std::string digits;
    std::ranges::copy_if(phone, std::back_inserter(digits), [](char c) { return c >= '0' && c <= '9'; });
    return digits.size() > 10 ? digits.substr(digits.size() - 10) : digits;
}

template <typename Rule, typename Value>
[[nodiscard]] const Rule* find(const std::vector<Rule>& rules, const Value& value, Value Rule::*field)
{
    const auto found = std::ranges::find(rules, value, field);
    return found == rules.end() ? nullptr : &*found;
}

}

const CardRule* Rules::findCard(const std::string& number) const
{
    return find(cards, number, &CardRule::number);
}

const CardRule* Rules::findPhone(const std::string& phone) const
{
    const std::string wanted = significantDigits(phone);
    const auto found = std::ranges::find_if(cards, [&wanted](const CardRule& card) {
        return !card.phone.empty() && significantDigits(card.phone) == wanted;
    });
    return found == cards.end() ? nullptr : &*found;
}

const CouponRule* Rules::findCoupon(const std::string& number) const
{
    return find(coupons, number, &CouponRule::number);
}

bool Rules::grantsDiscount(int id) const
{
    return find(discounts, id, &DiscountRule::id) != nullptr
        || std::ranges::any_of(coupons,
                               [id](const CouponRule& coupon) { return !coupon.isRefused && coupon.id == id; });
}

}
