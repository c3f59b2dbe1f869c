#pragma once

#include "front/vantiro.h"
#include "host/framework/coupon_logic.h"
#include "host/framework/save_to_file_logic.h"
#include "host/framework/text_printer.h"
#include "tests/support/cheque_service.h"
#include "tests/support/document_builder.h"
#include "tests/support/fixed_time.h"
#include "tests/support/log_recorder.h"
#include "tests/support/scripted_config.h"
#include "tests/support/scripted_dialog.h"
#include "tests/support/scripted_queue.h"
#include "till/document/card.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

/// The plug-in with its state opened to view. [cheque-thread]
class OpenVantiro : public Vantiro {
public:
    using Vantiro::bonusImpacts;
    using Vantiro::discountImpacts;
    using Vantiro::messagesToCashier;
    using Vantiro::messagesToClient;
    using Vantiro::pointsForSpend;
};

/// All that the plug-in has asked of the till and of the server, in order, one line each. [cheque-thread]
class Journal {
public:
    void write(const QString& line);
    /// What has been written since the last call, line by line.
    [[nodiscard]] std::string read();

private:
    QStringList lines;
};

/// A till with the plug-in at work on one open document. The other parts are substitutes, and all that is asked of them
/// stands in one journal:
///
///     post GetDiscounts              a request to the server, whose answer `server` was given before
///     event 72 …                     one of the events that the plug-in sends, with its arguments: `name=value`
///     save                           the document goes to the store; `stored` tells what it holds
///     enqueue vantiro OfflineAccrual a message for the queue; `queue` has it
///     print -1: text                 a slip
///     coupon off 0042                the host's own deletion of a coupon
///     host adds / host deletes       the host's part of an action
///     form id, error 0 0 key: text, message 1 0 0 key: text   the cashier's screen
///
/// The clock stands at 14:08:00 on 2024-03-05. [cheque-thread]
class TillAtWork {
public:
    using Settings = QMap<QString, QVariant>;

    /// A sale of two pieces at 89.90 as position 1, with the card 9000000001 and without.
    [[nodiscard]] static DocumentBuilder saleWithCard();
    [[nodiscard]] static DocumentBuilder saleWithoutCard();

    /// The plug-in is initialized with these settings, and with the server of the script unless they name others.
    explicit TillAtWork(const DocumentBuilder& document = saleWithCard(), const Settings& settings = {});
    explicit TillAtWork(const QSharedPointer<AbstractDocument>& document, const Settings& settings = {});
    ~TillAtWork();

    /// Makes it the open document, which the plug-in is told of.
    void open(const QSharedPointer<AbstractDocument>& document);
    /// The open document, and what the reference till knows of it.
    [[nodiscard]] const QSharedPointer<AbstractDocument>& document() const;
    [[nodiscard]] till::ChequeContents& contents() const;
    /// This system's card on the open document, null if there is none.
    [[nodiscard]] QSharedPointer<till::Card> card() const;

    /// What the plug-in has stored with the open document under the key, in its own group.
    [[nodiscard]] QVariant stored(const QString& key) const;
    /// Stores a value there, as an earlier run would have.
    void store(const QString& key, const QVariant& value);
    /// The document has been offline since before the test.
    void goOffline();

    /// The server's answers to one `request` that goes well: a discount of 17.98 on position 1 with the code 77, a
    /// message for each device, and so many points to spend.
    void answerRequest(const QByteArray& points = "50.00");
    /// The whole hook with these answers; fails the test when it fails. Journal, log and requests are looked at.
    void requestWell(const QByteArray& points = "50.00");
    /// The server's answer to a spending.
    void answerSpending(const QByteArray& onPosition1);
    /// Spends so many points on position 1, likewise looked at.
    void spendWell(double points);

    /// Carries the action out as the till does: plug-in before, host, plug-in after. False when a trigger has refused.
    bool addCoupon(const QString& number);
    /// The first coupon of the number on the cheque; one that the cheque lacks when there is none.
    bool deleteCoupon(const QString& number);

    /// Sends the event to all listeners, the plug-in among them.
    void tell(const Event& event);
    /// The event of that code about this document.
    [[nodiscard]] static Event event(int code, const QSharedPointer<AbstractDocument>& document);

    /// The log of the plug-in since the last call, but for the dumps at level trace: "info: text".
    [[nodiscard]] std::string log();
    /// The text of the last error and its key: "key: text".
    [[nodiscard]] std::string lastError() const;
    /// The journal since the last call.
    [[nodiscard]] std::string told();

    /// Every later save throws a `BasicException` of the text.
    void failSaves(const QString& reason);

private:
    class JournalDialog;
    class JournalQueue;
    class JournalSaves;
    class JournalPrinter;
    class JournalCoupons;
    class JournalListener;

    QSharedPointer<AbstractDocument> current;
    Journal journal;

public:
    ScriptedConfig config;
    FixedTime clock;
    ChequeService server;
    LogRecorder logRecorder;

private:
    std::unique_ptr<JournalDialog> dialog;
    std::unique_ptr<JournalQueue> messages;
    std::unique_ptr<JournalSaves> saves;
    std::unique_ptr<JournalPrinter> printer;
    std::unique_ptr<JournalCoupons> couponLogic;
    std::unique_ptr<JournalListener> listener;

public:
    ScriptedDialog& cashier;
    ScriptedQueue& queue;
    OpenVantiro plugin;
};

/// Coupons as the stores hold them, for a comparison that a person can read: "a b", and "1: a b; 2: c".
[[nodiscard]] std::string told(const QList<QString>& coupons);
[[nodiscard]] std::string told(const QMap<int, QList<QString>>& coupons);
