#include "tests/walk/wire_text.h"

#include <QDomDocument>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace walk {

namespace {

QString couponsOf(const QDomElement& parent)
{
    QStringList numbers;
    for (QDomElement coupon = parent.firstChildElement(u"Coupon"_s); !coupon.isNull();
         coupon = coupon.nextSiblingElement(u"Coupon"_s)) {
        numbers.append(coupon.attribute(u"CouponNo"_s));
    }
    return numbers.join(u' ');
}

QString linesOf(const QDomElement& cheque)
{
    QStringList lines;
    for (QDomElement line = cheque.firstChildElement(u"ChequeLines"_s).firstChildElement(u"ChequeLine"_s);
         !line.isNull(); line = line.nextSiblingElement(u"ChequeLine"_s)) {
        lines.append(u"%1:%2/%3[%4]"_s.arg(line.attribute(u"ChequeLineNo"_s), line.attribute(u"Amount"_s),
                                           line.attribute(u"BonusDiscount"_s), couponsOf(line)));
    }
    return lines.join(u' ');
}

QString chequeText(const QString& xml)
{
    QDomDocument document;
    if (!document.setContent(xml)) {
        return u"{not XML: "_s + xml + u'}';
    }
    const QDomElement cheque = document.documentElement();
    const auto says = [&cheque](const QString& name) { return cheque.attribute(name, u"absent"_s); };
    const QDomElement card = cheque.firstChildElement(u"DiscountCard"_s);
    const QDomElement sale = cheque.firstChildElement(u"SaleCheque"_s);
    const QString head = u"no=%1 uid=%2 shift=%3 type=%4 status=%5 sum=%6 points=%7 count=%8"_s.arg(
        says(u"ChequeNo"_s), says(u"ChequeUID"_s), says(u"ShiftNo"_s), says(u"ChequeType"_s), says(u"Status"_s),
        says(u"Amount"_s), says(u"SubtractedBonus"_s), says(u"PositionCount"_s));
    return u"{%1 card=%2 sale=%3 lines=%4 coupons=%5}"_s.arg(
        head,
        card.isNull() ? u"-"_s
                      : u"%1/%2"_s.arg(card.attribute(u"DiscountCardNo"_s), card.attribute(u"SubtractAmount"_s)),
        sale.isNull() ? u"-"_s : sale.attribute(u"ChequeNo"_s), linesOf(cheque), couponsOf(cheque));
}

} // namespace

QString wireText(const QByteArray& envelope)
{
    QDomDocument document;
    if (!document.setContent(envelope)) {
        return u"not XML: "_s + QString::fromUtf8(envelope);
    }
    const QDomElement operation = document.documentElement().firstChildElement(u"soapenv:Body"_s).firstChildElement();
    QStringList words { operation.tagName().section(u':', -1) };
    for (QDomElement parameter = operation.firstChildElement(); !parameter.isNull();
         parameter = parameter.nextSiblingElement()) {
        const QString name = parameter.tagName().section(u':', -1);
        words.append(name + u'=' + (name == u"cheque"_s ? chequeText(parameter.text()) : parameter.text()));
    }
    return words.join(u' ');
}

} // namespace walk
