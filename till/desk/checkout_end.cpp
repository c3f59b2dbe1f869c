#include "till/desk/checkout.h"

#include "host/facilities/current_time.h"
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
    requireLines();
    const double sum = amount.value_or(due());
    if (kopecks(sum) <= 0) {
        throw DeskError(QStringLiteral("there is nothing to pay"));
    }
    if (kopecks(sum) > kopecks(due())) {
        throw DeskError(QStringLiteral("%1 is more than is due: %2")
                            .arg(QString::number(sum, 'f', 2), QString::number(due(), 'f', 2)));
    }
    contents().payments.append(QSharedPointer<Payment>::create(PaymentFields { sum, number, operation, code }));
    save();
}

void Checkout::payCash(std::optional<double> amount)
{
    requireLines();
    if (document()->getDocumentType() == EDocumentType::sale && contents().payments.isEmpty()
        && !system.hasBonusImpacts()) {
        static_cast<void>(requestIfChanged()); // the discounts are the server's word on what is to be paid
    }
    pay(QString(), cashOperation, 0, amount);
}

void Checkout::payCertificate(const QString& number, std::optional<double> amount)
{
    pay(number, certificateOperation, certificateCode, amount);
}

bool Checkout::close()
{
    requireLines();
    // On a return the money goes the other way.
    if (document()->getDocumentType() == EDocumentType::sale && kopecks(due()) > 0) {
        throw DeskError(QStringLiteral("%1 is still to be paid").arg(QString::number(due(), 'f', 2)));
    }
    contents().head.closeTime = MockFactory<CurrentTime>::create()->getCurrentTime();
    contents().head.sumToPay.reset();
    store::saveAs(current, DocumentState::closing);
    return tellClosed();
}

/// From here to its end the document stands as `closing` on disk: a till that dies does all of this again, and the
/// service counts the cheque once.
bool Checkout::tellClosed()
{
    system.clearLastErrorString();
    const bool done = !system.hasCard() || system.commit(current);
    static_cast<void>(told(done));
    Singleton<ActivityNotifier>::get()->notify(about(EActivityListener::documentClosed, current));
    system.clearAfterClose();
    store::saveAs(current, DocumentState::closed);
    end();
    return done;
}

bool Checkout::cancel(bool anyway)
{
    static_cast<void>(contents());
    if (system.hasBonusImpacts() && !rollback() && !anyway) {
        return false;
    }
    store::saveAs(current, DocumentState::cancelling);
    tellCancelled();
    return true;
}

void Checkout::tellCancelled()
{
    Singleton<ActivityNotifier>::get()->notify(about(EActivityListener::documentCancelled, current));
    system.cancel();
    system.clearAfterClose();
    store::saveAs(current, DocumentState::cancelled);
    end();
}

} // namespace till
