#include "tests/support/sample_cheque.h"

namespace {

constexpr int cardMode = 7;

till::ChequeHead headOf(int type)
{
    till::ChequeHead head;
    head.type = type;
    head.number = 5;
    head.shift = 3;
    head.openTime = QDateTime(QDate(2026, 1, 31), QTime(10, 15));
    return head;
}

void addGoods(till::ChequeContents& document)
{
    till::LineFields line;
    line.posnum = 1;
    line.code = QStringLiteral("1042");
    line.barcode = QStringLiteral("4600051000057");
    line.price = 89.90;
    line.minPrice = 60.0;
    line.quantity = 2.0;
    line.sum = 179.80;
    document.addLine(line);
    document.head.documentSum = 179.80;
}

}

QSharedPointer<till::Cheque> sample::cheque(int type)
{
    auto document = QSharedPointer<till::Cheque>::create(headOf(type), QStringLiteral("1"));
    addGoods(*document);
    return document;
}

QSharedPointer<till::ReturnBySale> sample::returnBySale()
{
    const auto source = QSharedPointer<SaleDocumentSource>::create();
    source->chequeNumber = 4;
    source->openTime = QDateTime(QDate(2026, 1, 30), QTime(18, 0));
    source->closeTime = QDateTime(QDate(2026, 1, 30), QTime(18, 5));
    auto document = QSharedPointer<till::ReturnBySale>::create(source, headOf(25), QStringLiteral("1"));
    addGoods(*document);
    return document;
}

QSharedPointer<till::Card> sample::addCard(till::ChequeContents& document)
{
    till::CardFields fields;
    fields.number = QStringLiteral("9000000001");
    fields.codeInternal = 77;
    auto card = QSharedPointer<till::Card>::create(fields);
    document.setCard(cardMode, 1, card);
    return card;
}

QSharedPointer<BonusImpact> sample::points(double total, double onLine)
{
    const auto totals = QSharedPointer<DocumentImpactDetail>::create();
    totals->setDiscountName(QStringLiteral("Баллы Vantiro"));
    totals->setDiscountSum(total);
    auto impact = QSharedPointer<BonusImpact>::create(totals);
    impact->addDetailForPosition(1, onLine);
    return impact;
}

QByteArray sample::chequeTag(const QByteArray& fromAmountOn)
{
    return R"(<Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
           R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema" ShiftNo="3")"
           R"( ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="5")"
           R"( OpenTime="2026-01-31T10:15:00" CloseTime="2026-01-31T10:15:00" )"
        + fromAmountOn + ">\n";
}

QByteArray sample::cardElement(const QByteArray& subtractAmount)
{
    return R"( <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount=")" + subtractAmount
        + R"(" SubtractedBonus="0" DiscountCardNo="9000000001" BonusCard="true"/>)"
          "\n";
}

QByteArray sample::lines(const QByteArray& amount, const QByteArray& bonusDiscount, const QByteArray& coupons)
{
    return R"( <ChequeLines>
  <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="89.90")"
           R"( Quantity="2.000" Amount=")"
        + amount + R"(" MinAmount="120.00" MinPrice="60.00" MaxDiscount="100.0" BonusDiscount=")" + bonusDiscount
        + R"(">
   <Item ItemID="1042" Barcode="4600051000057"/>
   <Discounts/>
)" + coupons
        + R"(  </ChequeLine>
 </ChequeLines>
)";
}

const QByteArray sample::sections = " <Discounts/>\n <Payments/>\n <Messages/>\n";

QByteArray sample::openCheque()
{
    return chequeTag(R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Open")")
        + lines("179.80", "0.00") + sections + "</Cheque>\n";
}

QByteArray sample::openChequeWithCard()
{
    return chequeTag(R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Open")")
        + cardElement("0.00") + lines("179.80", "0.00") + sections + "</Cheque>\n";
}
