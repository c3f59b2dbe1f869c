#include "tests/walk/model.h"

using namespace Qt::StringLiterals;

namespace walk {

namespace {

QString money(double sum)
{
    return QString::number(sum, 'f', 2);
}

// Newly granted discounts come off the line; one that the line already has does not count twice.
double grantedOn(int position, const QList<Discount>& granted)
{
    double sum = 0.0;
    QList<int> codes;
    for (const Discount& discount : granted) {
        if (discount.position == position && !codes.contains(discount.code)) {
            codes.append(discount.code);
            sum += discount.sum;
        }
    }
    return sum;
}

QString typeOfAnyOrCancelled(const Document& document)
{
    switch (document.type) {
    case 1:
        return u"Sale"_s;
    case 2:
    case 25:
        return u"Return"_s;
    default:
        return {};
    }
}

QString typeOfOpen(const Document& document)
{
    return document.type == 25 ? QString() : typeOfAnyOrCancelled(document);
}

} // namespace

QString Model::text(const Document& of, const Cheque& cheque) const
{
    double granted = 0.0;
    for (const Discount& discount : cheque.granted) {
        granted += discount.sum;
    }
    double spent = 0.0;
    QMap<int, double> spentOn;
    for (const Bonus& bonus : cheque.bonuses) {
        for (auto it = bonus.byPosition.cbegin(); it != bonus.byPosition.cend(); ++it) {
            spentOn[it.key()] += *it;
            spent += *it;
        }
    }
    QStringList lines;
    for (const Line& line : cheque.lines) {
        lines.append(u"%1:%2/%3[%4]"_s.arg(
            QString::number(line.number), money(line.sum - grantedOn(line.number, cheque.granted)),
            money(spentOn.value(line.number, 0.0)), cheque.positionCoupons.value(line.number).join(u' ')));
    }
    const QString head = u"no=%1 uid=%2 shift=%3 type=%4 status=%5 sum=%6 points=%7 count=%8"_s.arg(
        checkData.number.value_or(QString::number(of.number)), checkData.uid.value_or(of.uid()),
        checkData.shift.value_or(QString::number(of.shift)), cheque.type, cheque.status, money(cheque.amount - granted),
        money(spent), QString::number(cheque.lines.size()));
    const QString card = cheque.withCard && of.card ? u"%1/%2"_s.arg(of.card->number, money(spent)) : u"-"_s;
    return u"{%1 card=%2 sale=%3 lines=%4 coupons=%5}"_s.arg(head, card, cheque.sale.value_or(u"-"_s), lines.join(u' '),
                                                             cheque.coupons.join(u' '));
}

QString Model::openCheque(const QList<Discount>& granted, bool withCoupons) const
{
    Cheque cheque { typeOfOpen(document), u"Open"_s, document.sum(), true, {}, document.live, granted, {}, {}, {} };
    if (withCoupons) {
        cheque.positionCoupons = positionCoupons;
        cheque.coupons = chequeCoupons;
    }
    return text(document, cheque);
}

QString Model::accrualCheque() const
{
    return text(document,
                { typeOfOpen(document),
                  u"Closed"_s,
                  document.sum(),
                  true,
                  {},
                  document.live,
                  {},
                  bonuses,
                  positionCoupons,
                  chequeCoupons });
}

Model::Got<QString> Model::returnCheque() const
{
    Cheque cheque { u"Return"_s, u"Closed"_s, document.sum(), true, {}, document.live, {}, {}, {}, {} };
    if (document.type == 25) {
        if (!document.saleNumber) {
            return { {},
                     Failure { Failure::unusable, u"vantiroSourceDocNotFound"_s,
                               u"Не обнаружен источник для документа возврата"_s } };
        }
        cheque.sale = document.saleNumber;
    }
    return { text(document, cheque), {} };
}

QString Model::anyCheque(const Document& closed) const
{
    return text(closed,
                { typeOfAnyOrCancelled(closed),
                  u"Closed"_s,
                  closed.sum(),
                  false,
                  closed.saleNumber,
                  closed.live,
                  {},
                  {},
                  {},
                  {} });
}

QString Model::cancelledCheque(const Document& cancelled) const
{
    const bool hasLines = !cancelled.live.isEmpty();
    return text(cancelled,
                { typeOfAnyOrCancelled(cancelled),
                  u"Canceled"_s,
                  hasLines ? cancelled.sum() : cancelled.deletedSum(),
                  true,
                  cancelled.saleNumber,
                  hasLines ? cancelled.live : cancelled.deleted,
                  {},
                  {},
                  positionCoupons,
                  chequeCoupons });
}

} // namespace walk
