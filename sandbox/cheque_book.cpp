#include "sandbox/cheque_book.h"

namespace sandbox {

namespace {

[[nodiscard]] std::optional<BookedCheque> read(Statement& query)
{
    if (!query.step()) {
        return {};
    }
    BookedCheque booked { query.text(0), {}, query.text(2), query.text(3) };
    if (!query.isNull(1)) {
        booked.card = query.text(1);
    }
    return booked;
}

[[nodiscard]] std::optional<std::string> numberOf(const std::optional<ChequeCard>& card)
{
    return card ? std::optional(card->number) : std::nullopt;
}

}

ChequeBook::ChequeBook(Database& state)
    : database(state)
{
}

std::optional<BookedCheque> ChequeBook::find(const std::string& uid) const
{
    Statement query(database, "SELECT uid, card, canonical, result FROM cheque WHERE uid = ?");
    query.bind(uid);
    return read(query);
}

std::optional<BookedCheque> ChequeBook::findSale(const SaleReference& sale) const
{
    Statement query(database,
                    "SELECT uid, card, canonical, result FROM cheque "
                    "WHERE number = ? AND open_time = ? AND type = 'Sale' AND status = 'Closed' "
                    "ORDER BY request DESC LIMIT 1");
    query.bind(sale.number).bind(sale.openTime);
    return read(query);
}

void ChequeBook::add(const Cheque& cheque, const Booking& booking, std::int64_t request)
{
    Statement(database,
              "INSERT INTO cheque (uid, type, status, number, shift, open_time, close_time, card, amount, earned, "
              "spent, sale, note, canonical, result, request) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .bind(cheque.uid)
        .bind(wordOf(cheque.type))
        .bind(wordOf(cheque.status))
        .bind(cheque.number)
        .bind(cheque.shift)
        .bind(cheque.openTime)
        .bind(cheque.closeTime)
        .bindOptional(numberOf(cheque.card))
        .bind(cheque.amount)
        .bind(booking.earned)
        .bind(booking.spent)
        .bindOptional(booking.sale.empty() ? std::nullopt : std::optional(booking.sale))
        .bind(booking.note)
        .bind(cheque.canonical)
        .bind(booking.result)
        .bind(request)
        .run();
    for (std::size_t i = 0; i < cheque.lines.size(); ++i) {
        const ChequeLine& line = cheque.lines[i];
        Statement(database,
                  "INSERT INTO line (uid, number, item, quantity, amount, spent, earned) VALUES (?, ?, ?, ?, ?, ?, ?)")
            .bind(cheque.uid)
            .bind(line.number)
            .bind(line.item)
            .bind(line.quantity)
            .bind(line.amount)
            .bind(line.bonus)
            .bind(booking.earnedByLine.empty() ? 0 : booking.earnedByLine[i])
            .run();
    }
}

std::vector<SoldLine> ChequeBook::soldLines(const std::string& uid) const
{
    Statement query(database,
                    "SELECT number, item, quantity, spent, earned, returned FROM line WHERE uid = ? ORDER BY number");
    query.bind(uid);
    std::vector<SoldLine> lines;
    while (query.step()) {
        lines.push_back({ static_cast<int>(query.integer(0)), query.text(1), query.integer(2), query.integer(3),
                          query.integer(4), query.integer(5) });
    }
    return lines;
}

void ChequeBook::setReturned(const std::string& uid, int line, std::int64_t quantity)
{
    Statement(database, "UPDATE line SET returned = ? WHERE uid = ? AND number = ?")
        .bind(quantity)
        .bind(uid)
        .bind(line)
        .run();
}

}
