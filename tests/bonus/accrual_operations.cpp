#include "tests/bonus/accrual_operations.h"

#include "till/document/payment.h"

namespace {

using Document = QSharedPointer<AbstractDocument>;

const QMap<int, QList<QString>> positionCoupons { { 1, { QStringLiteral("item-1") } } };
const QList<QString> checkCoupons { QStringLiteral("vantiro-10") };
const QByteArray positionCoupon = "   <Coupon CouponNo=\"item-1\"/>\n";
const QByteArray checkCoupon = " <Coupon CouponNo=\"vantiro-10\"/>\n";

const QString building = QStringLiteral("info: Создание xml-чека для commit");

Document saleWithCardAndCertificate()
{
    const auto document = sample::cheque(EDocumentType::sale);
    sample::addCard(*document);
    till::PaymentFields certificate;
    certificate.amount = 5.0;
    certificate.cardNumber = QStringLiteral("C-5");
    certificate.valutOperation = 3;
    certificate.opCode = 70;
    document->payments.append(QSharedPointer<till::Payment>::create(certificate));
    return document;
}

template <class Contents>
Document withCard(const QSharedPointer<Contents>& document)
{
    sample::addCard(*document);
    return document;
}

AccrualPair accrual()
{
    return { "Accrual",
             saleWithCardAndCertificate,
             [](BonusClient& client, const Document& document) {
                 client.accrual(document, { sample::points(10.0, 10.0) }, positionCoupons, checkCoupons);
             },
             [](BonusClient& client, const Document& document) {
                 client.offlineAccrual(document, { sample::points(10.0, 10.0) }, positionCoupons, checkCoupons);
             },
             sample::chequeTag(
                 R"(Amount="179.80" SubtractedBonus="15.00" PositionCount="1" ChequeType="Sale" Status="Closed")")
                 + sample::cardElement("10.00")
                 + R"( <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="5.00")"
                   R"( SubtractedBonus="0" DiscountCardNo="C-5" BonusCard="false"/>)"
                   "\n"
                 + sample::lines("179.80", "10.00", positionCoupon) + R"( <Discounts/>
 <Payments>
  <Payment PaymentUID="" PaymentNo="1" Type="6" Amount="5.00"/>
 </Payments>
 <Messages/>
)" + checkCoupon + "</Cheque>\n",
             QStringLiteral("info: Начисление бонусов в online режиме"),
             QStringLiteral("info: Начисление бонусов в offline режиме"),
             building,
             QStringLiteral("info: Бонусы начислены"),
             true };
}

AccrualPair reversalOf(const std::string& name, const std::function<Document()>& document, const QByteArray& cheque,
                       const QString& buildingLog)
{
    return { name,
             document,
             [](BonusClient& client, const Document& returned) { client.accrual(returned); },
             [](BonusClient& client, const Document& returned) { client.offlineAccrual(returned); },
             cheque,
             QStringLiteral("info: Отмена начисления бонусов в online режиме"),
             QStringLiteral("info: Отмена начисления бонусов в offline режиме"),
             buildingLog,
             QStringLiteral("info: Бонусы отменены"),
             false };
}

AccrualPair reversal()
{
    return reversalOf(
        "Reversal", [] { return withCard(sample::cheque(EDocumentType::goodsReturn)); },
        sample::chequeTag(
            R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Return" Status="Closed")")
            + sample::cardElement("0.00") + sample::lines("179.80", "0.00") + sample::sections + "</Cheque>\n",
        building);
}

AccrualPair reversalBySale()
{
    return reversalOf(
        "ReversalBySale", [] { return withCard(sample::returnBySale()); },
        sample::chequeTag(
            R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Return" Status="Closed")")
            + sample::cardElement("0.00")
            + R"( <SaleCheque ChequeNo="4" OpenTime="2026-01-30T18:00:00" CloseTime="2026-01-30T18:05:00" Amount="0")"
              R"( SubtractedBonus="0.00" PositionCount="0" Status="Closed" ChequeType="Sale">
  <ChequeLines/>
 </SaleCheque>
)" + sample::lines("179.80", "0.00")
            + sample::sections + "</Cheque>\n",
        QString());
}

AccrualPair anyCheck()
{
    return { "AnyCheck",
             [] { return Document(sample::cheque(EDocumentType::sale)); },
             [](BonusClient& client, const Document& document) { client.accrualAnyCheck(document); },
             [](BonusClient& client, const Document& document) { client.offlineAccrualAnyCheck(document); },
             sample::chequeTag(
                 R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Closed")")
                 + sample::lines("179.80", "0.00") + sample::sections + "</Cheque>\n",
             QStringLiteral("info: Отправка чека на сервер"),
             QStringLiteral("info: Отправка чека на сервер в режиме offline"),
             QString(),
             QString(),
             true };
}

AccrualPair canceledCheck()
{
    return { "CanceledCheck",
             [] { return withCard(sample::cheque(EDocumentType::sale)); },
             [](BonusClient& client, const Document& document) {
                 client.accrualCanceledCheck(document, positionCoupons, checkCoupons);
             },
             [](BonusClient& client, const Document& document) {
                 client.offlineAccrualCanceledCheck(document, positionCoupons, checkCoupons);
             },
             sample::chequeTag(
                 R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Canceled")")
                 + sample::cardElement("0.00") + sample::lines("179.80", "0.00", positionCoupon) + sample::sections
                 + checkCoupon + "</Cheque>\n",
             QStringLiteral("info: Отправка отмененного чека на сервер"),
             QStringLiteral("info: Отправка отмененного чека на сервер в режиме offline"),
             QString(),
             QString(),
             false };
}

}

void PrintTo(const AccrualPair& pair, std::ostream* out)
{
    *out << pair.name;
}

const std::array<AccrualPair, 5>& accrualPairs()
{
    static const std::array<AccrualPair, 5> pairs { accrual(), reversal(), reversalBySale(), anyCheck(),
                                                    canceledCheck() };
    return pairs;
}
