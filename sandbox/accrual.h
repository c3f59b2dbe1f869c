#pragma once

#include "sandbox/cheque.h"
#include "sandbox/cheque_book.h"
#include "sandbox/ledger.h"
#include "sandbox/rules.h"

#include <string>

namespace sandbox {

struct AccrualAnswer {
    std::string result; // the slip, or nothing
    std::string_view outcome; // answered, repeat or conflict
};

/// Books finished cheques: sales, returns, cancelled ones and those without a card. A cheque counts once, whatever
/// number of times it comes. Runs inside the caller's transaction.
class Accrual {
public:
    Accrual(Database& state, const Rules& serviceRules);

    /// Throws `Refusal` when the cheque is not finished, has no UID, or names a card that is not known.
    [[nodiscard]] AccrualAnswer accept(const Cheque& cheque, std::int64_t request);

private:
    [[nodiscard]] Booking book(const Cheque& cheque, std::int64_t request);
    [[nodiscard]] Booking bookSale(const Cheque& cheque, std::int64_t request);
    [[nodiscard]] Booking bookReturn(const Cheque& cheque, std::int64_t request);
    /// Makes the points spent on the cheque what it says, from what the cards have spent on it so far. Returns a note
    /// when the two differ.
    std::string settle(const Cheque& cheque, Kopecks spent, std::string_view kind, std::int64_t request);
    [[nodiscard]] std::string slipOf(const Cheque& cheque, Kopecks earned) const;

    const Rules& rules;
    ChequeBook cheques;
    Ledger ledger;
};

}
