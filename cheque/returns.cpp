#include "bonus/vantiro_bonus_interface.h"

#include "cheque/elements.h"
#include "cheque/names.h"
#include "client/exceptions.h"
#include "client/forms.h"
#include "host/document/back_by_sale_document.h"
#include "host/framework/documents_dao.h"

#include <QJsonDocument>

using namespace vantiro;

namespace {

[[nodiscard]] QString typeOfClosed(AbstractDocument& document)
{
    switch (document.getDocumentType()) {
    case EDocumentType::sale:
        return xml::sale;
    case EDocumentType::goodsReturn:
    case EDocumentType::returnBySale:
        return xml::goodsReturn;
    default:
        return QString();
    }
}

/// A cheque that was set aside is known to the server under its first number, which its plug-in data keeps. Plug-in
/// data of ours without a number give 0, not the host's number: the service then reports the return instead of booking
/// it on another sale.
[[nodiscard]] int numberAtServer(int hostNumber, const QString& pluginDataJson)
{
    const QJsonObject data = QJsonDocument::fromJson(pluginDataJson.toUtf8()).object();
    const QString key = QStringLiteral("vantiro");
    if (!data.contains(key)) {
        return hostNumber;
    }
    return data.value(key).toObject().value(QStringLiteral("chequeNo")).toString().toInt(nullptr, 10);
}

} // namespace

QDomDocument VantiroBonusInterface::buildBackXmlCheck(const QSharedPointer<AbstractDocument>& document) const
{
    QDomDocument result;
    QDomElement element;
    addChequeTag(document, xml::goodsReturn, xml::closed, result, element, document->getDocumentSum(),
                 document->getPositionCount(), {});
    addDiscountCardTag(document, element);
    addSaleChequeTag(document, element, true);
    addChequeLinesTag(document, element, {}, {});
    addDiscountsMessagesPaymentsTags(element);
    result.appendChild(element);
    return result;
}

QDomDocument VantiroBonusInterface::buildAccrualAnyXmlCheck(const QSharedPointer<AbstractDocument>& document) const
{
    QDomDocument result;
    QDomElement element;
    addChequeTag(document, typeOfClosed(*document), xml::closed, result, element, document->getDocumentSum(),
                 document->getPositionCount(), {});
    if (document->getDocumentType() == EDocumentType::returnBySale) {
        addSaleChequeTag(document, element, false);
    }
    addChequeLinesTag(document, element, {}, {});
    addDiscountsMessagesPaymentsTags(element);
    result.appendChild(element);
    return result;
}

QDomDocument VantiroBonusInterface::buildAccrualCanceledXmlCheck(const QSharedPointer<AbstractDocument>& document,
                                                                 const QMap<int, QList<QString>>& positionCoupons,
                                                                 const QList<QString>& coupons) const
{
    double amount = document->getDocumentSum();
    int positionCount = document->getPositionCount();
    if (positionCount == 0) { // all lines have been taken off: the cheque is told by what was on it
        const QList<QSharedPointer<GoodsItem>> deleted = document->getDeletedGoodsItems();
        positionCount = static_cast<int>(deleted.size());
        amount = 0.0;
        for (const QSharedPointer<GoodsItem>& item : deleted) {
            amount += item->getSumb();
        }
    }

    QDomDocument result;
    QDomElement element;
    addChequeTag(document, typeOfClosed(*document), xml::canceled, result, element, amount, positionCount, {});
    addDiscountCardTag(document, element);
    if (document->getDocumentType() == EDocumentType::returnBySale) {
        addSaleChequeTag(document, element, false);
    }
    if (document->getPositionCount() < 1) {
        addChequeLinesTag(document, element, positionCoupons);
    } else {
        addChequeLinesTag(document, element, {}, positionCoupons);
    }
    addDiscountsMessagesPaymentsTags(element);
    addCouponsTags(coupons, element);
    result.appendChild(element);
    return result;
}

void VantiroBonusInterface::addSaleChequeTag(const QSharedPointer<AbstractDocument>& document, QDomElement& cheque,
                                             bool required) const
{
    const QVariant key = document->getSourceDocumentId();
    if (!key.isNull()) {
        if (const QSharedPointer<AbstractDocument> sale = Singleton<DocumentsDao>::get()->getDocument(key, 0)) {
            addSaleChequeTag(numberAtServer(sale->getChequeNumber(), sale->getPluginDataJson()), sale->getOpenTime(),
                             sale->getCloseTime(), cheque);
            return;
        }
    } else if (const auto back = document.dynamicCast<BackBySaleDocument>()) {
        if (const QSharedPointer<SaleDocumentSource> sale = back->getSource()) {
            addSaleChequeTag(numberAtServer(sale->chequeNumber, sale->pluginDataJson), sale->openTime, sale->closeTime,
                             cheque);
            return;
        }
    }
    if (required) {
        throw VantiroException(tr::Tr(QStringLiteral("vantiroSourceDocNotFound"),
                                      QStringLiteral("Не обнаружен источник для документа возврата")));
    }
}

void VantiroBonusInterface::addSaleChequeTag(int chequeNo, const QDateTime& openTime, const QDateTime& closeTime,
                                             QDomElement& cheque) const
{
    QDomElement sale = xml::appendElement(cheque, QStringLiteral("SaleCheque"));
    sale.setAttribute(xml::chequeNo, QString::number(chequeNo));
    sale.setAttribute(xml::openTime, forms::dateTime(openTime));
    sale.setAttribute(xml::closeTime, forms::dateTime(closeTime));
    // The server knows the sale; it is named here, not told again.
    sale.setAttribute(xml::amount, QStringLiteral("0"));
    sale.setAttribute(xml::subtractedBonus, QStringLiteral("0.00"));
    sale.setAttribute(xml::positionCount, QStringLiteral("0"));
    sale.setAttribute(xml::status, xml::closed);
    sale.setAttribute(xml::chequeType, xml::sale);
    xml::appendElement(sale, xml::chequeLinesTag);
}
