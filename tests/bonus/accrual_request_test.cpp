#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/sorted_attributes.h"
#include "till/document/payment.h"

#include <gtest/gtest.h>

namespace {

QSharedPointer<MoneyItem> payment(double amount, int valutOperation, int opCode)
{
    till::PaymentFields fields;
    fields.amount = amount;
    fields.valutOperation = valutOperation;
    fields.opCode = opCode;
    return QSharedPointer<till::Payment>::create(fields);
}

/// The amounts of the certificates that are found behind one of 1000.
QList<double> certificateAmounts(const QList<QSharedPointer<MoneyItem>>& payments)
{
    const BonusClient client;
    const auto document = sample::cheque(EDocumentType::sale);
    document->payments = payments;
    QList<QSharedPointer<MoneyItem>> certificates { payment(1000.0, 0, 0) };

    client.getCertificatesFromDocument(document, certificates);

    QList<double> amounts;
    for (const auto& certificate : certificates) {
        amounts.append(certificate->getAmount());
    }
    return amounts;
}

/// The body that a member of the family has built, as text; the document itself is still empty.
std::string bodyText(const std::function<void(BonusClient&, QDomDocument&, QDomElement&)>& build)
{
    BonusClient client;
    QDomDocument request;
    QDomElement body;
    build(client, request, body);

    EXPECT_TRUE(request.firstChild().isNull()) << "the body is appended with the envelope, not before";
    EXPECT_TRUE(body.ownerDocument() == request);
    request.appendChild(body);
    return readable(sortedAttributes(request.toString(1)));
}

std::string expectedBody(const QByteArray& operation, const QByteArray& cheque)
{
    return readable(sortedAttributes("<soapenv:Body>\n <" + operation
                                     + ">\n  <tem:cheque><![CDATA[<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + cheque
                                     + "]]></tem:cheque>\n </" + operation + ">\n</soapenv:Body>\n"));
}

const char* const closedReturn
    = R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Return" Status="Closed")";

}

TEST(Certificates, ArePaymentsOfTheOperationThreeWithTheirCodes)
{
    EXPECT_EQ(certificateAmounts({ payment(1.0, 3, 70), payment(2.0, 3, 71), payment(3.0, 3, 74), payment(4.0, 2, 70),
                                   payment(5.0, 0, 74), payment(6.0, 70, 3), payment(7.0, 3, 0), payment(8.0, 3, 70) }),
              (QList<double> { 1000.0, 1.0, 3.0, 8.0 }));
}

TEST(Certificates, OfADocumentWithoutPaymentsAreNone)
{
    EXPECT_EQ(certificateAmounts({}), QList<double> { 1000.0 });
}

TEST(AccrualRequest, OfASaleTakesPointsFromTheArguments)
{
    const auto document = sample::cheque(EDocumentType::sale);
    sample::addCard(*document);
    const QByteArray cheque
        = sample::chequeTag(
              R"(Amount="179.80" SubtractedBonus="12.50" PositionCount="1" ChequeType="Sale" Status="Closed")")
        + sample::cardElement("12.50") + sample::lines("179.80", "12.50") + sample::sections + "</Cheque>\n";
    const auto build = [&](bool offline) {
        return bodyText([&](BonusClient& client, QDomDocument& request, QDomElement& body) {
            client.buildOnlineOrOfflineAccrualRequest(
                document, { sample::points(10.0, 10.0), sample::points(2.5, 2.5) }, {}, {}, request, body, offline);
        });
    };

    EXPECT_EQ(build(false), expectedBody("tem:Accrual", cheque));
    EXPECT_EQ(build(true), expectedBody("tem:OfflineAccrual", cheque));
}

// The points that the document shows are not what was really spent: the close alone knows.
TEST(AccrualRequest, OfASaleForgetsThePointsOfTheDocument)
{
    const auto document = sample::cheque(EDocumentType::sale);
    document->impacts.append(sample::points(15.0, 15.0));

    EXPECT_EQ(bodyText([&](BonusClient& client, QDomDocument& request, QDomElement& body) {
                  client.buildOnlineOrOfflineAccrualRequest(document, {}, {}, {}, request, body, false);
              }),
              expectedBody(
                  "tem:Accrual",
                  sample::chequeTag(
                      R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Closed")")
                      + sample::lines("194.80", "0.00") + sample::sections + "</Cheque>\n"));
}

TEST(AccrualRequest, OfAReturnCarriesNoCertificates)
{
    const auto document = sample::cheque(EDocumentType::goodsReturn);
    document->payments.append(payment(5.0, 3, 70));

    EXPECT_EQ(bodyText([&](BonusClient& client, QDomDocument& request, QDomElement& body) {
                  client.buildOnlineOrOfflineAccrualRequest(document, request, body, false);
              }),
              expectedBody("tem:Accrual",
                           sample::chequeTag(closedReturn) + sample::lines("179.80", "0.00") + sample::sections
                               + "</Cheque>\n"));
}

TEST(AccrualRequest, OfAReturnBySaleNamesTheSale)
{
    EXPECT_EQ(bodyText([&](BonusClient& client, QDomDocument& request, QDomElement& body) {
                  client.buildOnlineOrOfflineAccrualRequest(sample::returnBySale(), request, body, true);
              }),
              expectedBody("tem:OfflineAccrual",
                           sample::chequeTag(closedReturn)
                               + R"( <SaleCheque ChequeNo="4" OpenTime="2026-01-30T18:00:00")"
                                 R"( CloseTime="2026-01-30T18:05:00" Amount="0" SubtractedBonus="0.00")"
                                 R"( PositionCount="0" Status="Closed" ChequeType="Sale">
  <ChequeLines/>
 </SaleCheque>
)" + sample::lines("179.80", "0.00")
                               + sample::sections + "</Cheque>\n"));
}

// Only the type 2 is told apart; every other one is taken for a return that must know its sale.
TEST(AccrualRequest, OfAnyOtherTypeMustKnowItsSale)
{
    for (const int type : { 1, 3, 25 }) {
        EXPECT_EQ(failureOf([&] {
                      BonusClient client;
                      QDomDocument request;
                      QDomElement body;
                      client.buildOnlineOrOfflineAccrualRequest(sample::cheque(type), request, body, false);
                  }),
                  "VantiroException vantiroSourceDocNotFound: Не обнаружен источник для документа возврата")
            << type;
    }
}

TEST(AccrualRequest, OfAnyChequeHasNoCard)
{
    const auto document = sample::cheque(EDocumentType::sale);
    sample::addCard(*document);

    EXPECT_EQ(bodyText([&](BonusClient& client, QDomDocument& request, QDomElement& body) {
                  client.buildOnlineOrOfflineAccrualAnyCheckRequest(document, request, body, false);
              }),
              expectedBody(
                  "tem:Accrual",
                  sample::chequeTag(
                      R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Closed")")
                      + sample::lines("179.80", "0.00") + sample::sections + "</Cheque>\n"));
}

TEST(AccrualRequest, OfACancelledChequeTakesTheDeletedLinesWhenNoneIsLive)
{
    const auto document = sample::cheque(EDocumentType::sale);
    document->remove(1);
    document->head.documentSum = 0.0;

    EXPECT_EQ(bodyText([&](BonusClient& client, QDomDocument& request, QDomElement& body) {
                  client.buildOnlineOrOfflineAccrualCanceledCheckRequest(
                      document, { { 1, { QStringLiteral("item-1") } } }, {}, request, body, true);
              }),
              expectedBody(
                  "tem:OfflineAccrual",
                  sample::chequeTag(
                      R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Canceled")")
                      + sample::lines("179.80", "0.00", "   <Coupon CouponNo=\"item-1\"/>\n") + sample::sections
                      + "</Cheque>\n"));
}
