#include "sandbox/accrual.h"

#include "sandbox/points.h"
#include "sandbox/refusal.h"
#include "sandbox/request_log.h"
#include "sandbox/returned_goods.h"
#include "sandbox/slip.h"

#include <numeric>

namespace sandbox {

namespace {

[[nodiscard]] Kopecks total(const std::vector<Kopecks>& sums)
{
    return std::accumulate(sums.begin(), sums.end(), Kopecks { 0 });
}

}

Accrual::Accrual(Database& state, const Rules& serviceRules)
    : rules(serviceRules)
    , cheques(state)
    , ledger(state)
{
}

AccrualAnswer Accrual::accept(const Cheque& cheque, std::int64_t request)
{
    if (cheque.uid.empty()) {
        throw Refusal("Неверный чек: пустой ChequeUID");
    }
    if (cheque.status == ChequeStatus::open) {
        throw Refusal("Неверный чек: чек ещё открыт");
    }
    if (const auto booked = cheques.find(cheque.uid)) {
        return { booked->result, booked->canonical == cheque.canonical ? outcome::repeat : outcome::conflict };
    }
    if (cheque.card && rules.findCard(cheque.card->number) == nullptr) {
        throw Refusal("Карта " + cheque.card->number + " не найдена");
    }
    const Booking booking = book(cheque, request);
    cheques.add(cheque, booking, request);
    return { booking.result, outcome::answered };
}

Booking Accrual::book(const Cheque& cheque, std::int64_t request)
{
    Booking booking;
    if (cheque.status == ChequeStatus::canceled) {
        booking.note = settle(cheque, 0, entry::giveBack, request);
        return booking;
    }
    switch (cheque.type) {
    case ChequeType::sale:
        return bookSale(cheque, request);
    case ChequeType::back:
        return bookReturn(cheque, request);
    case ChequeType::other:
        break;
    }
    booking.note = settle(cheque, cheque.spent(), entry::settle, request);
    booking.spent = cheque.spent();
    return booking;
}

Booking Accrual::bookSale(const Cheque& cheque, std::int64_t request)
{
    Booking booking;
    booking.note = settle(cheque, cheque.spent(), entry::settle, request);
    booking.spent = cheque.spent();
    if (cheque.card && rules.findCard(cheque.card->number)->isBlocked) {
        booking.note = "the card is blocked and earns nothing";
    } else if (cheque.card) {
        booking.earnedByLine = earnedByLine(cheque, rules.points);
        booking.earned = total(booking.earnedByLine);
        ledger.add(cheque.card->number, cheque.uid, entry::earn, booking.earned, request);
    }
    booking.result = slipOf(cheque, booking.earned);
    return booking;
}

Booking Accrual::bookReturn(const Cheque& cheque, std::int64_t request)
{
    // What a return shows as spent is the sale's affair, so only a spending on the return itself is undone here.
    Booking booking;
    booking.note = settle(cheque, 0, entry::giveBack, request);
    const auto sale = cheque.sale ? cheques.findSale(*cheque.sale) : std::nullopt;
    if (sale) {
        booking.sale = sale->uid;
        const ReturnedPoints points = takeBackGoods(cheques, sale->uid, cheque, booking.note);
        if (sale->card) {
            booking.earned = -points.earned;
            booking.spent = -points.spent;
            ledger.add(*sale->card, cheque.uid, entry::returnEarned, -points.earned, request);
            ledger.add(*sale->card, cheque.uid, entry::returnSpent, points.spent, request);
        }
    } else if (cheque.card) {
        booking.note = "the sale is not known: points are taken back by the present rules";
        booking.earned = -total(earnedByLine(cheque, rules.points));
        ledger.add(cheque.card->number, cheque.uid, entry::returnEarned, booking.earned, request);
    }
    return booking;
}

std::string Accrual::settle(const Cheque& cheque, Kopecks spent, std::string_view kind, std::int64_t request)
{
    std::string note;
    auto before = ledger.spentOn(cheque.uid);
    if (cheque.card) {
        before.try_emplace(cheque.card->number, 0);
    }
    for (const auto& [card, points] : before) {
        const bool isOwn = cheque.card && cheque.card->number == card;
        const Kopecks difference = points - (isOwn ? spent : 0);
        ledger.add(card, cheque.uid, kind, difference, request);
        if (difference != 0) {
            note = difference > 0 ? "points that were subtracted before are given back: the cheque does not show them"
                                  : "points that the cheque shows are taken: they were not subtracted before";
        }
    }
    return note;
}

std::string Accrual::slipOf(const Cheque& cheque, Kopecks earned) const
{
    Placeholders values { { "cheque", cheque.number },
                          { "shift", cheque.shift },
                          { "time", cheque.closeTime },
                          { "uid", cheque.uid },
                          { "amount", moneyText(cheque.amount) },
                          { "barcode", chequeBarcode(cheque.number) } };
    if (!cheque.card) {
        return slipText(rules.slip.withoutCard, values);
    }
    values["card"] = cheque.card->number;
    values["earned"] = moneyText(earned);
    values["spent"] = moneyText(cheque.spent());
    values["balance"] = moneyText(ledger.balance(cheque.card->number));
    return slipText(rules.slip.withCard, values);
}

}
