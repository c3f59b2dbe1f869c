#pragma once

#include "front/vantiro.h"
#include "tests/checkout/answering_service.h"
#include "tests/support/fixed_time.h"
#include "tests/support/log_recorder.h"
#include "tests/support/scripted_config.h"
#include "till/desk/checkout.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

/// A till at work as a cashier has it: the checkout, the plug-in, and the real store in a folder of the test's own.
/// What it does stands in one journal:
///
///     hook request             a hook that the till calls
///     post GetDiscounts        a request to `service`
///     event 21                 an event of the till or of the plug-in
///     show text                what the cashier reads
///     slip text                what is printed
///     ask prompt               a form; `answers` has what the cashier says
///
/// The clock stands at 14:08:00 on 2024-03-05. Coupons that begin with "c-" are those of a cheque, "p-" of a position.
/// [cheque-thread]
class CheckoutTill : public testing::Test {
protected:
    using Settings = QMap<QString, QVariant>;

    explicit CheckoutTill(const Settings& settings = {});
    ~CheckoutTill() override;

    /// The process has died and starts again: nothing of it is left but what is on disk. Nothing is restored yet.
    void restart();

    [[nodiscard]] till::Checkout& till() const;
    [[nodiscard]] Vantiro& plugin() const;

    /// Opens a sale of that number with a line of 2 at 89.90 and one of 1 at 450.00.
    void openSale(int number = 1042);
    /// The same with the card 9000000001, journal read.
    void openSaleWithCard(int number = 1042);
    void scan(const QString& code, double price, double quantity = 1.0);

    /// The journal since the last call, line by line; only lines that begin so, when it is told.
    [[nodiscard]] std::string told(const QString& beginning = {});
    /// "179.80 450.00 | discount 17.98, points 0.00, due 611.82": what the lines cost, and what is on the cheque.
    [[nodiscard]] std::string money() const;
    /// All documents of the store: "1042 closed, 1043 open".
    [[nodiscard]] static std::string states();
    /// The sentence of the `DeskError` that the call ends with, "(none)" without one.
    [[nodiscard]] static std::string refusal(const std::function<void()>& call);
    /// The messages in the queue, each as the text of its body.
    [[nodiscard]] static QStringList queued();

    /// So many more saves and queued messages go well; from then on every one fails.
    static void failStoreAfter(int writes);
    static void repairStore();
    /// How many have gone well since `failStoreAfter`.
    [[nodiscard]] static int writesMade(int allowed);

    QStringList answers;

private:
    class Listener;
    class WatchedVantiro;

    void start();
    void write(const QString& line);

    QTemporaryDir place;
    QStringList journal;
    ScriptedConfig config;
    FixedTime clock;

protected:
    LogRecorder log;
    AnsweringService service;

private:
    std::unique_ptr<WatchedVantiro> thePlugin;
    std::unique_ptr<till::Checkout> theCheckout;
    std::unique_ptr<Listener> listener;
};

/// Discounts as the service writes them.
[[nodiscard]] QString discountOnCheque(int code, const QString& amount);
[[nodiscard]] QString discountOnPosition(int position, int code, const QString& amount);
/// The reply to a spending: "1: 30.00" is position and sum.
[[nodiscard]] QString spreadOf(const QMap<int, QString>& sums);
