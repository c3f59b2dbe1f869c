#include "sandbox/spending.h"

#include "sandbox/points.h"
#include "sandbox/refusal.h"

namespace sandbox {

Spending::Spending(Database& state, const Rules& serviceRules)
    : rules(serviceRules)
    , cheques(state)
    , ledger(state)
{
}

Kopecks Spending::limit(const std::string& card, const Cheque& cheque) const
{
    requireCard(card, cheque);
    return spendable(cheque, rules.points, ledger.balance(card), ledger.spentOn(cheque.uid, card));
}

std::string Spending::subtract(const std::string& card, Kopecks amount, const Cheque& cheque, std::int64_t request)
{
    requireCard(card, cheque);
    requireChange(amount, cheque);
    if (cheques.find(cheque.uid)) {
        throw Refusal("Чек уже закрыт, списание баллов невозможно");
    }
    if (amount > ledger.balance(card)) {
        throw Refusal("Недостаточно баллов: на карте " + moneyText(ledger.balance(card)));
    }
    const Kopecks most = limit(card, cheque);
    if (amount > most) {
        throw Refusal("Сумма списания больше допустимой: " + moneyText(most));
    }
    ledger.add(card, cheque.uid, entry::subtract, -amount, request);
    std::string lines;
    for (const LinePoints& line : spreadSpending(cheque, rules.points, amount)) {
        lines += "<ChequeLine ChequeLineNo=\"" + std::to_string(line.line) + "\" Amount=\"" + moneyText(line.amount)
            + "\"/>";
    }
    return "<Answer>" + lines + "</Answer>";
}

bool Spending::cancel(const std::string& card, Kopecks amount, const Cheque& cheque, std::int64_t request)
{
    requireCard(card, cheque);
    requireChange(amount, cheque);
    const Kopecks spent = ledger.spentOn(cheque.uid, card);
    const bool isBooked = cheques.find(cheque.uid).has_value();
    if (!isBooked && amount <= spent) {
        ledger.add(card, cheque.uid, entry::cancel, amount, request);
        return true;
    }
    // The reply to an earlier cancel may have been lost; to refuse the repeat would leave the till with it for ever.
    if (spent == 0 && amount <= ledger.givenBackOn(cheque.uid, card)) {
        return false;
    }
    throw Refusal(isBooked ? "Чек уже закрыт, отмена списания невозможна"
                           : "Отмена больше списанного по чеку: " + moneyText(spent));
}

void Spending::requireCard(const std::string& card, const Cheque& cheque) const
{
    requireValidCard(rules, card);
    if (!cheque.card || cheque.card->number != card) {
        throw Refusal("Карта " + card + " не совпадает с картой чека");
    }
}

void Spending::requireChange(Kopecks amount, const Cheque& cheque) const
{
    if (amount <= 0) {
        throw Refusal("Неверный запрос: сумма баллов должна быть больше нуля");
    }
    if (cheque.uid.empty()) {
        throw Refusal("Неверный чек: пустой ChequeUID");
    }
}

void requireValidCard(const Rules& rules, const std::string& card)
{
    const CardRule* const rule = rules.findCard(card);
    if (rule == nullptr) {
        throw Refusal("Карта " + card + " не найдена");
    }
    if (rule->isBlocked) {
        throw Refusal("Карта " + card + " заблокирована");
    }
}

}
