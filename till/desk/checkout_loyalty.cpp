#include "till/desk/checkout.h"

#include "host/facilities/exceptions.h"
#include "host/facilities/finally.h"
#include "till/desk/cashier.h"
#include "till/desk/desk_error.h"
#include "till/desk/points_limit.h"
#include "till/document/card.h"
#include "till/document/totals.h"
#include "till/facilities/redaction.h"
#include "till/money/kopecks.h"

#include <algorithm>
#include <functional>

namespace till {

namespace {

    const QString tillGroup = QStringLiteral("Till");
    const QString rollbackKey = QStringLiteral("rollback");

    [[nodiscard]] QString money(double sum)
    {
        return QString::number(sum, 'f', 2);
    }

    /// Asks about the cheque without its own discounts: the service grants each anew, and the plug-in tells it those
    /// that it holds besides the document. They would count twice.
    [[nodiscard]] bool askUndiscounted(ChequeContents& cheque, const std::function<bool()>& question)
    {
        const QList<QSharedPointer<DocumentImpact>> impacts = cheque.impacts;
        const Finally back([&cheque, &impacts] { // also when the plug-in cannot save what it has learnt
            cheque.impacts = impacts;
            workOutLines(cheque);
        });
        setLoyaltyDiscounts(cheque, {});
        return question();
    }

} // namespace

/// Shows the cashier why a hook has failed, and passes its result on. The reason may be the server's own words, and a
/// server may repeat the credentials that it was sent.
bool Checkout::told(bool result) const
{
    const QString text = system.getLastErrorString().ru();
    if (!result && !text.isEmpty()) {
        cashier().show(redact(text));
    }
    system.clearLastErrorString();
    return result;
}

bool Checkout::presentCard(const QString& number)
{
    ChequeContents& cheque = contents();
    requireGoingOn();
    requireNoPoints();
    CardFields fields;
    fields.number = number;
    const auto card = QSharedPointer<Card>::create(fields);
    QSharedPointer<DocumentCardRecord> record = card;
    system.clearLastErrorString();
    const bool ours = hooks.identifyByCard(record, number);
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
    requireGoingOn();
    requireNoPoints();
    const CardNumberResult found = hooks.cardNumberOfPhone(number);
    if (!found.ok) {
        cashier().show(redact(found.error.ru()));
    }
    return found.ok && !found.cardNumber.isEmpty() && presentCard(found.cardNumber);
}

bool Checkout::request()
{
    requireGoingOn();
    requireSale();
    requireLines();
    requireNoPoints();
    requireNoPayments();
    ChequeContents& cheque = contents();
    system.clearLastErrorString();
    const bool done = askUndiscounted(cheque, [this] { return hooks.request(current); });
    const QList<QSharedPointer<DiscountImpact>> granted = system.getDiscountImpacts();
    if (done && !(granted.isEmpty() && keepsDiscounts)) {
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
    return !changed || !contents().payments.isEmpty() || request();
}

bool Checkout::payPoints(std::optional<double> amount)
{
    requireGoingOn();
    requireSale();
    requireLines();
    const QString step = QStringLiteral("points ") + (amount ? money(*amount) : QString());
    if (unsaved == step) {
        save();
        return true;
    }
    requireNoPoints();
    if (!system.hasCard()) {
        throw DeskError(QStringLiteral("points are spent with a card, and none is on the cheque: present one first"));
    }
    if (amount && kopecks(*amount) <= 0) {
        throw DeskError(QStringLiteral("the amount of points must be above zero"));
    }
    if (!requestIfChanged()) {
        return false;
    }

    ChequeContents& cheque = contents();
    system.clearLastErrorString();
    const bool offered = system.getDiscountImpacts().isEmpty()
        ? hooks.hasPointsForSpend()
        : askUndiscounted(cheque, [this] { return hooks.hasPointsForSpend(); });
    save();
    double most = 0.0;
    if (offered) {
        cheque.head.sumToPay = std::min(roomForPoints(cheque), due());
        most = hooks.getPointsForSpend(current); // whole points: may be none where there is less than one
    }
    if (kopecks(most) <= 0) {
        if (system.getLastErrorString().ru().isEmpty()) {
            cashier().show(QStringLiteral("Нет баллов для списания"));
            explainPoints(most);
        }
        return told(false);
    }
    explainPoints(most);

    if (amount && kopecks(*amount) > kopecks(most)) {
        throw DeskError(QStringLiteral("points can pay %1 at most").arg(money(most)));
    }
    hooks.setPointsForSpend(current, amount.value_or(most));
    const Rollback former = rollbackMark();
    markRollback(Rollback::none); // goes to disk with the spending, if it comes to one
    bool spent = false;
    {
        const Finally onCheque([&] { // the points are gone, also when the plug-in cannot save that they are
            if (system.hasBonusImpacts()) {
                unsaved = step;
            } else {
                markRollback(former);
            }
            keepsDiscounts = true;
            setSpentPoints(cheque, system.getBonusImpactsForSpend());
        });
        spent = hooks.spendPoints();
    }
    save();
    return told(spent && system.hasBonusImpacts());
}

/// Where the customer asks "why not more".
void Checkout::explainPoints(double most) const
{
    const ChequeContents& cheque = contents();
    const auto card = cheque.card(system.getCardMode()).dynamicCast<Card>();
    if (!card || kopecks(card->fields.pointsForSpend) <= 0) {
        return; // nothing was offered, perhaps because nobody could be asked
    }
    for (const QString& line : explained({ card->fields.pointsForSpend, std::min(roomForPoints(cheque), due()),
                                           card->fields.bonusBalance.toDouble(), system.getRoundPrecisionForSpend(),
                                           most })) {
        cashier().show(line);
    }
}

bool Checkout::rollback()
{
    requireGoingOn();
    const QString step = QStringLiteral("rollback");
    if (unsaved == step) {
        save();
        return true;
    }
    if (!system.hasBonusImpacts()) {
        throw DeskError(QStringLiteral("no points are spent on this cheque"));
    }
    system.clearLastErrorString();
    const Rollback former = rollbackMark();
    markRollback(Rollback::asked);
    try {
        save();
    } catch (const BasicException&) {
        markRollback(former); // a later save would tell of a question that nobody has asked
        throw;
    }
    const bool done = hooks.rollback(current);
    if (done) {
        setSpentPoints(contents(), {});
        changed = true;
        keepsDiscounts = true;
        unsaved = step;
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
    if (!system.hasBonusImpacts()) {
        return; // it has stored a later state
    }
    switch (rollbackMark()) {
    case Rollback::none:
        break;
    case Rollback::asked: // nobody knows whether the service has heard of it
        static_cast<void>(rollback());
        break;
    case Rollback::done:
        static_cast<void>(hooks.cancel());
        break;
    }
}

} // namespace till
