#include "till/script/player.h"

#include "host/facilities/finally.h"
#include "till/desk/desk_error.h"
#include "till/exchange_events.h"
#include "till/script/arguments.h"

#include <algorithm>
#include <utility>

namespace till {

const QList<Player::Verb>& Player::table()
{
    const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };
    static const QList<Verb> verbs {
        { text("open"), text("open sale|return [NUMBER]; open return-of SALE [NUMBER]"), text("open a cheque"),
          &Player::open },
        { text("scan"), text("scan BARCODE [xQUANTITY] @PRICE [code CODE] [min PRICE] [no-discount] [no-points] [no-earn]"),
          text("add a line"), &Player::scan },
        { text("take"), text("take POSITION [xQUANTITY]"), text("on a return-of: take a line of the sale back"),
          &Player::take },
        { text("remove"), text("remove POSITION"), text("take a line off, and its coupons"), &Player::remove },
        { text("position"), text("position POSITION"), text("make it the line that a coupon goes to"),
          &Player::position },
        { text("card"), text("card NUMBER"), text("present a card"), &Player::card },
        { text("phone"), text("phone NUMBER [code CODE]"), text("find a card by telephone number"), &Player::phone },
        { text("request"), text("request"), text("ask what the cheque earns, and put the discounts on it"),
          &Player::request },
        { text("coupon"), text("coupon NUMBER; coupon delete NUMBER"), text("add or delete a coupon"),
          &Player::coupon },
        { text("points"), text("points [AMOUNT]"), text("pay with points; without an amount, all that is allowed"),
          &Player::points },
        { text("rollback"), text("rollback"), text("undo the payment with points"), &Player::rollback },
        { text("pay"), text("pay cash [AMOUNT]; pay certificate NUMBER [AMOUNT]"), text("pay the rest, or a part"),
          &Player::pay },
        { text("close"), text("close"), text("close the paid cheque"), &Player::close },
        { text("cancel"), text("cancel [anyway]"), text("cancel the cheque; anyway: even if points cannot be given back"),
          &Player::cancel },
        { text("putout"), text("putout"), text("set the cheque aside"), &Player::putOut },
        { text("reveal"), text("reveal NUMBER [NEW]"), text("bring a cheque back"), &Player::reveal },
        { text("server"), text("server [NAME] stop|start|clear; server [NAME] fault KIND [OPERATION] [TIMES] [=ARGUMENT]"),
          text("control a sandbox service"), &Player::server },
        { text("deliver"), text("deliver"), text("deliver the queue now"), &Player::deliver },
        { text("crash"), text("crash"), text("kill the till and start it again"), &Player::crash },
        { text("show"), text("show cheque|queue|wire|slip|books"), text("show what the till knows"), &Player::show },
        { text("expect"),
          text("expect ok|failed; expect refused TEXT; expect [no] shown|printed TEXT; expect sum|due|discount|points "
               "AMOUNT; expect queue COUNT [STATE]; expect wire [OPERATION[@SERVER]…]; expect balance CARD POINTS; expect "
               "books agree"),
          text("stop with an error unless it is so; it concerns the last step"), &Player::expect },
        { text("say"), text("say TEXT"), text("write a headline"), &Player::say },
    };
    return verbs;
}

Player::Player(const Parts& playerParts)
    : parts(playerParts)
{
    observeExchanges([this](const ExchangeEvent& event) {
        {
            const std::lock_guard lock(mutex);
            exchanges.append(event);
        }
        if (parts.showWire) {
            const auto lines = [](const QByteArray& text) { return QString::fromUtf8(text).trimmed(); };
            parts.screen.write(QStringLiteral("    → %1 %2\n%3").arg(event.address, event.action, lines(event.request)));
            parts.screen.write(
                event.failure.isEmpty()
                    ? QStringLiteral("    ← %1, %2 ms\n%3")
                          .arg(QString::number(event.status), QString::number(event.milliseconds), lines(event.reply))
                    : QStringLiteral("    ← %1\n%2").arg(event.failure, lines(event.reply)));
        }
    });
}

Player::~Player()
{
    observeExchanges({});
}

QList<VerbHelp> Player::verbs()
{
    QList<VerbHelp> help;
    for (const Verb& verb : table()) {
        help.append({ verb.usage, verb.meaning });
    }
    return help;
}

QStringList Player::completions(const QStringList& words)
{
    QStringList candidates;
    const QString last = words.isEmpty() ? QString() : words.constLast();
    if (words.size() <= 1) {
        for (const Verb& verb : table()) {
            candidates.append(verb.name);
        }
    } else {
        for (const Verb& verb : table()) {
            if (verb.name == words.constFirst()) {
                // The literal words of the usage are those in lower case.
                for (const QString& part : verb.usage.split(u' ')) {
                    for (const QString& word : QString(part).remove(u';').remove(u'[').remove(u']').split(u'|')) {
                        if (word == word.toLower() && word != verb.name && !candidates.contains(word)) {
                            candidates.append(word);
                        }
                    }
                }
            }
        }
    }
    candidates.removeIf([&last](const QString& word) { return !word.startsWith(last); });
    return candidates;
}

void Player::end()
{
    if (!refusal.isEmpty()) {
        throw ScriptError(std::exchange(refusal, QString()));
    }
}

void Player::play(const ScriptLine& line)
{
    const QString& name = line.words.constFirst();
    const auto verb = std::ranges::find(table(), name, &Verb::name);
    if (verb == table().end()) {
        throw ScriptError(QStringLiteral("unknown verb \"%1\"; \"help\" lists all").arg(name));
    }
    Arguments arguments(line.words.sliced(1));
    if (name == u"expect") {
        static_cast<void>(expect(arguments));
        return;
    }
    end();
    if (name == u"show") { // a look at the last step is none itself
        static_cast<void>(show(arguments));
        return;
    }

    parts.screen.beginStep();
    {
        const std::lock_guard lock(mutex);
        exchanges.clear();
    }
    if (name != u"say") {
        parts.screen.write(QStringLiteral("> ") + line.text);
    }
    lastResult = false; // also when the store fails
    const Finally answered([this] { parts.screen.dropAnswers(); });
    try {
        lastResult = (this->*(verb->handler))(arguments);
    } catch (const DeskError& error) {
        refusal = error.text();
    } catch (const ScriptError& error) {
        throw ScriptError(QStringLiteral("%1 (usage: %2)").arg(error.text(), verb->usage));
    }
    constexpr std::chrono::seconds pause(10); // a person takes as long from one step to the next
    parts.checkout.idle(pause);
}

QList<ExchangeEvent> Player::exchangesOfStep() const
{
    const std::lock_guard lock(mutex);
    return exchanges;
}

bool Player::open(Arguments& arguments)
{
    const QString kind = arguments.word(QStringLiteral("kind"));
    if (kind == u"return-of") {
        const int sale = arguments.number(QStringLiteral("SALE"));
        const std::optional<int> number = arguments.numberIfAny(QStringLiteral("NUMBER"));
        arguments.requireEnd();
        parts.checkout.openReturnOf(sale, number);
        return true;
    }
    if (kind != u"sale" && kind != u"return") {
        throw ScriptError(QStringLiteral("a cheque is a sale, a return or a return-of, not \"%1\"").arg(kind));
    }
    const std::optional<int> number = arguments.numberIfAny(QStringLiteral("NUMBER"));
    arguments.requireEnd();
    if (kind == u"sale") {
        parts.checkout.openSale(number);
    } else {
        parts.checkout.openReturn(number);
    }
    return true;
}

bool Player::scan(Arguments& arguments)
{
    Checkout::Article article;
    article.barcode = arguments.word(QStringLiteral("BARCODE"));
    article.code = article.barcode;
    bool priced = false;
    while (!arguments.isEmpty()) {
        if (const std::optional<QString> quantity = arguments.takeAfter(u'x')) {
            article.quantity = Arguments::quantityOf(*quantity, QStringLiteral("QUANTITY"));
        } else if (const std::optional<QString> price = arguments.takeAfter(u'@')) {
            article.price = Arguments::moneyOf(*price, QStringLiteral("PRICE"));
            priced = true;
        } else if (arguments.take(QStringLiteral("code"))) {
            article.code = arguments.word(QStringLiteral("CODE"));
        } else if (arguments.take(QStringLiteral("min"))) {
            article.minPrice = arguments.money(QStringLiteral("PRICE"));
        } else if (arguments.take(QStringLiteral("no-discount"))) {
            article.takesDiscounts = false;
        } else if (arguments.take(QStringLiteral("no-points"))) {
            article.takesPoints = false;
        } else if (arguments.take(QStringLiteral("no-earn"))) {
            article.earnsPoints = false;
        } else {
            arguments.requireEnd();
        }
    }
    if (!priced) {
        throw ScriptError(QStringLiteral("@PRICE is missing"));
    }
    parts.checkout.scan(article);
    return true;
}

bool Player::take(Arguments& arguments)
{
    const int position = arguments.number(QStringLiteral("POSITION"));
    const std::optional<QString> quantity = arguments.takeAfter(u'x');
    arguments.requireEnd();
    parts.checkout.takeBack(position, quantity ? Arguments::quantityOf(*quantity, QStringLiteral("QUANTITY")) : 1.0);
    return true;
}

bool Player::remove(Arguments& arguments)
{
    const int position = arguments.number(QStringLiteral("POSITION"));
    arguments.requireEnd();
    parts.checkout.remove(position);
    return true;
}

bool Player::position(Arguments& arguments)
{
    const int position = arguments.number(QStringLiteral("POSITION"));
    arguments.requireEnd();
    parts.checkout.selectPosition(position);
    return true;
}

bool Player::card(Arguments& arguments)
{
    const QString number = arguments.word(QStringLiteral("NUMBER"));
    arguments.requireEnd();
    return parts.checkout.presentCard(number);
}

bool Player::phone(Arguments& arguments)
{
    const QString number = arguments.word(QStringLiteral("NUMBER"));
    if (arguments.take(QStringLiteral("code"))) {
        parts.screen.answerNext(arguments.word(QStringLiteral("CODE")));
    }
    arguments.requireEnd();
    return parts.checkout.presentPhone(number);
}

bool Player::request(Arguments& arguments)
{
    arguments.requireEnd();
    return parts.checkout.request();
}

bool Player::coupon(Arguments& arguments)
{
    const bool deletes = arguments.take(QStringLiteral("delete"));
    const QString number = arguments.word(QStringLiteral("NUMBER"));
    arguments.requireEnd();
    return deletes ? parts.checkout.deleteCoupon(number) : parts.checkout.addCoupon(number);
}

bool Player::points(Arguments& arguments)
{
    const std::optional<double> amount = arguments.moneyIfAny(QStringLiteral("AMOUNT"));
    arguments.requireEnd();
    return parts.checkout.payPoints(amount);
}

bool Player::rollback(Arguments& arguments)
{
    arguments.requireEnd();
    return parts.checkout.rollback();
}

bool Player::pay(Arguments& arguments)
{
    const QString means = arguments.word(QStringLiteral("means"));
    if (means == u"certificate") {
        const QString number = arguments.word(QStringLiteral("NUMBER"));
        const std::optional<double> amount = arguments.moneyIfAny(QStringLiteral("AMOUNT"));
        arguments.requireEnd();
        parts.checkout.payCertificate(number, amount);
        return true;
    }
    if (means != u"cash") {
        throw ScriptError(QStringLiteral("one pays cash or certificate, not \"%1\"").arg(means));
    }
    const std::optional<double> amount = arguments.moneyIfAny(QStringLiteral("AMOUNT"));
    arguments.requireEnd();
    parts.checkout.payCash(amount);
    return true;
}

bool Player::close(Arguments& arguments)
{
    arguments.requireEnd();
    return parts.checkout.close();
}

bool Player::cancel(Arguments& arguments)
{
    const bool anyway = arguments.take(QStringLiteral("anyway"));
    arguments.requireEnd();
    return parts.checkout.cancel(anyway);
}

bool Player::putOut(Arguments& arguments)
{
    arguments.requireEnd();
    parts.checkout.putOut();
    return true;
}

bool Player::reveal(Arguments& arguments)
{
    const int number = arguments.number(QStringLiteral("NUMBER"));
    const std::optional<int> newNumber = arguments.numberIfAny(QStringLiteral("NEW"));
    arguments.requireEnd();
    parts.checkout.reveal(number, newNumber);
    return true;
}

bool Player::deliver(Arguments& arguments)
{
    arguments.requireEnd();
    const Delivery::Outcome outcome = parts.delivery.run(true);
    parts.screen.write(QStringLiteral("    delivered %1, stepped aside %2")
                           .arg(QString::number(outcome.delivered), QString::number(outcome.steppedAside)));
    return !outcome.next && outcome.steppedAside == 0;
}

bool Player::crash(Arguments& arguments)
{
    arguments.requireEnd();
    if (!parts.crash) {
        throw ScriptError(QStringLiteral("nobody would start the till again here"));
    }
    parts.crash();
    return false;
}

bool Player::server(Arguments& arguments)
{
    if (parts.service.isEmpty()) {
        throw ScriptError(QStringLiteral("there is no sandbox service to control"));
    }
    static const QStringList actions { QStringLiteral("stop"), QStringLiteral("start"), QStringLiteral("fault"),
                                       QStringLiteral("clear") };
    QString action = arguments.word(QStringLiteral("action"));
    std::optional<QString> name;
    if (!actions.contains(action)) {
        name = std::exchange(action, arguments.word(QStringLiteral("action")));
    }
    const ControlledServer& server = parts.service.server(name);
    if (action == u"stop") {
        arguments.requireEnd();
        parts.service.stop(server);
    } else if (action == u"start") {
        arguments.requireEnd();
        parts.service.start(server);
    } else if (action == u"clear") {
        arguments.requireEnd();
        parts.service.clearFaults(server);
    } else if (action == u"fault") {
        const QString kind = arguments.word(QStringLiteral("KIND"));
        QString operation;
        std::optional<int> times;
        QString argument;
        while (!arguments.isEmpty()) {
            if (const std::optional<QString> value = arguments.takeAfter(u'=')) {
                argument = *value;
                continue;
            }
            const QString word = arguments.word(QStringLiteral("OPERATION"));
            bool isNumber = false;
            const int count = word.toInt(&isNumber);
            if (isNumber) {
                times = count;
            } else {
                operation = word;
            }
        }
        parts.service.setFault(server, kind, operation, times, argument);
    } else {
        throw ScriptError(QStringLiteral("a server can stop, start, fault or clear, not \"%1\"").arg(action));
    }
    return true;
}

bool Player::say(Arguments& arguments)
{
    QStringList words;
    while (!arguments.isEmpty()) {
        words.append(arguments.word(QStringLiteral("TEXT")));
    }
    parts.screen.write(QString());
    parts.screen.write(QStringLiteral("== %1 ==").arg(words.join(u' ')));
    return true;
}

} // namespace till
