#pragma once

#include "host/export.h"
#include "till/delivery/delivery.h"
#include "till/desk/checkout.h"
#include "till/exchange_events.h"
#include "till/script/screen.h"
#include "till/script/script_line.h"
#include "till/script/service_control.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <mutex>

namespace till {

class Arguments;

/// What a verb of the command language is called with, and what it does, for `help`. A plain value.
struct VerbHelp {
    QString usage;
    QString meaning;
};

/// Carries out the lines of the one command language of the till, whoever writes them: a script, a shell, a test.
/// [cheque-thread]
class VANTIRO_HOST_API Player {
public:
    struct Parts {
        Checkout& checkout;
        Screen& screen;
        Delivery& delivery;
        ServiceControl& service; // without servers where the service is not ours to control
        /// Ends the process as a loss of power would; unset where nobody would start it again.
        std::function<void()> crash = {};
        bool showWire = false; // tell each exchange as it was
        /// Gets every exchange, on the thread that made it.
        std::function<void(const ExchangeEvent&)> recordExchange = {};
    };

    explicit Player(const Parts& parts);
    ~Player();

    /// Carries the line out. Throws `ScriptError` when that cannot be done, and when an expectation does not hold. What
    /// the till itself refuses is an error as well, unless the next line expects it.
    void play(const ScriptLine& line);
    /// At the end of a script: throws `ScriptError` for a refusal that no line has expected.
    void end();

    /// In the order in which a newcomer meets them.
    [[nodiscard]] static QList<VerbHelp> verbs();
    /// The words that can follow, for the completion of a shell.
    [[nodiscard]] static QStringList completions(const QStringList& words);

private:
    Q_DISABLE_COPY(Player)

    using Handler = bool (Player::*)(Arguments&);
    struct Verb {
        QString name;
        QString usage;
        QString meaning;
        Handler handler;
    };
    [[nodiscard]] static const QList<Verb>& table();

    bool open(Arguments& arguments);
    bool scan(Arguments& arguments);
    bool take(Arguments& arguments);
    bool remove(Arguments& arguments);
    bool position(Arguments& arguments);
    bool card(Arguments& arguments);
    bool phone(Arguments& arguments);
    bool request(Arguments& arguments);
    bool coupon(Arguments& arguments);
    bool points(Arguments& arguments);
    bool rollback(Arguments& arguments);
    bool pay(Arguments& arguments);
    bool close(Arguments& arguments);
    bool cancel(Arguments& arguments);
    bool putOut(Arguments& arguments);
    bool reveal(Arguments& arguments);
    bool server(Arguments& arguments);
    bool deliver(Arguments& arguments);
    bool crash(Arguments& arguments);
    bool show(Arguments& arguments);
    bool expect(Arguments& arguments);
    bool say(Arguments& arguments);

    void expectSum(const QString& name, double actual, Arguments& arguments) const;
    void expectText(const QString& where, const QStringList& texts, Arguments& arguments) const;
    void expectQueue(Arguments& arguments) const;
    void expectWire(Arguments& arguments) const;
    void expectBooks() const;
    void showCheque() const;
    void showQueue() const;
    /// Says how many messages wait for delivery; nothing when none does. Never throws for the store: the step is done.
    void tellWaiting() const;
    void showBooks() const;
    [[nodiscard]] QList<ExchangeEvent> exchangesOfStep() const;

    Parts parts;
    mutable std::mutex mutex; // guards the exchanges: other threads make some too
    QList<ExchangeEvent> exchanges; // of the step
    bool lastResult = true;
    QString refusal; // of the last step, until a line expects it
    int refusedLine = 0; // that of the refusal
};

} // namespace till
