#include "till/script/arguments.h"
#include "till/script/player.h"

// What the verbs of the command language do, but for those that look at what others have done.

namespace till {

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
    const bool closed = parts.checkout.close();
    tellWaiting();
    return closed;
}

bool Player::cancel(Arguments& arguments)
{
    const bool anyway = arguments.take(QStringLiteral("anyway"));
    arguments.requireEnd();
    const bool cancelled = parts.checkout.cancel(anyway);
    tellWaiting();
    return cancelled;
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
        throw ScriptError(
            QStringLiteral("there is no sandbox service to control; name it with --sandbox NAME=SERVICE,CONTROL"));
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
