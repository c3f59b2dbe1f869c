#include "client/vantiro_interface.h"

#include "cheque/elements.h"
#include "cheque/names.h"
#include "client/forms.h"
#include "client/xml_text.h"

using namespace vantiro;

namespace {

/// The points of all impacts, added up.
struct BonusSums {
    QMap<int, double> byPosition;
    double total = 0.0;
};

[[nodiscard]] BonusSums addUp(const QList<QSharedPointer<BonusImpact>>& bonusImpacts)
{
    BonusSums sums;
    for (const QSharedPointer<BonusImpact>& impact : bonusImpacts) {
        if (!impact) {
            continue; // restored from a record that was none
        }
        const QMap<int, QSharedPointer<DocumentImpactDetail>> details = impact->getDetails();
        for (auto it = details.cbegin(); it != details.cend(); ++it) {
            if (it.value()) {
                sums.byPosition[it.key()] += it.value()->getDiscountSum();
                sums.total += it.value()->getDiscountSum();
            }
        }
    }
    return sums;
}

/// A copy without the children, not yet appended. Taken over as a whole and then corrected: that costs less than to
/// walk the attributes and set each.
[[nodiscard]] QDomElement copyOf(const QDomElement& source, QDomDocument& target)
{
    return target.importNode(source, false).toElement();
}

/// A name that the source lacks is not added.
void replaceAttribute(QDomElement& element, const QString& name, const QString& value)
{
    if (QDomAttr attribute = element.attributeNode(name); !attribute.isNull()) {
        attribute.setValue(value);
    }
}

void appendDeepCopy(QDomElement& line, const QDomElement& source, QDomDocument& target)
{
    if (!source.isNull()) {
        line.appendChild(target.importNode(source, true));
    }
}

void appendPayments(QDomElement& cheque, const QList<QSharedPointer<MoneyItem>>& certificates)
{
    QDomElement payments = xml::appendElement(cheque, xml::paymentsTag);
    int ordinal = 0;
    for (const QSharedPointer<MoneyItem>& certificate : certificates) {
        QDomElement payment = xml::appendElement(payments, QStringLiteral("Payment"));
        payment.setAttribute(QStringLiteral("PaymentUID"), QString());
        payment.setAttribute(QStringLiteral("PaymentNo"), QString::number(++ordinal));
        payment.setAttribute(xml::type, QStringLiteral("6")); // the service's number for a certificate
        payment.setAttribute(xml::amount, forms::money(certificate->getAmount()));
    }
}

} // namespace

QDomDocument VantiroInterface::buildAccrualXmlCheck(const QDomDocument& cheque,
                                                    const QList<QSharedPointer<BonusImpact>>& bonusImpacts,
                                                    const QMap<int, QList<QString>>& positionCoupons,
                                                    const QList<QString>& coupons,
                                                    const QList<QSharedPointer<MoneyItem>>& certificates) const
{
    logger->info("Создание xml-чека для commit");

    const BonusSums bonus = addUp(bonusImpacts);
    double subtractedTotal = bonus.total; // points and certificates together, where the card shows points alone
    for (const QSharedPointer<MoneyItem>& certificate : certificates) {
        subtractedTotal += certificate->getAmount();
    }

    const QDomElement source = cheque.firstChildElement(xml::chequeTag);
    QDomDocument result;
    QDomElement element = source.isNull() ? result.createElement(xml::chequeTag) : copyOf(source, result);
    replaceAttribute(element, xml::subtractedBonus, forms::money(subtractedTotal));
    replaceAttribute(element, xml::status, xml::closed);

    const QDomElement sourceCard = source.firstChildElement(xml::discountCardTag);
    if (sourceCard.hasAttributes()) {
        QDomElement card = copyOf(sourceCard, result);
        replaceAttribute(card, xml::subtractAmount, forms::money(bonus.total));
        element.appendChild(card);
    }
    for (const QSharedPointer<MoneyItem>& certificate : certificates) {
        xml::appendDiscountCard(element, certificate->getCardNum(), certificate->getAmount(), false);
    }

    QDomElement chequeLines = xml::makeElement(element, xml::chequeLinesTag);
    for (QDomElement sourceLine = source.firstChildElement(xml::chequeLinesTag).firstChildElement(xml::chequeLineTag);
         !sourceLine.isNull(); sourceLine = sourceLine.nextSiblingElement()) {
        const int position = sourceLine.attribute(xml::chequeLineNo).toInt(nullptr, 10);
        QDomElement line = copyOf(sourceLine, result);
        line.setTagName(xml::chequeLineTag); // whatever stands behind the first line counts as one
        replaceAttribute(line, xml::bonusDiscount, forms::money(bonus.byPosition.value(position)));
        appendDeepCopy(line, sourceLine.firstChildElement(xml::itemTag), result);
        appendDeepCopy(line, sourceLine.firstChildElement(xml::discountsTag), result);
        addCouponsTags(positionCoupons.value(position), line);
        chequeLines.appendChild(line);
    }
    element.appendChild(chequeLines);

    xml::appendElement(element, xml::discountsTag);
    appendPayments(element, certificates);
    xml::appendElement(element, xml::messagesTag);
    addCouponsTags(coupons, element);
    result.appendChild(element);
    return result;
}
