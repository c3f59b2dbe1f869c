#include "sandbox/placeholders.h"
#include "sandbox/rule_map.h"
#include "sandbox/rules.h"
#include "sandbox/slip.h"

#include <algorithm>
#include <fstream>

namespace sandbox {

namespace {

constexpr std::int64_t wholePercent = 10'000; // in hundredths
constexpr std::int64_t perRoubleMost = 100'000'000; // a hundred points, in millionths
constexpr int idMost = 2'147'483'647;

[[nodiscard]] CardNeed needOf(const RuleMap& map)
{
    static constexpr CardNeed needs[] = { CardNeed::any, CardNeed::required, CardNeed::absent };
    return needs[map.choice("card", { "any", "required", "absent" })];
}

[[nodiscard]] Place placeOf(const RuleMap& map)
{
    return map.choice("place", { "cheque", "line" }) == 0 ? Place::cheque : Place::line;
}

template <typename Rule, typename Value>
void requireOnce(const RuleMap& map, const char* key, const std::vector<Rule>& rules, const Value& value,
                 Value Rule::*field)
{
    if (std::ranges::find(rules, value, field) != rules.end()) {
        map.fail(key, std::string("another entry has the same \"") + key + "\"; keep one of them");
    }
}

void readCards(const RuleMap& root, Rules& rules)
{
    for (const RuleMap& map : root.maps("cards", "a card", { "number", "phone", "code", "balance", "blocked" })) {
        CardRule card;
        card.number = map.text("number");
        requireOnce(map, "number", rules.cards, card.number, &CardRule::number);
        card.phone = map.text("phone", "");
        if (!card.phone.empty()) {
            if (rules.findPhone(card.phone) != nullptr) {
                map.fail("phone", "another card has the same \"phone\"; keep one of them");
            }
            card.code = map.text("code");
        } else if (map.has("code")) {
            map.fail("code", "\"code\" is for cards with a \"phone\"; add one or take the code away");
        }
        if (card.code.find(':') != std::string::npos || card.number.find(':') != std::string::npos) {
            map.fail("number", "neither \"number\" nor \"code\" may hold a colon");
        }
        card.balance = map.number("balance", 2, moneyLimit, 0);
        card.isBlocked = map.yes("blocked");
        rules.cards.push_back(std::move(card));
    }
}

void readDiscounts(const RuleMap& root, Rules& rules)
{
    for (const RuleMap& map :
         root.maps("discounts", "a discount", { "id", "place", "percent", "card", "from", "items" })) {
        DiscountRule discount;
        discount.id = map.integer("id", 1, idMost);
        requireOnce(map, "id", rules.discounts, discount.id, &DiscountRule::id);
        discount.place = placeOf(map);
        discount.percent = static_cast<int>(map.number("percent", 2, wholePercent));
        discount.card = needOf(map);
        discount.from = map.number("from", 2, moneyLimit, 0);
        for (std::string& item : map.texts("items")) {
            discount.items.insert(std::move(item));
        }
        if (discount.place == Place::cheque && !discount.items.empty()) {
            map.fail("items", "\"items\" is for discounts with \"place: line\"");
        }
        rules.discounts.push_back(std::move(discount));
    }
}

void readCoupons(const RuleMap& root, Rules& rules)
{
    for (const RuleMap& map : root.maps("coupons", "a coupon", { "number", "id", "place", "percent", "refused" })) {
        CouponRule coupon;
        coupon.number = map.text("number");
        requireOnce(map, "number", rules.coupons, coupon.number, &CouponRule::number);
        coupon.isRefused = map.yes("refused");
        if (!coupon.isRefused) {
            coupon.id = map.integer("id", 1, idMost);
            requireOnce(map, "id", rules.discounts, coupon.id, &DiscountRule::id);
            requireOnce(map, "id", rules.coupons, coupon.id, &CouponRule::id);
            coupon.place = placeOf(map);
            coupon.percent = static_cast<int>(map.number("percent", 2, wholePercent));
        }
        rules.coupons.push_back(std::move(coupon));
    }
}

void readPoints(const RuleMap& root, Rules& rules)
{
    static constexpr Rounding roundings[] = { Rounding::down, Rounding::nearest, Rounding::up };
    const RuleMap map = root.map("points", { "payable", "per-rouble", "step", "rounding" });
    rules.points.payable = static_cast<int>(map.number("payable", 2, wholePercent, 0));
    rules.points.perRouble = map.number("per-rouble", 6, perRoubleMost, 0);
    rules.points.step = map.number("step", 2, moneyLimit, 1);
    if (rules.points.step == 0) {
        map.fail("step", "\"step\" must be greater than 0, as in 0.01 or 1");
    }
    rules.points.rounding = roundings[map.choice("rounding", { "down", "nearest", "up" })];
}

void readMessages(const RuleMap& root, Rules& rules)
{
    for (const RuleMap& map : root.maps("messages", "a message", { "device", "card", "from", "text" })) {
        MessageRule message;
        message.device = map.integer("device", 0, idMost);
        message.card = needOf(map);
        message.from = map.number("from", 2, moneyLimit, 0);
        message.text = map.text("text");
        for (const std::string& name : placeholdersOf(message.text)) {
            if (std::ranges::find(messagePlaceholders(), name) == messagePlaceholders().end()) {
                map.fail("text", "{" + name + "} is not known in a message; known are {amount}, {card}, {balance}");
            }
            if (name != "amount" && message.card != CardNeed::required) {
                map.fail("text", "{" + name + "} needs \"card: required\"");
            }
        }
        rules.messages.push_back(std::move(message));
    }
}

void readSlip(const RuleMap& root, Rules& rules)
{
    const RuleMap map = root.map("slip", { "with-card", "without-card" });
    rules.slip.withCard = map.text("with-card", "");
    rules.slip.withoutCard = map.text("without-card", "");
    for (const char* const key : { "with-card", "without-card" }) {
        const std::string mistake = findSlipMistake(map.text(key, ""), std::string_view(key) == "with-card");
        if (!mistake.empty()) {
            map.fail(key, std::string("the slip \"") + key + "\" cannot be printed: " + mistake);
        }
    }
}

}

Rules readRules(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    if (!stream || std::filesystem::is_directory(file)) {
        throw RulesMistake(file.string() + ": cannot be read; name an existing rule file with --rules");
    }
    YAML::Node tree;
    try {
        tree = YAML::Load(stream);
    } catch (const YAML::Exception& mistake) {
        throw RulesMistake(file.string() + ':' + std::to_string(mistake.mark.line + 1) + ": not YAML: " + mistake.msg);
    }
    const RuleMap root(file.string(), tree, "the rule file",
                       { "credentials", "cards", "discounts", "coupons", "points", "messages", "slip" });
    Rules rules;
    if (root.has("credentials")) {
        const RuleMap map = root.map("credentials", { "user", "password" });
        rules.credentials = Credentials { map.text("user"), map.text("password") };
        if (rules.credentials->user.find(':') != std::string::npos) {
            map.fail("user", "\"user\" may not hold a colon");
        }
    }
    readCards(root, rules);
    readDiscounts(root, rules);
    readCoupons(root, rules);
    readPoints(root, rules);
    readMessages(root, rules);
    readSlip(root, rules);
    return rules;
}

}
