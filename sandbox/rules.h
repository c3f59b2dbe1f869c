#pragma once

#include "sandbox/money.h"

#include <filesystem>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

/// What the service answers: the contents of the rule file.
namespace sandbox {

struct Credentials {
    std::string user;
    std::string password;
};

struct CardRule {
    std::string number;
    std::string phone; // empty when the card is not found by telephone
    std::string code; // the confirmation code that is "sent" to the telephone
    Kopecks balance = 0; // when the state is new
    bool isBlocked = false;
};

enum class Place { cheque, line };
enum class CardNeed { any, required, absent };

struct DiscountRule {
    int id = 0;
    Place place = Place::cheque;
    int percent = 0; // hundredths of a percent
    CardNeed card = CardNeed::any;
    Kopecks from = 0; // the cheque's sum that it needs
    std::set<std::string> items; // empty for all goods
};

struct CouponRule {
    std::string number;
    bool isRefused = false;
    int id = 0;
    Place place = Place::cheque;
    int percent = 0; // hundredths of a percent
};

struct PointRule {
    int payable = 0; // hundredths of a percent of the cheque
    std::int64_t perRouble = 0; // millionths of a point
    Kopecks step = 1; // earned points are a multiple of it
    Rounding rounding = Rounding::down;
};

struct MessageRule {
    int device = 0;
    CardNeed card = CardNeed::any;
    Kopecks from = 0;
    std::string text; // with placeholders
};

struct SlipRule {
    std::string withCard; // XML or plain text, with placeholders; empty for no slip
    std::string withoutCard;
};

struct Rules {
    std::optional<Credentials> credentials; // none: everybody is let in
    std::vector<CardRule> cards;
    std::vector<DiscountRule> discounts;
    std::vector<CouponRule> coupons;
    PointRule points;
    std::vector<MessageRule> messages;
    SlipRule slip;

    [[nodiscard]] const CardRule* findCard(const std::string& number) const;
    /// By the last ten digits, so that +7 and 8 in front are the same. [any-thread]
    [[nodiscard]] const CardRule* findPhone(const std::string& phone) const;
    [[nodiscard]] const CouponRule* findCoupon(const std::string& number) const;
    /// Whether a discount of that number is one of this service's. [any-thread]
    [[nodiscard]] bool grantsDiscount(int id) const;
};

/// A mistake in the rule file. The text is one line: file, line, and what to do.
class RulesMistake : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws `RulesMistake`. [any-thread] [blocks: for the disk]
[[nodiscard]] Rules readRules(const std::filesystem::path& file);

}
