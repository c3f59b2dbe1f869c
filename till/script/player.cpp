#include "till/script/player.h"

#include "host/facilities/finally.h"
#include "till/desk/desk_error.h"
#include "till/exchange_events.h"
#include "till/facilities/redaction.h"
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
        { text("scan"),
          text("scan BARCODE [xQUANTITY] @PRICE [code CODE] [min PRICE] [no-discount] [no-points] [no-earn]"),
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
        { text("coupon"), text("coupon [delete] NUMBER"), text("add or delete a coupon"), &Player::coupon },
        { text("points"), text("points [AMOUNT]"), text("pay with points; without an amount, all that is allowed"),
          &Player::points },
        { text("rollback"), text("rollback"), text("undo the payment with points"), &Player::rollback },
        { text("pay"), text("pay cash [AMOUNT]; pay certificate NUMBER [AMOUNT]"), text("pay the rest, or a part"),
          &Player::pay },
        { text("close"), text("close"), text("close the paid cheque"), &Player::close },
        { text("cancel"), text("cancel [anyway]"),
          text("cancel the cheque; anyway: even if points cannot be given back"), &Player::cancel },
        { text("putout"), text("putout"), text("set the cheque aside"), &Player::putOut },
        { text("reveal"), text("reveal NUMBER [NEW]"), text("bring a cheque back"), &Player::reveal },
        { text("server"),
          text("server [NAME] stop|start|clear; server [NAME] fault KIND [OPERATION] [TIMES] [=ARGUMENT]"),
          text("control a sandbox service"), &Player::server },
        { text("deliver"), text("deliver"), text("deliver the queue now"), &Player::deliver },
        { text("crash"), text("crash"), text("kill the till and start it again"), &Player::crash },
        { text("show"), text("show cheque|queue|wire|slip|books"), text("show what the till knows"), &Player::show },
        { text("expect"),
          text("expect ok|failed; expect refused TEXT; expect [no] shown|printed TEXT; expect sum|due|discount|points "
               "AMOUNT; expect queue COUNT [STATE]; expect wire [OPERATION[@SERVER]…]; expect balance CARD POINTS; "
               "expect books agree"),
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
        if (parts.recordExchange) {
            parts.recordExchange(event);
        }
        if (parts.showWire) {
            const auto lines = [](const QByteArray& text) { return redact(QString::fromUtf8(text)).trimmed(); };
            parts.screen.write(
                QStringLiteral("    → %1 %2\n%3").arg(event.address, event.action, lines(event.request)));
            parts.screen.write(
                event.failure.isEmpty()
                    ? QStringLiteral("    ← %1, %2 ms\n%3")
                          .arg(QString::number(event.status), QString::number(event.milliseconds), lines(event.reply))
                    : QStringLiteral("    ← %1\n%2").arg(redact(event.failure), lines(event.reply)));
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
        throw ScriptError(std::exchange(refusal, QString()), refusedLine);
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
    if (name != u"expect") { // which looks at a refusal first
        end();
    }
    if (name == u"expect" || name == u"show") { // a look at the last step is none itself
        try {
            static_cast<void>((this->*(verb->handler))(arguments));
        } catch (const DeskError& error) {
            throw ScriptError(error.text()); // there is no cheque to look at
        }
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
        refusedLine = line.number;
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

} // namespace till
