#include "client/vantiro_interface.h"

#include "bonus/records.h"
#include "cheque/elements.h"
#include "cheque/names.h"
#include "client/forms.h"
#include "client/xml_text.h"
#include "client/xml_writer.h"

#include <QUuid>

using namespace vantiro;

QString VantiroInterface::getChequeUID(const QString& identity) const
{
    // Derived and never stored: one document has one UUID in every message, online or offline and across restarts.
    return QUuid::createUuidV5(QUuid(), identity.toUtf8()).toString(QUuid::WithoutBraces).toUpper();
}

QString VantiroInterface::getXmlCheckString(const QDomDocument& cheque) const
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>") + writeXml(cheque);
}

QDomDocument VantiroInterface::buildXmlCheck(const QSharedPointer<AbstractDocument>& document,
                                             const QMap<int, QList<QString>>& positionCoupons,
                                             const QList<QString>& coupons,
                                             const QList<QSharedPointer<DiscountImpact>>& discountImpacts) const
{
    QString chequeType;
    if (document->getDocumentType() == EDocumentType::sale) {
        chequeType = xml::sale;
    } else if (document->getDocumentType() == EDocumentType::goodsReturn) {
        chequeType = xml::goodsReturn;
    } // a return by sale has builders of its own, and here no type

    QDomDocument result;
    QDomElement element;
    addChequeTag(document, chequeType, xml::open, result, element, document->getDocumentSum(),
                 document->getPositionCount(), discountImpacts);
    addDiscountCardTag(document, element);
    addChequeLinesTag(document, element, discountImpacts, positionCoupons);
    addDiscountsMessagesPaymentsTags(element);
    addCouponsTags(coupons, element);
    result.appendChild(element);
    return result;
}

void VantiroInterface::addChequeTag(const QSharedPointer<AbstractDocument>& document, const QString& chequeType,
                                    const QString& status, QDomDocument& target, QDomElement& cheque, double amount,
                                    int positionCount,
                                    const QList<QSharedPointer<DiscountImpact>>& discountImpacts) const
{
    double discount = 0.0;
    for (const QSharedPointer<DiscountImpact>& impact : discountImpacts) {
        if (impact) { // a restored list may hold a record that was none
            discount += impact->getTotals()->getDiscountSum();
        }
    }

    // A cheque that was set aside keeps its first identity; each key counts by its presence, whatever its value.
    // The document is asked for what is not kept alone: by then it may have moved on.
    const auto kept = [this](const QString& key, const auto& own) {
        return checkData.contains(key) ? xmlText(checkData.value(key).toString()) : own();
    };

    const QDateTime openTime = document->getOpenTime();
    const QDateTime closeTime = document->getCloseTime();

    cheque = target.createElement(xml::chequeTag);
    cheque.setAttribute(QStringLiteral("xmlns:xsi"), QStringLiteral("http://www.w3.org/2001/XMLSchema-instance"));
    cheque.setAttribute(QStringLiteral("xmlns:xsd"), QStringLiteral("http://www.w3.org/2001/XMLSchema"));
    cheque.setAttribute(QStringLiteral("ShiftNo"),
                        kept(QStringLiteral("shiftNo"), [&] { return QString::number(document->getShiftNumber()); }));
    cheque.setAttribute(QStringLiteral("ChequeUID"),
                        kept(QStringLiteral("chequeUid"), [&] { return getChequeUID(document->getDocumentIdentity()); }));
    cheque.setAttribute(xml::chequeNo,
                        kept(QStringLiteral("chequeNo"), [&] { return QString::number(document->getChequeNumber()); }));
    cheque.setAttribute(xml::openTime, forms::dateTime(openTime));
    cheque.setAttribute(xml::closeTime, forms::dateTime(closeTime.isValid() ? closeTime : openTime));
    cheque.setAttribute(xml::amount, forms::money(amount - discount));
    cheque.setAttribute(xml::subtractedBonus, forms::money(getSubtractedBonus(document)));
    cheque.setAttribute(xml::positionCount, QString::number(positionCount));
    cheque.setAttribute(xml::chequeType, chequeType);
    cheque.setAttribute(xml::status, status);
}

void VantiroInterface::addDiscountCardTag(const QSharedPointer<AbstractDocument>& document, QDomElement& cheque) const
{
    if (const QSharedPointer<DocumentCardRecord> card = document->getCardRecord(records::cardMode)) {
        xml::appendDiscountCard(cheque, card->getNumber().toString(), getSubtractedBonus(document), true);
    }
}

void VantiroInterface::addDiscountsMessagesPaymentsTags(QDomElement& cheque) const
{
    for (const QString& tag : { xml::discountsTag, xml::paymentsTag, xml::messagesTag }) {
        xml::appendElement(cheque, tag);
    }
}

void VantiroInterface::addCouponsTags(const QList<QString>& coupons, QDomElement& parent) const
{
    for (const QString& coupon : coupons) {
        QDomElement element = xml::appendElement(parent, QStringLiteral("Coupon"));
        element.setAttribute(QStringLiteral("CouponNo"), xmlText(coupon));
    }
}

double VantiroInterface::getSubtractedBonus(const QSharedPointer<AbstractDocument>& document) const
{
    double sum = 0.0;
    // Held as constants: a loop over what is returned would copy each list and map, which the host still holds.
    const QList<QSharedPointer<DocumentImpact>> impacts = document->getDocumentImpacts();
    for (const QSharedPointer<DocumentImpact>& impact : impacts) {
        const QMap<int, QSharedPointer<DocumentImpactDetail>> details = impact->getDetails();
        for (const QSharedPointer<DocumentImpactDetail>& detail : details) {
            if (detail && detail->getDiscountName() == records::bonusName) {
                sum += detail->getDiscountSum();
            }
        }
    }
    return sum;
}
