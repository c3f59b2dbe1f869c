#pragma once

#include "sandbox/database.h"
#include "sandbox/money.h"

#include <map>
#include <string>
#include <vector>

namespace sandbox {

/// Why points came to a card or left it.
namespace entry {
inline constexpr std::string_view subtract = "subtract"; // spent on an open cheque
inline constexpr std::string_view cancel = "cancel"; // given back before the close
inline constexpr std::string_view settle = "settle"; // what the closed cheque says, less what was spent before
inline constexpr std::string_view giveBack = "give-back"; // a cancelled cheque's spending
inline constexpr std::string_view earn = "earn";
inline constexpr std::string_view returnEarned = "return-earned"; // points of a sale taken back with its goods
inline constexpr std::string_view returnSpent = "return-spent"; // and points spent on them given back
}

/// The points of the cards: entries that are only ever added. Everything runs inside the caller's transaction.
class Ledger {
public:
    explicit Ledger(Database& state);

    /// Makes the card known, unless it is. Its opening balance is that of the first time.
    void addCard(const std::string& number, Kopecks opening);

    /// May be below zero. 0 for a card that is not known.
    [[nodiscard]] Kopecks balance(const std::string& card) const;

    /// A zero adds nothing.
    void add(const std::string& card, const std::string& uid, std::string_view kind, Kopecks points,
             std::int64_t request);

    /// What the cards have spent on the cheque and not got back, cards with nothing left out.
    [[nodiscard]] std::map<std::string, Kopecks> spentOn(const std::string& uid) const;
    [[nodiscard]] Kopecks spentOn(const std::string& uid, const std::string& card) const;

    /// What the card has got back of its spending on the cheque.
    [[nodiscard]] Kopecks givenBackOn(const std::string& uid, const std::string& card) const;

private:
    Database& database;
};

}
