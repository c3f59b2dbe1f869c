#pragma once

#include "host/document/abstract_document.h"
#include "host/export.h"
#include "host/framework/basic_loyalty_system.h"
#include "till/desk/loyalty_calls.h"
#include "till/document/cheque_contents.h"
#include "till/framework/task_runner.h"

#include <QSharedPointer>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace till {

class DeskListener;

/// The till as the cashier works it: one document at a time, from opening to close, with the loyalty system called in
/// the order that the contract asks for. Each step that changes the document has it on disk before it returns; a till
/// that dies goes on from there with `restore`. What the cashier has to read goes to `cashier()`.
///
/// A step that cannot be done throws `DeskError` and changes nothing. A step of the loyalty system that fails is told
/// to the cashier and returns false. A store that fails throws `BasicException`; the step can be repeated when it works
/// again, and does nothing twice: what was added is off the document again, and what could not be undone, since the
/// loyalty system has had its part in it, is only saved. [cheque-thread] [blocks: as the hooks do]
class VANTIRO_HOST_API Checkout {
public:
    /// Works with the loyalty system of the card mode 7, which must have announced itself. The store is open.
    Checkout();
    ~Checkout();

    struct Article {
        QString code;
        QString barcode;
        double price = 0.0; // roubles, of one unit
        double quantity = 1.0;
        double minPrice = 0.0;
        bool takesDiscounts = true;
        bool takesPoints = true;
        bool earnsPoints = true;
    };

    /// Opens a sale or a return. Without a number it gets the one behind the highest that the store knows.
    void openSale(std::optional<int> number);
    void openReturn(std::optional<int> number);
    /// Opens a return against the closed sale of that number; its lines are then returned at what was paid for them.
    void openReturnOf(int saleNumber, std::optional<int> number);

    void scan(const Article& article);
    /// Of a return against a sale: takes so much of the sale's line back, of what returns have left of it. All of them
    /// together give back what was paid, to the kopeck.
    void takeBack(int position, double quantity);
    /// Takes a line off; its coupons and discounts go with it. Not while a payment stands.
    void remove(int position);
    void selectPosition(int position);

    /// A card is presented, by its number or by a telephone number, which the server confirms by a code that the
    /// cashier is asked for.
    bool presentCard(const QString& number);
    bool presentPhone(const QString& number);

    /// Asks what the cheque earns and puts the discounts on it. Not while a payment stands: less may be due afterwards.
    bool request();

    bool addCoupon(const QString& number);
    bool deleteCoupon(const QString& number);

    /// Pays with points: the amount, or without one the most that is allowed and due. Offline nothing is spent.
    bool payPoints(std::optional<double> amount);
    /// Undoes the spending of points.
    bool rollback();

    /// Pays the rest, or a part of it. Before the first payment the loyalty system is asked if the cheque has changed
    /// since the last time.
    void payCash(std::optional<double> amount);
    void payCertificate(const QString& number, std::optional<double> amount);

    /// Closes the paid document: tells or queues it, prints the slip. False when the loyalty server has refused it; it
    /// is closed all the same. When the store fails on the way, nothing but a further `close` can be done with the
    /// document once its closing has begun on disk; the loyalty system is then told what it has not been told yet.
    bool close();
    /// Cancels the document. Points that were spent are given back first; when that fails, nothing changes and false is
    /// returned, unless `anyway`.
    bool cancel(bool anyway = false);
    void putOut();
    /// Brings the document back that was set aside under that number; it goes on under a new one.
    void reveal(int number, std::optional<int> newNumber);

    /// After a start: brings back the document that was open, or finishes the one that was being closed or cancelled.
    /// True when there was one.
    bool restore();

    /// What a till does while nobody uses it: takes the results of tasks that run beside the cheques, the search for a
    /// better server among them. [blocks: until all have come, or the time is up]
    void idle(std::chrono::milliseconds limit);

    [[nodiscard]] bool isOpen() const;
    /// The open document. Throws `DeskError` when none is open.
    [[nodiscard]] QSharedPointer<AbstractDocument> document() const;
    [[nodiscard]] ChequeContents& contents() const;
    [[nodiscard]] BasicLoyaltySystem& loyaltySystem() const;
    /// What is still to be paid, in roubles.
    [[nodiscard]] double due() const;

private:
    Q_DISABLE_COPY(Checkout)

    /// Opens what `make` gives, or what it gave to the same step before, when that could not be saved.
    void open(const QString& step, const std::function<QSharedPointer<AbstractDocument>()>& make);
    void end();
    void save();
    /// Takes the line that was added last off again when it cannot be saved.
    void saveAdded(const Position& former);
    void requireGoingOn() const;
    void requireNoPayments() const;
    void requireSale() const;
    void requireLines() const;
    void requireNoPoints() const;
    void linesChanged();
    bool requestIfChanged();
    bool told(bool result) const;
    void explainPoints(double most) const;
    void pay(const QString& number, int operation, int code, std::optional<double> amount);
    bool tellClosed();
    void tellCancelled();

    /// How far the undoing of a spending has come, as it stands with the document.
    enum class Rollback : int { none, asked, done };
    void markRollback(Rollback mark) const;
    [[nodiscard]] Rollback rollbackMark() const;
    void repeatRollback();

    BasicLoyaltySystem& system;
    LoyaltyCalls hooks;
    QSharedPointer<AbstractDocument> current;
    TaskRunner tasks;
    std::unique_ptr<DeskListener> listener;
    bool changed = false; // since the last request
    // The plug-in has let go of the discounts on the document. An offline request then answers with none, and that does
    // not mean that they are taken back.
    bool keepsDiscounts = false;
    std::optional<bool> committed; // what the hook has answered, once the close was told
    bool announced = false; // the end of the document has been, too
    bool givenUp = false; // the cancelling has begun
    static inline const QString revealStep = QStringLiteral("reveal ");
    QSharedPointer<AbstractDocument> notOpened; // what the store has failed on: it may be on disk all the same
    QString notOpenedStep;
    QString unsaved; // the step that has been done in part, with its argument, while the store has failed on it
};

} // namespace till
