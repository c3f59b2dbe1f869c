#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/xml_compare.h"

// A source without a cheque has nothing that could be carried over. What the close itself knows is told all the same.

using namespace Qt::StringLiterals;

namespace {

class AccrualOfNothing : public ChequeTest { };

TEST_F(AccrualOfNothing, IsAChequeOfEmptySections)
{
    EXPECT_TRUE(sameXml(client.buildAccrualXmlCheck(QDomDocument(), {}, {}, {}, {}), uR"(
        <Cheque><ChequeLines/><Discounts/><Payments/><Messages/></Cheque>)"_s));
}

TEST_F(AccrualOfNothing, TellsCertificatesAndCouponsAndNoPoints)
{
    const QList<QSharedPointer<MoneyItem>> certificates
        = DocumentBuilder().certificate(u"C-1"_s, 5.0).build()->getMoneyItems();

    const QDomDocument cheque = client.buildAccrualXmlCheck(QDomDocument(), { bonusImpact({ { 1, 10.0 } }) },
                                                            { { 1, { u"P-1"_s } } }, { u"CH-1"_s }, certificates);

    EXPECT_TRUE(sameXml(cheque, uR"(
        <Cheque>
          <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="5.00" SubtractedBonus="0"
              DiscountCardNo="C-1" BonusCard="false"/>
          <ChequeLines/>
          <Discounts/>
          <Payments><Payment PaymentUID="" PaymentNo="1" Type="6" Amount="5.00"/></Payments>
          <Messages/>
          <Coupon CouponNo="CH-1"/>
        </Cheque>)"_s));
}

} // namespace
