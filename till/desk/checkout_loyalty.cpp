#include "till/desk/checkout.h"

#include "till/desk/cashier.h"
#include "till/desk/desk_error.h"
#include "till/document/card.h"
#include "till/document/totals.h"
#include "till/money/kopecks.h"

namespace till {

namespace {

    const QString tillGroup = QStringLiteral("Till");
    const QString rollbackKey = QStringLiteral("rollback");

    [[nodiscard]] QString money(double sum)
    {
        return QString::number(sum, 'f', 2);
    }

} // namespace

/// Shows the cashier why a hook has failed, and passes its result on.
bool Checkout::told(bool result) const
{
    const QString text = system.getLastErrorString().ru();
    if (!result && !text.isEmpty()) {
        cashier().show(text);
    }
    system.clearLastErrorString();
    return result;
}

bool Checkout::presentCard(const QString& number)
{
    ChequeContents& cheque = contents();
    requireNoPoints();
    CardFields fields;
    fields.number = number;
    const auto card = QSharedPointer<Card>::create(fields);
    QSharedPointer<DocumentCardRecord> record = card;
    system.clearLastErrorString();
    const bool ours = system.identifyByCard(record, ECardNumberType());
    if (!ours) {
        if (system.getLastErrorString().ru().isEmpty()) {
            cashier().show(QStringLiteral("Карта %1 не принята").arg(number));
        }
        return told(false);
    }
    constexpr int loyaltyCard = 1; // this till's own kind
    cheque.setCard(system.getCardMode(), loyaltyCard, card);
    cashier().show(QStringLiteral("Карта %1, баллов: %2").arg(number, money(card->fields.bonusBalance.toDouble())));
    linesChanged();
    return true;
}

bool Checkout::presentPhone(const QString& number)
{
    static_cast<void>(contents());
    const CardNumberResult found = system.getCardNumber({ loyalty::CardNumberInputData::phone, number });
    if (!found.ok) {
        cashier().show(found.error.ru());
    }
    return found.ok && !found.cardNumber.isEmpty() && presentCard(found.cardNumber);
}

bool Checkout::request()
{
    requireSale();
    requireLines();
    requireNoPoints();
    ChequeContents& cheque = contents();
    system.clearLastErrorString();
    // Asked about the cheque without its own discounts: the service grants each anew, and would count them twice.
    const QList<QSharedPointer<DocumentImpact>> former = cheque.impacts;
    setLoyaltyDiscounts(cheque, {});
    const bool done = system.request(current);
    const QList<QSharedPointer<DiscountImpact>> granted = system.getDiscountImpacts();
    if (!done || (granted.isEmpty() && keepsDiscounts)) {
        cheque.impacts = former;
        workOutLines(cheque);
    } else {
        setLoyaltyDiscounts(cheque, granted);
        keepsDiscounts = false;
    }
    if (done) {
        for (const QString& message : system.getMessagesToCashier()) {
            cashier().show(QStringLiteral("Кассиру: ") + message);
        }
        for (const QString& message : system.getMessagesToClient()) {
            cashier().show(QStringLiteral("Покупателю: ") + message);
        }
        changed = false;
    }
    save();
    return told(done);
}

bool Checkout::requestIfChanged()
{
    return !changed || request();
}

bool Checkout::payPoints(std::optional<double> amount)
{
    requireSale();
    requireLines();
    requireNoPoints();
    if (!system.hasCard()) {
        throw DeskError(QStringLiteral("points are spent with a card: present one first"));
    }
    if (amount && *amount <= 0.0) {
        throw DeskError(QStringLiteral("the amount of points must be above zero"));
    }
    if (!requestIfChanged()) {
        return false;
    }

    ChequeContents& cheque = contents();
    system.clearLastErrorString();
    // The plug-in tells the service its discounts besides the document: on both, they would count twice.
    const QList<QSharedPointer<DocumentImpact>> discounted = cheque.impacts;
    if (!system.getDiscountImpacts().isEmpty()) {
        setLoyaltyDiscounts(cheque, {});
    }
    const bool offered = system.hasPointsForSpend();
    cheque.impacts = discounted;
    workOutLines(cheque);
    save();
    if (!offered) {
        if (system.getLastErrorString().ru().isEmpty()) {
            cashier().show(QStringLiteral("Нет баллов для списания"));
        }
        return told(false);
    }

    cheque.head.sumToPay = roomForPoints(cheque);
    const double most = system.getPointsForSpend(current);
    if (amount && kopecks(*amount) > kopecks(most)) {
        throw DeskError(QStringLiteral("points can pay %1 at most").arg(money(most)));
    }
    system.setPointsForSpend(current, amount.value_or(most));
    const Rollback former = rollbackMark();
    markRollback(Rollback::none); // goes to disk with the spending, if it comes to one
    const bool spent = system.spendPoints();
    if (!system.hasBonusImpacts()) {
        markRollback(former);
    }
    keepsDiscounts = true;
    setSpentPoints(cheque, system.getBonusImpactsForSpend());
    save();
    return told(spent && system.hasBonusImpacts());
}

bool Checkout::rollback()
{
    static_cast<void>(contents());
    system.clearLastErrorString();
    markRollback(Rollback::asked);
    save();
    const bool done = system.rollback(current);
    if (done) {
        setSpentPoints(contents(), {});
        changed = true;
        keepsDiscounts = true;
    }
    markRollback(done ? Rollback::done : Rollback::none);
    save();
    return told(done);
}

// A roll-back stores nothing in the plug-in's name: what it had stored before would bring the spending back after a
// crash. The till remembers it with the document, until points are spent anew.

void Checkout::markRollback(Rollback mark) const
{
    current->setValue(tillGroup, rollbackKey, static_cast<int>(mark));
}

Checkout::Rollback Checkout::rollbackMark() const
{
    return static_cast<Rollback>(current->getValue(tillGroup, rollbackKey, 0).toInt());
}

/// After a restart: the plug-in has taken its stored state up again.
void Checkout::repeatRollback()
{
    switch (rollbackMark()) {
    case Rollback::none:
        break;
    case Rollback::asked: // nobody knows whether the service has heard of it
        static_cast<void>(rollback());
        break;
    case Rollback::done:
        static_cast<void>(system.cancel());
        break;
    }
}

} // namespace till
