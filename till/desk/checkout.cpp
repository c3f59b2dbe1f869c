#include "till/desk/checkout.h"

#include "host/facilities/config.h"
#include "host/framework/activity_notifier.h"
#include "till/desk/cashier.h"
#include "till/desk/desk_error.h"
#include "till/desk/desk_listener.h"
#include "till/desk/open_document.h"
#include "till/document/cheque.h"
#include "till/document/return_by_sale.h"
#include "till/document/totals.h"
#include "till/framework/loyalty_registry.h"
#include "till/money/kopecks.h"
#include "till/store/document_json.h"
#include "till/store/document_states.h"
#include "till/store/store.h"

#include <algorithm>

namespace till {

namespace {

    using store::DocumentState;

    [[nodiscard]] BasicLoyaltySystem& announcedSystem()
    {
        constexpr int cardMode = 7;
        BasicLoyaltySystem* const system = Singleton<LoyaltyRegistry>::get()->systemOf(cardMode);
        if (system == nullptr) {
            throw DeskError(QStringLiteral("no loyalty system has announced itself for cards of mode 7"));
        }
        return *system;
    }

    [[nodiscard]] ChequeHead newHead(int type, std::optional<int> number)
    {
        ChequeHead head;
        head.type = type;
        head.shift = Singleton<Config>::get()->getInt(QStringLiteral("Till:shift"), 1);
        if (number) {
            head.number = *number;
        } else {
            head.number = store::highestNumber() + 1;
        }
        return head;
    }

    [[nodiscard]] ChequeContents& contentsOf(const QSharedPointer<AbstractDocument>& document)
    {
        return dynamic_cast<ChequeContents&>(*document); // this till opens no others
    }

    /// The latest document of the number in the state.
    [[nodiscard]] QSharedPointer<AbstractDocument> find(int number, DocumentState state, bool saleOnly)
    {
        QString identity;
        for (const store::DocumentEntry& entry : store::documents()) {
            if (entry.number == number && entry.state == state && (!saleOnly || entry.type == EDocumentType::sale)) {
                identity = entry.identity;
            }
        }
        return identity.isEmpty() ? nullptr : store::documentOf(identity);
    }

    [[nodiscard]] QSharedPointer<AbstractDocument> returnOf(int saleNumber, std::optional<int> number)
    {
        const QSharedPointer<AbstractDocument> sale = find(saleNumber, DocumentState::closed, true);
        if (!sale) {
            throw DeskError(QStringLiteral("there is no closed sale %1").arg(saleNumber));
        }
        const auto source = QSharedPointer<SaleDocumentSource>::create();
        source->chequeNumber = sale->getChequeNumber();
        source->openTime = sale->getOpenTime();
        source->closeTime = sale->getCloseTime();
        source->pluginDataJson = sale->getPluginDataJson();

        ChequeHead head = newHead(EDocumentType::returnBySale, number);
        head.sourceDocumentId = sale->getDocumentIdentity();
        const auto document = QSharedPointer<ReturnBySale>::create(source, head);
        const auto cards = contentsOf(sale).attachedCards(); // the points go back to the card that they came from
        for (auto card = cards.cbegin(); card != cards.cend(); ++card) {
            document->setCard(card.key(), card->type, card->record);
        }
        return document;
    }

    [[nodiscard]] QSharedPointer<AbstractDocument> broughtBack(int number, std::optional<int> newNumber)
    {
        const QSharedPointer<AbstractDocument> document = find(number, DocumentState::aside, false);
        if (!document) {
            throw DeskError(QStringLiteral("no cheque %1 was set aside").arg(number));
        }
        ChequeHead& head = contentsOf(document).head;
        const ChequeHead fresh = newHead(head.type, newNumber);
        head.number = fresh.number;
        head.shift = fresh.shift;
        head.deferred = true;
        return document;
    }

} // namespace

Checkout::Checkout()
    : system(announcedSystem())
    , hooks(system)
    , listener(std::make_unique<DeskListener>())
{
}

Checkout::~Checkout()
{
    setOpenDocument(nullptr);
}

bool Checkout::isOpen() const
{
    return !current.isNull();
}

QSharedPointer<AbstractDocument> Checkout::document() const
{
    if (!current) {
        throw DeskError(QStringLiteral("no cheque is open"));
    }
    return current;
}

ChequeContents& Checkout::contents() const
{
    return contentsOf(document());
}

BasicLoyaltySystem& Checkout::loyaltySystem() const
{
    return system;
}

double Checkout::due() const
{
    Kopecks due = kopecks(contents().sum());
    for (const QSharedPointer<MoneyItem>& payment : std::as_const(contents().payments)) {
        due -= kopecks(payment->getAmount());
    }
    return roubles(due);
}

void Checkout::idle(std::chrono::milliseconds limit)
{
    static_cast<void>(tasks.waitForIdle(limit)); // the rest comes another time
}

void Checkout::open(const QString& step, const std::function<QSharedPointer<AbstractDocument>()>& make)
{
    if (current) {
        throw DeskError(
            QStringLiteral("cheque %1 is still open; close or cancel it first").arg(current->getChequeNumber()));
    }
    const QSharedPointer<AbstractDocument> document = notOpened && notOpenedStep == step ? notOpened : make();
    if (!contentsOf(document).head.deferred) {
        store::requireRoom(); // one that was set aside is not new
    }
    idle(std::chrono::milliseconds(0));
    notOpened = document;
    notOpenedStep = step;
    store::saveAs(document, DocumentState::open);
    notOpened.reset();
    current = document;
    changed = false;
    keepsDiscounts = false;
    committed.reset();
    announced = false;
    givenUp = false;
    unsaved.clear();
    system.clearLastErrorString();
    setOpenDocument(current);
}

void Checkout::end()
{
    setOpenDocument(nullptr);
    current.reset();
    unsaved.clear();
}

void Checkout::openSale(std::optional<int> number)
{
    open(QStringLiteral("sale %1").arg(number.value_or(0)),
         [number] { return QSharedPointer<Cheque>::create(newHead(EDocumentType::sale, number)); });
}

void Checkout::openReturn(std::optional<int> number)
{
    open(QStringLiteral("return %1").arg(number.value_or(0)),
         [number] { return QSharedPointer<Cheque>::create(newHead(EDocumentType::goodsReturn, number)); });
}

void Checkout::openReturnOf(int saleNumber, std::optional<int> number)
{
    open(QStringLiteral("return %1 of %2").arg(number.value_or(0)).arg(saleNumber),
         [saleNumber, number] { return returnOf(saleNumber, number); });
}

void Checkout::putOut()
{
    const QSharedPointer<AbstractDocument> document = this->document();
    requireGoingOn();
    requireNoPoints(); // the plug-in does not bring a spending back with the cheque unless it is configured to
    hooks.beforePutoutCheck();
    store::saveAs(document, DocumentState::aside);
    hooks.afterPutoutCheck();
    end();
}

void Checkout::reveal(int number, std::optional<int> newNumber)
{
    const QString step = revealStep + QString::number(number);
    if (unsaved != step) {
        open(step, [number, newNumber] { return broughtBack(number, newNumber); });
        unsaved = step;
    }
    hooks.revealCheck();
    // By default the plug-in forgets the coupons of a cheque that was set aside.
    if (!Singleton<Config>::get()->getBool(QStringLiteral("Vantiro:restoreLoyaltyState"), false)
        && !contents().coupons.isEmpty()) {
        contents().coupons.clear();
        cashier().show(QStringLiteral("Купоны чека нужно ввести снова"));
    }
    changed = true;
    keepsDiscounts = system.getDiscountImpacts().isEmpty();
    save();
}

bool Checkout::restore()
{
    if (current) {
        throw DeskError(
            QStringLiteral("cheque %1 is still open; close or cancel it first").arg(current->getChequeNumber()));
    }
    for (const store::DocumentEntry& entry : store::documents()) {
        if (entry.state != DocumentState::open && entry.state != DocumentState::closing
            && entry.state != DocumentState::cancelling) {
            continue;
        }
        try {
            current = store::documentOf(entry.identity);
        } catch (const DamagedDocument&) {
            // The till must start all the same; what cannot be read is kept for whoever can.
            store::quarantine(entry.identity);
            cashier().show(QStringLiteral("Чек %1 повреждён и отложен").arg(entry.number));
            continue;
        }
        setOpenDocument(current);
        Singleton<ActivityNotifier>::get()->notify(Event(EActivityListener::restoreDocument));
        if (contents().head.deferred && current->getPluginDataJson().isEmpty()) {
            hooks.revealCheck(); // the till died in between: a return would miss the number that the service knows
        }
        repeatRollback();
        // The plug-in saves what it learns before the till has put it on the document, which carries no discounts while
        // the plug-in asks. Those that it carries were worked out for it as it stands, and may be paid for.
        keepsDiscounts = system.getDiscountImpacts().isEmpty();
        if (!keepsDiscounts && !hasLoyaltyDiscounts(contents())) {
            setLoyaltyDiscounts(contents(), system.getDiscountImpacts());
        }
        setSpentPoints(contents(), system.getBonusImpactsForSpend());
        changed = true;
        committed.reset();
        announced = false;
        givenUp = entry.state == DocumentState::cancelling;
        cashier().show(QStringLiteral("Восстановлен чек %1").arg(current->getChequeNumber()));
        if (entry.state == DocumentState::closing) {
            static_cast<void>(tellClosed());
        } else if (entry.state == DocumentState::cancelling) {
            tellCancelled();
        } else {
            save();
        }
        return true;
    }
    return false;
}

} // namespace till
