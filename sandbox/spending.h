#pragma once

#include "sandbox/cheque.h"
#include "sandbox/cheque_book.h"
#include "sandbox/ledger.h"
#include "sandbox/rules.h"

#include <string>

namespace sandbox {

/// Points on open cheques. Runs inside the caller's transaction. All operations throw `Refusal` when the card is not
/// known or blocked, or is not the one on the cheque.
class Spending {
public:
    Spending(Database& state, const Rules& serviceRules);

    /// What may still be spent.
    [[nodiscard]] Kopecks limit(const std::string& card, const Cheque& cheque) const;

    /// Takes the points and returns the document with their spread over the lines. Each call is a spending of its own:
    /// the request has nothing by which a repeat could be told from a second wish. Throws `Refusal` also above the
    /// limit, and when the cheque has no UID or is in the books already.
    [[nodiscard]] std::string subtract(const std::string& card, Kopecks amount, const Cheque& cheque,
                                       std::int64_t request);

    /// Gives points back, of one spending or of several. What was given back before is not given twice: then the result
    /// is false. Throws `Refusal` also when the cheque has not spent that much.
    [[nodiscard]] bool cancel(const std::string& card, Kopecks amount, const Cheque& cheque, std::int64_t request);

private:
    void requireCard(const std::string& card, const Cheque& cheque) const;
    void requireChange(Kopecks amount, const Cheque& cheque) const;

    const Rules& rules;
    ChequeBook cheques;
    Ledger ledger;
};

/// Throws `Refusal` when the card is not known or blocked. [any-thread]
void requireValidCard(const Rules& rules, const std::string& card);

}
