#include "tests/support/document_builder.h"

#include "till/document/card.h"
#include "till/document/payment.h"

namespace {

constexpr int loyaltyCardMode = 7;
constexpr int certificateOperation = 3;

}

Goods::Goods(int position, const QString& code, double price, double quantity)
{
    line.posnum = position;
    line.code = code;
    line.price = price;
    line.quantity = quantity;
}

Goods& Goods::barcode(const QString& text)
{
    line.barcode = text;
    return *this;
}

Goods& Goods::minPrice(double price)
{
    line.minPrice = price;
    return *this;
}

Goods& Goods::costs(double sum)
{
    line.sum = sum;
    return *this;
}

Goods& Goods::takesNoPoints()
{
    line.bonusSpendAllowed = false;
    return *this;
}

Goods& Goods::earnsNothing()
{
    line.bonusEarnAllowed = false;
    return *this;
}

Goods& Goods::takesNoDiscount()
{
    line.discountAllowed = false;
    return *this;
}

Goods& Goods::takesOnlyExternalDiscount()
{
    line.discountAllowed = false;
    line.onlyExternalDiscountAllowed = true;
    return *this;
}

const till::LineFields& Goods::fields() const
{
    return line;
}

Detail::Detail(const QString& name)
{
    detail.setDiscountName(name);
    detail.setDiscountObject(EDiscountObject::position);
    detail.setDiscountType(EDiscountType::sum);
    detail.setDiscountMode(EDiscountMode::loyalty);
    detail.setImpactSource(EImpactSource::loyaltySystem);
    detail.setDateTime(at("2024-03-05T14:07:30"));
}

Detail& Detail::code(int number)
{
    detail.setDiscountCode(number);
    return *this;
}

Detail& Detail::percent(const QVariant& percentage)
{
    detail.setDiscountType(EDiscountType::percent);
    detail.setDiscountRate(percentage);
    return *this;
}

Detail& Detail::rate(const QVariant& value)
{
    detail.setDiscountRate(value);
    return *this;
}

Detail& Detail::type(int number)
{
    detail.setDiscountType(static_cast<EDiscountType::type>(number));
    return *this;
}

Detail& Detail::fixedPrice()
{
    detail.setDiscountType(EDiscountType::fixedPrice);
    return *this;
}

Detail& Detail::mode(int number)
{
    detail.setDiscountMode(static_cast<EDiscountMode::type>(number));
    return *this;
}

Detail& Detail::tender()
{
    detail.setDiscountMode(EDiscountMode::tender);
    return *this;
}

Detail& Detail::source(int number)
{
    detail.setImpactSource(static_cast<EImpactSource::source>(number));
    return *this;
}

Detail& Detail::onCheque()
{
    detail.setDiscountObject(EDiscountObject::cheque);
    return *this;
}

Detail& Detail::on(int position)
{
    detail.setDiscountObject(EDiscountObject::position);
    detail.setPosition(position);
    return *this;
}

Detail& Detail::sum(double roubles)
{
    detail.setDiscountSum(roubles);
    return *this;
}

QSharedPointer<DocumentImpactDetail> Detail::record() const
{
    return QSharedPointer<DocumentImpactDetail>::create(detail);
}

QSharedPointer<DiscountImpact> discountImpact(const Detail& totals, const QMap<int, double>& sums)
{
    auto impact = QSharedPointer<DiscountImpact>::create(totals.record());
    for (auto sum = sums.constBegin(); sum != sums.constEnd(); ++sum) {
        impact->addDetailForPosition(sum.key(), sum.value());
    }
    return impact;
}

QSharedPointer<BonusImpact> bonusImpact(const QMap<int, double>& sums)
{
    double total = 0.0;
    for (const double sum : sums) {
        total += sum;
    }
    Detail totals(record_name::bonus);
    totals.type(EDiscountType::bonus).rate(total).onCheque().sum(total);
    auto impact = QSharedPointer<BonusImpact>::create(totals.record());
    for (auto sum = sums.constBegin(); sum != sums.constEnd(); ++sum) {
        impact->addDetailForPosition(sum.key(), sum.value());
    }
    return impact;
}

DocumentBuilder::DocumentBuilder()
    : documentIdentity(QStringLiteral("1"))
{
    head.number = 1042;
    head.shift = 17;
    head.openTime = at("2024-03-05T14:07:09");
}

DocumentBuilder& DocumentBuilder::type(int number)
{
    head.type = number;
    return *this;
}

DocumentBuilder& DocumentBuilder::identity(const QString& text)
{
    documentIdentity = text;
    return *this;
}

DocumentBuilder& DocumentBuilder::number(int chequeNumber)
{
    head.number = chequeNumber;
    return *this;
}

DocumentBuilder& DocumentBuilder::shift(int shiftNumber)
{
    head.shift = shiftNumber;
    return *this;
}

DocumentBuilder& DocumentBuilder::openedAt(const QDateTime& time)
{
    head.openTime = time;
    return *this;
}

DocumentBuilder& DocumentBuilder::closedAt(const QDateTime& time)
{
    head.closeTime = time;
    return *this;
}

DocumentBuilder& DocumentBuilder::closed()
{
    return closedAt(at("2024-03-05T14:09:30"));
}

DocumentBuilder& DocumentBuilder::costs(double sum)
{
    head.documentSum = sum;
    return *this;
}

DocumentBuilder& DocumentBuilder::card(const QVariant& cardNumber)
{
    return cardOfMode(loyaltyCardMode, cardNumber);
}

DocumentBuilder& DocumentBuilder::cardOfMode(int mode, const QVariant& cardNumber)
{
    cards.append({ mode, cardNumber });
    return *this;
}

DocumentBuilder& DocumentBuilder::line(const Goods& goods)
{
    lines.append({ goods.fields(), false });
    return *this;
}

DocumentBuilder& DocumentBuilder::deletedLine(const Goods& goods)
{
    lines.append({ goods.fields(), true });
    return *this;
}

DocumentBuilder& DocumentBuilder::impact(const QSharedPointer<DocumentImpact>& record)
{
    impacts.append(record);
    return *this;
}

DocumentBuilder& DocumentBuilder::discount(const Detail& detail, const QMap<int, double>& sums)
{
    return impact(discountImpact(detail, sums));
}

DocumentBuilder& DocumentBuilder::cash(double amount)
{
    return payment({}, amount, 0, 1);
}

DocumentBuilder& DocumentBuilder::certificate(const QString& certificateNumber, double amount, int opCode)
{
    return payment(certificateNumber, amount, certificateOperation, opCode);
}

DocumentBuilder& DocumentBuilder::payment(const QString& cardNumber, double amount, int valutOperation, int opCode)
{
    till::PaymentFields fields;
    fields.amount = amount;
    fields.cardNumber = cardNumber;
    fields.valutOperation = valutOperation;
    fields.opCode = opCode;
    payments.append(QSharedPointer<till::Payment>::create(fields));
    return *this;
}

DocumentBuilder& DocumentBuilder::sourceKey(const QVariant& key)
{
    head.sourceDocumentId = key;
    return *this;
}

DocumentBuilder& DocumentBuilder::pluginDataJson(const QString& json)
{
    pluginData = json;
    return *this;
}

QSharedPointer<till::Cheque> DocumentBuilder::build() const
{
    auto document = QSharedPointer<till::Cheque>::create(head, documentIdentity);
    fill(*document);
    return document;
}

QSharedPointer<till::ReturnBySale> DocumentBuilder::buildReturn(const QSharedPointer<SaleDocumentSource>& source) const
{
    auto document = QSharedPointer<till::ReturnBySale>::create(source, head, documentIdentity);
    fill(*document);
    return document;
}

void DocumentBuilder::fill(till::ChequeContents& contents) const
{
    for (const AttachedCard& card : cards) {
        till::CardFields fields;
        fields.number = card.number;
        contents.setCard(card.mode, 0, QSharedPointer<till::Card>::create(fields));
    }
    for (const AddedLine& line : lines) {
        const int posnum = contents.addLine(line.fields)->getPosnum();
        if (line.deleted) {
            contents.remove(posnum);
        }
    }
    contents.impacts = impacts;
    contents.payments = payments;
    contents.pluginDataJson = pluginData;
}

QSharedPointer<SaleDocumentSource> saleSource(int chequeNumber, const QDateTime& openTime, const QDateTime& closeTime,
                                              const QString& pluginDataJson)
{
    auto source = QSharedPointer<SaleDocumentSource>::create();
    source->chequeNumber = chequeNumber;
    source->openTime = openTime;
    source->closeTime = closeTime;
    source->pluginDataJson = pluginDataJson;
    return source;
}

QDateTime at(const char* isoTime)
{
    return QDateTime::fromString(QString::fromLatin1(isoTime), Qt::ISODate);
}
