#include "tests/walk/records.h"

#include "tests/support/sorted_attributes.h"

#include <QUuid>

using namespace Qt::StringLiterals;

namespace walk {

namespace {

double sumOf(const QList<Line>& lines)
{
    double sum = 0.0;
    for (const Line& line : lines) {
        sum += line.sum;
    }
    return sum;
}

QString text(bool value)
{
    return value ? u"true"_s : u"false"_s;
}

QString text(double number)
{
    return exact(number);
}

QString text(const QStringList& list)
{
    return u'[' + list.join(u", "_s) + u']';
}

QString text(const QList<Discount>& discounts)
{
    QStringList all;
    for (const Discount& discount : discounts) {
        all.append(u"%1 on %2 code %3"_s.arg(exact(discount.sum)).arg(discount.position).arg(discount.code));
    }
    return text(all);
}

QString text(const QList<Bonus>& bonuses)
{
    QStringList all;
    for (const Bonus& bonus : bonuses) {
        QStringList spread;
        for (auto it = bonus.byPosition.cbegin(); it != bonus.byPosition.cend(); ++it) {
            spread.append(u"%1: %2"_s.arg(QString::number(it.key()), exact(*it)));
        }
        all.append(exact(bonus.sum) + u' ' + text(spread));
    }
    return text(all);
}

QString text(const QMap<int, QStringList>& byPosition)
{
    QStringList all;
    for (auto it = byPosition.cbegin(); it != byPosition.cend(); ++it) {
        all.append(QString::number(it.key()) + u": "_s + text(*it));
    }
    return text(all);
}

QString text(const CheckData& data)
{
    return u"no %1 uid %2 shift %3"_s.arg(data.number.value_or(u"-"_s), data.uid.value_or(u"-"_s),
                                          data.shift.value_or(u"-"_s));
}

QString text(const Card& card)
{
    return u"%1 balance %2 points %3 spent %4"_s.arg(card.number, card.balance ? exact(*card.balance) : u"unknown"_s,
                                                     exact(card.points), exact(card.spent));
}

template <class T>
QString text(const std::optional<T>& value)
{
    return value ? text(*value) : u"absent"_s;
}

QString block(const QString& name, const QStringList& content)
{
    QString text = content.join(u'\n');
    text.replace(u'\n', u"\n    "_s); // an entry may have several lines of its own
    return name + u":\n    "_s + (text.contains(u'<') ? sortedAttributes(text) : text);
}

} // namespace

double Document::sum() const
{
    return sumOf(live);
}

double Document::deletedSum() const
{
    return sumOf(deleted);
}

QString Document::uid() const
{
    return QUuid::createUuidV5(QUuid(), identity).toString(QUuid::WithoutBraces).toUpper();
}

QString exact(double number)
{
    return QString::number(number, 'g', 15);
}

QStringList lines(const View& view)
{
    return {
        u"points: "_s + text(view.points),
        u"discounts: "_s + text(view.discounts),
        u"bonuses: "_s + text(view.bonuses),
        u"to the cashier: "_s + text(view.toCashier),
        u"to the client: "_s + text(view.toClient),
        u"last error: "_s + view.error,
        u"cheque coupons: "_s + text(view.chequeCoupons),
        u"position coupons: "_s + text(view.positionCoupons),
        u"card: "_s + text(view.card),
        u"stored points: "_s + text(view.stored.points),
        u"stored discounts: "_s + text(view.stored.discounts),
        u"stored bonuses: "_s + text(view.stored.bonuses),
        u"stored offline: "_s + text(view.stored.offline),
        u"stored cheque coupons: "_s + text(view.stored.chequeCoupons),
        u"stored position coupons: "_s + text(view.stored.positionCoupons),
        u"stored deferred check: "_s + text(view.stored.deferredCheck),
        u"json: "_s + view.json,
        u"coupons of the till: "_s + text(view.coupons),
    };
}

QStringList lines(const Account& account)
{
    return {
        u"result: "_s + account.result, block(u"told"_s, account.told),     block(u"log"_s, account.log),
        block(u"sent"_s, account.sent), block(u"queued"_s, account.queued), block(u"shown"_s, account.shown),
    };
}

} // namespace walk
