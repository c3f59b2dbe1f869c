#pragma once

#include "sandbox/cheque.h"
#include "sandbox/database.h"

#include <optional>
#include <string>
#include <vector>

namespace sandbox {

/// A cheque that is in the books.
struct BookedCheque {
    std::string uid;
    std::optional<std::string> card;
    std::string canonical;
    std::string result; // the result text that its first accrual was answered with
};

/// What a cheque did when it was booked.
struct Booking {
    Kopecks earned = 0; // below zero when points were taken back
    Kopecks spent = 0; // below zero when points were given back
    std::string sale; // the UID of the sale that a return reverses; empty when none was found
    std::string note; // what the person who reads the books should know
    std::string result;
    std::vector<Kopecks> earnedByLine; // empty for cheques that earn nothing
};

/// A line of a sale, with what has been returned of it.
struct SoldLine {
    int number = 0;
    std::string item;
    std::int64_t quantity = 0;
    Kopecks spent = 0;
    Kopecks earned = 0;
    std::int64_t returned = 0;
};

/// The finished cheques. Everything runs inside the caller's transaction.
class ChequeBook {
public:
    explicit ChequeBook(Database& state);

    [[nodiscard]] std::optional<BookedCheque> find(const std::string& uid) const;

    /// The closed sale of that number and opening time; the latest, should there be several.
    [[nodiscard]] std::optional<BookedCheque> findSale(const SaleReference& sale) const;

    /// Throws `DatabaseFailure` when the UID is in the books.
    void add(const Cheque& cheque, const Booking& booking, std::int64_t request);

    [[nodiscard]] std::vector<SoldLine> soldLines(const std::string& uid) const;
    void setReturned(const std::string& uid, int line, std::int64_t quantity);

private:
    Database& database;
};

}
