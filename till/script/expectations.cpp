#include "host/facilities/exceptions.h"
#include "till/script/arguments.h"
#include "till/script/books.h"
#include "till/script/player.h"
#include "till/store/queue_records.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace till {

namespace {

    [[nodiscard]] QString money(Kopecks sum)
    {
        return QString::number(roubles(sum), 'f', 2);
    }

    [[nodiscard]] QString stateName(store::RecordState state)
    {
        switch (state) {
        case store::RecordState::pending:
            return QStringLiteral("pending");
        case store::RecordState::held:
            return QStringLiteral("held");
        case store::RecordState::refused:
            return QStringLiteral("refused");
        case store::RecordState::damaged:
            return QStringLiteral("damaged");
        }
        return QString();
    }

    /// What is looked for in a text: nothing would be found in every one.
    [[nodiscard]] QString textOf(Arguments& arguments)
    {
        const QString text = arguments.word(QStringLiteral("TEXT"));
        arguments.requireEnd();
        if (text.isEmpty()) {
            throw ScriptError(QStringLiteral("TEXT is empty"));
        }
        return text;
    }

    /// What impacts of a class take off the document.
    template <class Impact>
    [[nodiscard]] Kopecks totalOf(const ChequeContents& contents)
    {
        Kopecks total = 0;
        for (const QSharedPointer<DocumentImpact>& impact : contents.impacts) {
            if (impact.dynamicCast<Impact>()) {
                total += kopecks(impact->getTotals()->getDiscountSum());
            }
        }
        return total;
    }

} // namespace

bool Player::expect(Arguments& arguments)
{
    const QString what = arguments.word(QStringLiteral("what"));
    if (what == u"refused") {
        const QString text = textOf(arguments);
        const QString reason = std::exchange(refusal, QString());
        if (reason.isEmpty() || !reason.contains(text)) {
            throw ScriptError(reason.isEmpty() ? QStringLiteral("the till has refused nothing")
                                               : QStringLiteral("the till has refused it with \"%1\"").arg(reason));
        }
        return true;
    }
    end();
    if (what == u"ok" || what == u"failed") {
        arguments.requireEnd();
        if (lastResult != (what == u"ok")) {
            throw ScriptError(lastResult ? QStringLiteral("the last step went well")
                                         : QStringLiteral("the last step has failed"));
        }
    } else if (what == u"no") {
        const QString where = arguments.word(QStringLiteral("where"));
        if (where != u"shown" && where != u"printed") {
            throw ScriptError(QStringLiteral("one expects no shown or no printed, not \"%1\"").arg(where));
        }
        const QString text = textOf(arguments);
        if ((where == u"shown" ? parts.screen.shown() : parts.screen.printed()).join(u'\n').contains(text)) {
            throw ScriptError(QStringLiteral("\"%1\" was %2").arg(text, where));
        }
    } else if (what == u"shown") {
        expectText(what, parts.screen.shown(), arguments);
    } else if (what == u"printed") {
        expectText(what, parts.screen.printed(), arguments);
    } else if (what == u"sum") {
        expectSum(what, parts.checkout.contents().sum(), arguments);
    } else if (what == u"due") {
        expectSum(what, parts.checkout.due(), arguments);
    } else if (what == u"discount") {
        expectSum(what, roubles(totalOf<DiscountImpact>(parts.checkout.contents())), arguments);
    } else if (what == u"points") {
        expectSum(what, roubles(totalOf<BonusImpact>(parts.checkout.contents())), arguments);
    } else if (what == u"queue") {
        expectQueue(arguments);
    } else if (what == u"wire") {
        expectWire(arguments);
    } else if (what == u"balance") {
        const QString card = arguments.word(QStringLiteral("CARD"));
        expectSum(QStringLiteral("balance"), roubles(parts.service.balance(card)), arguments);
    } else if (what == u"books") {
        if (!arguments.take(QStringLiteral("agree"))) {
            throw ScriptError(QStringLiteral("books can agree, nothing else"));
        }
        arguments.requireEnd();
        expectBooks();
    } else {
        throw ScriptError(QStringLiteral("\"%1\" cannot be expected").arg(what));
    }
    return true;
}

void Player::expectSum(const QString& name, double actual, Arguments& arguments) const
{
    const double expected = arguments.money(QStringLiteral("AMOUNT"));
    arguments.requireEnd();
    if (kopecks(expected) != kopecks(actual)) {
        throw ScriptError(
            QStringLiteral("%1 is %2, not %3").arg(name, money(kopecks(actual)), money(kopecks(expected))));
    }
}

void Player::expectText(const QString& where, const QStringList& texts, Arguments& arguments) const
{
    const QString text = textOf(arguments);
    if (!texts.join(u'\n').contains(text)) {
        throw ScriptError(QStringLiteral("\"%1\" was not %2; that was: \"%3\"").arg(text, where, texts.join(u" / ")));
    }
}

void Player::expectQueue(Arguments& arguments) const
{
    const int expected = arguments.number(QStringLiteral("COUNT"));
    const std::optional<QString> state
        = arguments.isEmpty() ? std::nullopt : std::optional(arguments.word(QStringLiteral("STATE")));
    arguments.requireEnd();
    using enum store::RecordState;
    if (state && std::ranges::none_of(std::array { pending, held, refused, damaged }, [&](auto known) {
            return stateName(known) == *state;
        })) {
        throw ScriptError(QStringLiteral("a message is pending, held, refused or damaged, not \"%1\"").arg(*state));
    }
    const QList<store::QueueRecord> records = store::queueRecords();
    const auto count = std::ranges::count_if(records, [&state](const store::QueueRecord& record) {
        return !state || stateName(record.state) == *state;
    });
    if (count != expected) {
        throw ScriptError(QStringLiteral("the queue holds %1, not %2").arg(count).arg(expected));
    }
}

void Player::expectWire(Arguments& arguments) const
{
    QStringList expected;
    while (!arguments.isEmpty()) {
        expected.append(arguments.word(QStringLiteral("OPERATION")));
    }
    QStringList actual;
    const QList<ExchangeEvent> made = exchangesOfStep();
    for (const ExchangeEvent& exchange : made) {
        if (exchange.action == u"Ping") {
            continue; // the search for a better server goes on beside everything else
        }
        // An expectation without a server takes any.
        const bool named = actual.size() < expected.size() && expected.at(actual.size()).contains(u'@');
        actual.append(named ? exchange.action + u'@' + parts.service.nameOf(exchange.address) : exchange.action);
    }
    if (actual != expected) {
        throw ScriptError(
            QStringLiteral("the exchanges were \"%1\", not \"%2\"").arg(actual.join(u' '), expected.join(u' ')));
    }
}

void Player::expectBooks() const
{
    const QList<BookLine> lines = compareBooks(parts.service);
    for (const BookLine& line : lines) {
        if (!line.difference.isEmpty()) {
            throw ScriptError(QStringLiteral("the books differ at cheque %1: %2").arg(line.name, line.difference));
        }
    }
}

void Player::showCheque() const
{
    const ChequeContents& cheque = parts.checkout.contents();
    parts.screen.write(QStringLiteral("    cheque %1, type %2").arg(cheque.head.number).arg(cheque.head.type));
    for (const QSharedPointer<GoodsItem>& line : cheque.liveLines()) {
        parts.screen.write(QStringLiteral("    %1  %2  %3 x %4 = %5")
                               .arg(QString::number(line->getPosnum()), line->getBcode(),
                                    money(kopecks(line->getPrice())), QString::number(line->getQuantity()),
                                    money(kopecks(line->getSumb()))));
    }
    parts.screen.write(QStringLiteral("    discount %1, points %2, sum %3, due %4")
                           .arg(money(totalOf<DiscountImpact>(cheque)), money(totalOf<BonusImpact>(cheque)),
                                money(kopecks(cheque.sum())), money(kopecks(parts.checkout.due()))));
}

void Player::showQueue() const
{
    const QList<store::QueueRecord> records = store::queueRecords();
    if (records.isEmpty()) {
        parts.screen.write(QStringLiteral("    the queue is empty"));
    }
    for (const store::QueueRecord& record : records) {
        parts.screen.write(QStringLiteral("    %1  %2  %3  %4")
                               .arg(QString::number(record.id), record.queuedAt.toLocalTime().toString(Qt::ISODate),
                                    stateName(record.state), record.reason));
    }
}

void Player::tellWaiting() const
{
    try {
        const QList<store::QueueRecord> records = store::queueRecords();
        const auto waiting = std::ranges::count(records, store::RecordState::pending, &store::QueueRecord::state);
        if (waiting > 0) {
            parts.screen.write(QStringLiteral("    in the queue, waiting for delivery: %1").arg(waiting));
        }
    } catch (const BasicException& failure) {
        parts.screen.write(QStringLiteral("    the queue cannot be read: %1").arg(QString::fromUtf8(failure.what())));
    }
}

void Player::showBooks() const
{
    for (const QString& line : bookTable(compareBooks(parts.service))) {
        parts.screen.write(QStringLiteral("    ") + line);
    }
}

bool Player::show(Arguments& arguments)
{
    const QString what = arguments.word(QStringLiteral("what"));
    arguments.requireEnd();
    if (what == u"cheque") {
        showCheque();
    } else if (what == u"queue") {
        showQueue();
    } else if (what == u"books") {
        showBooks();
    } else if (what == u"slip") {
        for (const QString& line : parts.screen.slips().isEmpty()
                 ? QStringList { QStringLiteral("no slip was printed") }
                 : parts.screen.slips().constLast().split(u'\n')) {
            parts.screen.write(QStringLiteral("    | ") + line);
        }
    } else if (what == u"wire") {
        const QList<ExchangeEvent> made = exchangesOfStep();
        for (const ExchangeEvent& exchange : made) {
            parts.screen.write(QStringLiteral("    %1 %2: %3").arg(
                parts.service.nameOf(exchange.address), exchange.action,
                exchange.failure.isEmpty() ? QString::number(exchange.status) : exchange.failure));
        }
    } else {
        throw ScriptError(QStringLiteral("\"%1\" cannot be shown").arg(what));
    }
    return true;
}

} // namespace till
