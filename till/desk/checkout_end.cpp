#include "till/desk/checkout.h"

#include "host/facilities/current_time.h"
#include "host/facilities/exceptions.h"
#include "host/framework/activity_notifier.h"
#include "till/desk/cashier.h"
#include "till/desk/desk_error.h"
#include "till/document/payment.h"
#include "till/document/totals.h"
#include "till/money/kopecks.h"
#include "till/store/document_states.h"

namespace till {

namespace {

    using store::DocumentState;

    constexpr int cashOperation = 1;
    constexpr int certificateOperation = 3;
    constexpr int certificateCode = 70;

    [[nodiscard]] Event about(EActivityListener::Event code, const QSharedPointer<AbstractDocument>& document)
    {
        return Event(code).addArgument(QStringLiteral("document"), QVariant::fromValue(document));
    }

} // namespace

void Checkout::pay(const QString& number, int operation, int code, std::optional<double> amount)
{
    requireGoingOn();
    requireLines();
    if (amount && kopecks(*amount) <= 0) {
        throw DeskError(QStringLiteral("the amount must be above zero"));
    }
    if (document()->getDocumentType() == EDocumentType::sale && !system.hasBonusImpacts()) {
        static_cast<void>(requestIfChanged()); // the discounts are the server's word on what is to be paid
    }
    const double sum = amount.value_or(due());
    if (kopecks(sum) <= 0) {
        throw DeskError(QStringLiteral("there is nothing to pay"));
    }
    if (kopecks(sum) > kopecks(due())) {
        throw DeskError(QStringLiteral("%1 is more than is due: %2")
                            .arg(QString::number(sum, 'f', 2), QString::number(due(), 'f', 2)));
    }
    QList<QSharedPointer<MoneyItem>>& payments = contents().payments;
    payments.append(QSharedPointer<Payment>::create(PaymentFields { sum, number, operation, code }));
    try {
        save();
    } catch (const BasicException&) {
        payments.removeLast(); // it will be made again
        throw;
    }
}

void Checkout::payCash(std::optional<double> amount)
{
    pay(QString(), cashOperation, 0, amount);
}

void Checkout::payCertificate(const QString& number, std::optional<double> amount)
{
    pay(number, certificateOperation, certificateCode, amount);
}

bool Checkout::close()
{
    requireLines();
    ChequeHead& head = contents().head;
    if (givenUp || !head.closeTime.isValid()) {
        requireGoingOn();
    }
    if (!head.closeTime.isValid()) { // else it stands as `closing` on disk, and the time may have been told
        // On a return the money goes the other way.
        if (head.type == EDocumentType::sale && kopecks(due()) > 0) {
            throw DeskError(QStringLiteral("%1 is still to be paid").arg(QString::number(due(), 'f', 2)));
        }
        head.closeTime = MockFactory<CurrentTime>::create()->getCurrentTime();
        head.sumToPay.reset();
        try {
            store::saveAs(current, DocumentState::closing);
        } catch (const BasicException&) {
            head.closeTime = QDateTime(); // it is open as before
            throw;
        }
    }
    return tellClosed();
}

/// From here to its end the document stands as `closing` on disk: a till that dies does all of this again, and the
/// service counts the cheque once. After a failure of the store the plug-in's state may be gone, so what was told is
/// not told again.
bool Checkout::tellClosed()
{
    if (!committed) {
        system.clearLastErrorString();
        committed = !system.hasCard() || hooks.commit(current);
        static_cast<void>(told(*committed));
    }
    if (!announced) {
        Singleton<ActivityNotifier>::get()->notify(about(EActivityListener::documentClosed, current));
        announced = true;
    }
    hooks.clearAfterClose();
    store::saveAs(current, DocumentState::closed);
    const bool done = *committed;
    end();
    return done;
}

bool Checkout::cancel(bool anyway)
{
    if (!givenUp) {
        requireGoingOn();
        if (system.hasBonusImpacts() && !rollback() && !anyway) {
            return false;
        }
        store::saveAs(current, DocumentState::cancelling);
        givenUp = true;
    }
    tellCancelled();
    return true;
}

void Checkout::tellCancelled()
{
    if (!announced) {
        Singleton<ActivityNotifier>::get()->notify(about(EActivityListener::documentCancelled, current));
        announced = true;
    }
    hooks.cancel();
    hooks.clearAfterClose();
    store::saveAs(current, DocumentState::cancelled);
    end();
}

} // namespace till
