#include "bench/long_cheque.h"

#include "bonus/records.h"
#include "till/document/card.h"
#include "till/document/payment.h"

#include <QDate>
#include <QDateTime>
#include <QTime>

using namespace vantiro;

namespace {

const QDateTime openTime(QDate(2024, 3, 5), QTime(14, 7, 9));
const QDateTime closeTime(QDate(2024, 3, 5), QTime(14, 9, 30));

till::ChequeHead head(int type)
{
    till::ChequeHead result;
    result.type = type;
    result.number = 1042;
    result.shift = 17;
    result.openTime = openTime;
    result.closeTime = closeTime;
    return result;
}

till::LineFields line(int position)
{
    till::LineFields fields;
    fields.posnum = position;
    fields.code = QString::number(100000 + position);
    fields.barcode = QStringLiteral("46000510%1").arg(position, 5, 10, QLatin1Char('0'));
    fields.price = 49.90 + position % 700;
    fields.minPrice = position % 8 == 0 ? fields.price : 30.0;
    fields.quantity = position % 5 == 0 ? 0.350 : 1 + position % 3;
    fields.bonusSpendAllowed = position % 9 != 0;
    fields.discountAllowed = position % 11 != 0;
    return fields;
}

QSharedPointer<DocumentImpactDetail> discount(const QString& name, EImpactSource::source source, int position)
{
    auto detail = QSharedPointer<DocumentImpactDetail>::create();
    detail->setDiscountName(name);
    detail->setDiscountCode(1 + position % 4);
    detail->setDiscountObject(EDiscountObject::position);
    detail->setDiscountType(position % 2 == 0 ? EDiscountType::percent : EDiscountType::sum);
    detail->setDiscountMode(EDiscountMode::loyalty);
    detail->setDiscountRate(5.0);
    detail->setImpactSource(source);
    detail->setPosition(position);
    detail->setDiscountSum(2.5);
    return detail;
}

QSharedPointer<BonusImpact> points(int lineCount)
{
    auto totals = QSharedPointer<DocumentImpactDetail>::create();
    totals->setDiscountName(records::bonusName);
    totals->setDiscountObject(EDiscountObject::cheque);
    totals->setDiscountType(EDiscountType::bonus);
    totals->setDiscountSum(lineCount);
    auto impact = QSharedPointer<BonusImpact>::create(totals);
    for (int position = 1; position <= lineCount; ++position) {
        impact->addDetailForPosition(position, 1.0);
    }
    return impact;
}

/// The server grants one discount a line, and the till keeps each as a record of its own.
QList<QSharedPointer<DocumentImpact>> discounts(int lineCount)
{
    QList<QSharedPointer<DocumentImpact>> result;
    for (int position = 1; position <= lineCount; ++position) {
        if (position % 3 == 0) {
            const auto impact = QSharedPointer<DiscountImpact>::create(
                discount(QStringLiteral("Скидка выходного дня"), EImpactSource::host, position));
            impact->addDetailForPosition(position, 2.5);
            result.append(impact);
        }
        if (position % 2 == 0) {
            const auto impact = QSharedPointer<DiscountImpact>::create(
                discount(records::positionDiscountName, EImpactSource::loyaltySystem, position));
            impact->addDetailForPosition(position, 2.5);
            result.append(impact);
        }
    }
    return result;
}

void fill(till::ChequeContents& contents, int lineCount)
{
    till::CardFields card;
    card.number = QStringLiteral("9000000001");
    contents.setCard(records::cardMode, 0, QSharedPointer<till::Card>::create(card));
    for (int position = 1; position <= lineCount; ++position) {
        contents.addLine(line(position));
    }
    contents.impacts = discounts(lineCount);
}

QSharedPointer<till::Payment> certificate(const QString& number)
{
    till::PaymentFields fields;
    fields.amount = 500.0;
    fields.cardNumber = number;
    fields.valutOperation = 3;
    fields.opCode = 70;
    return QSharedPointer<till::Payment>::create(fields);
}

QSharedPointer<SaleDocumentSource> recordOfTheSale()
{
    auto record = QSharedPointer<SaleDocumentSource>::create();
    record->chequeNumber = 1041;
    record->openTime = openTime;
    record->closeTime = closeTime;
    return record;
}

} // namespace

LongCheque::LongCheque(int lineCount)
    : sale(QSharedPointer<till::Cheque>::create(head(EDocumentType::sale), QStringLiteral("1")))
    , goodsReturn(QSharedPointer<till::ReturnBySale>::create(recordOfTheSale(), head(EDocumentType::returnBySale),
                                                             QStringLiteral("2")))
    , emptied(QSharedPointer<till::Cheque>::create(head(EDocumentType::sale), QStringLiteral("3")))
{
    spent.append(points(lineCount));
    fill(*sale, lineCount);
    sale->impacts.append(spent.constFirst());
    sale->payments = { certificate(QStringLiteral("7000000001")), certificate(QStringLiteral("7000000002")) };
    fill(*goodsReturn, lineCount);
    fill(*emptied, lineCount);

    for (int position = 1; position <= lineCount; ++position) {
        emptied->remove(position);
        if (position % 10 == 0) {
            positionCoupons.insert(position, { QStringLiteral("VANTIRO-%1").arg(position) });
        }
        if (position % 50 == 0) {
            coupons.append(QStringLiteral("VANTIRO-CHEQUE-%1").arg(position));
        }
        if (position % 4 == 0) {
            granted.append(QSharedPointer<DiscountImpact>::create(
                discount(records::positionDiscountName, EImpactSource::loyaltySystem, position + 1)));
        }
    }
}
