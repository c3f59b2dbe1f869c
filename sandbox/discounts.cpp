#include "sandbox/discounts.h"

#include <algorithm>

namespace sandbox {

namespace {

constexpr std::int64_t wholePercent = 10'000;

/// A sum while discounts are being taken off it.
struct Ground {
    Kopecks sum = 0; // percents are taken of it
    Kopecks room = 0; // what discounts may still take

    void take(std::vector<GrantedDiscount>& granted, int id, int percent)
    {
        const Kopecks whole = multiplyDivide(sum, percent, wholePercent, Rounding::nearest);
        const Kopecks amount = std::min(whole, room);
        if (amount > 0) {
            granted.push_back({ id, amount, amount == whole ? percent : 0 });
            room -= amount;
        }
    }
};

[[nodiscard]] bool applies(const DiscountRule& rule, const Cheque& cheque)
{
    const bool cardFits = rule.card == CardNeed::any || (rule.card == CardNeed::required) == cheque.card.has_value();
    return cardFits && cheque.amount >= rule.from;
}

[[nodiscard]] Ground groundOf(const ChequeLine& line, const Rules& rules)
{
    Kopecks sum = line.amount;
    for (const LineDiscount& discount : line.discounts) {
        sum += rules.grantsDiscount(discount.id) ? discount.amount : 0;
    }
    return { std::max<Kopecks>(sum, 0), std::max<Kopecks>(sum - line.minAmount, 0) };
}

void grantOnLine(const ChequeLine& line, const Cheque& cheque, const Rules& rules, Ground& ground,
                 std::vector<GrantedDiscount>& granted)
{
    for (const DiscountRule& rule : rules.discounts) {
        if (rule.place == Place::line && applies(rule, cheque)
            && (rule.items.empty() || rule.items.contains(line.item))) {
            ground.take(granted, rule.id, rule.percent);
        }
    }
    for (const std::string& number : line.coupons) {
        const CouponRule* const coupon = rules.findCoupon(number);
        if (coupon != nullptr && !coupon->isRefused && coupon->place == Place::line) {
            ground.take(granted, coupon->id, coupon->percent);
        }
    }
}

void grantOnCheque(const Cheque& cheque, const Rules& rules, Ground ground, std::vector<GrantedDiscount>& granted)
{
    for (const DiscountRule& rule : rules.discounts) {
        if (rule.place == Place::cheque && applies(rule, cheque)) {
            ground.take(granted, rule.id, rule.percent);
        }
    }
    for (const std::string& number : cheque.coupons) {
        const CouponRule* const coupon = rules.findCoupon(number);
        if (coupon != nullptr && !coupon->isRefused && coupon->place == Place::cheque) {
            ground.take(granted, coupon->id, coupon->percent);
        }
    }
}

[[nodiscard]] std::string percentText(int percent)
{
    std::string text = moneyText(percent);
    text.erase(text.find_last_not_of('0') + 1);
    text.erase(text.find_last_not_of('.') + 1);
    return text;
}

[[nodiscard]] std::string discountText(const GrantedDiscount& discount)
{
    const bool isPercent = discount.percent != 0;
    return "<Discount DiscountID=\"" + std::to_string(discount.id) + "\" Type=\"" + (isPercent ? "Percent" : "Amount")
        + "\" Percent=\"" + percentText(discount.percent) + "\" Amount=\"" + moneyText(discount.amount) + "\"/>";
}

}

Grants grantDiscounts(const Cheque& cheque, const Rules& rules)
{
    Grants grants;
    Ground rest;
    for (const ChequeLine& line : cheque.lines) {
        if (!line.takesDiscounts) {
            continue;
        }
        Ground ground = groundOf(line, rules);
        LineGrant grant { line.number, {} };
        grantOnLine(line, cheque, rules, ground, grant.discounts);
        for (const GrantedDiscount& discount : grant.discounts) {
            rest.sum -= discount.amount;
        }
        rest.sum += ground.sum;
        rest.room += ground.room;
        if (!grant.discounts.empty()) {
            grants.ofLines.push_back(std::move(grant));
        }
    }
    grantOnCheque(cheque, rules, rest, grants.ofCheque);
    return grants;
}

std::string discountsText(const Grants& grants)
{
    if (grants.ofCheque.empty() && grants.ofLines.empty()) {
        return {};
    }
    std::string text = "<Answer><Cheque>";
    for (const GrantedDiscount& discount : grants.ofCheque) {
        text += discountText(discount);
    }
    text += "</Cheque>";
    for (const LineGrant& grant : grants.ofLines) {
        text += "<ChequeLine ChequeLineNo=\"" + std::to_string(grant.line) + "\">";
        for (const GrantedDiscount& discount : grant.discounts) {
            text += discountText(discount);
        }
        text += "</ChequeLine>";
    }
    return text + "</Answer>";
}

}
