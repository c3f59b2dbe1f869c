#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/scripted_documents_dao.h"
#include "tests/support/xml_compare.h"

using namespace Qt::StringLiterals;

namespace {

/// A document of a host that counts its lines in a way of its own.
class CountingCheque : public till::Cheque {
public:
    explicit CountingCheque(int positions)
        : count(positions)
    {
        head.documentSum = 7.0;
        addLine(Goods(1, u"live"_s, 10.0).fields());
        addLine(Goods(2, u"deleted"_s, 30.0).fields());
        remove(2);
    }

    [[nodiscard]] int getPositionCount() override
    {
        return count;
    }

private:
    int count;
};

class CanceledCheque : public ChequeTest { };

TEST_F(CanceledCheque, OfLiveLinesShowsThemAndTheDocumentsSum)
{
    const auto document = DocumentBuilder()
                              .card(u"9000000001"_s)
                              .costs(75.0)
                              .line(Goods(1, u"1001"_s, 90.0).costs(80.0))
                              .deletedLine(Goods(2, u"1002"_s, 5.0))
                              .impact(bonusImpact({ { 1, 8.0 } }))
                              .discount(Detail(u"Скидка"_s), { { 1, 2.0 } })
                              .build();

    const QDomDocument cheque = client.buildAccrualCanceledXmlCheck(
        document, { { 1, { u"P-1"_s } }, { 2, { u"P-2"_s } } }, { u"B"_s, u"A"_s });

    EXPECT_TRUE(sameXml(cheque, uR"(
        <Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema"
            ShiftNo="17" ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042"
            OpenTime="2024-03-05T14:07:09" CloseTime="2024-03-05T14:07:09" Amount="75.00" SubtractedBonus="8.00"
            PositionCount="1" ChequeType="Sale" Status="Canceled">
          <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="8.00" SubtractedBonus="0"
              DiscountCardNo="9000000001" BonusCard="true"/>
          <ChequeLines>
            <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="90.00"
                Quantity="1.000" Amount="88.00" MinAmount="0.00" MinPrice="0.00" MaxDiscount="100.0"
                BonusDiscount="8.00">
              <Item ItemID="1001" Barcode=""/>
              <Discounts>
                <Discount DiscountID="0" Type="Amount" Percent="0" Amount="2.00"/>
              </Discounts>
              <Coupon CouponNo="P-1"/>
            </ChequeLine>
          </ChequeLines>
          <Discounts/>
          <Payments/>
          <Messages/>
          <Coupon CouponNo="B"/>
          <Coupon CouponNo="A"/>
        </Cheque>)"_s));
}

TEST_F(CanceledCheque, WithAllLinesDeletedShowsThemAndTheirSum)
{
    const auto document = DocumentBuilder()
                              .costs(5.0)
                              .deletedLine(Goods(2, u"1002"_s, 50.0, 2.0).minPrice(50.0).costs(95.5).takesNoPoints())
                              .deletedLine(Goods(1, u"1001"_s, 10.25).earnsNothing().takesNoDiscount())
                              .impact(bonusImpact({ { 1, 8.0 } }))
                              .discount(Detail(record_name::positionDiscount).code(41), { { 2, 4.5 } })
                              .build();

    const QDomDocument cheque = client.buildAccrualCanceledXmlCheck(document, { { 1, { u"P-1"_s } } }, { u"A"_s });

    EXPECT_TRUE(sameXml(cheque, uR"(
        <Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema"
            ShiftNo="17" ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042"
            OpenTime="2024-03-05T14:07:09" CloseTime="2024-03-05T14:07:09" Amount="105.75" SubtractedBonus="8.00"
            PositionCount="2" ChequeType="Sale" Status="Canceled">
          <ChequeLines>
            <ChequeLine ChequeLineNo="2" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="50.00"
                Quantity="2.000" Amount="95.50" MinAmount="100.00" MinPrice="50.00" MaxDiscount="100.0"
                BonusDiscount="0.00">
              <Item ItemID="1002" Barcode=""/>
              <Discounts/>
            </ChequeLine>
            <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="true" NoDiscounts="true" Price="10.25"
                Quantity="1.000" Amount="10.25" MinAmount="0.00" MinPrice="0.00" MaxDiscount="100.0"
                BonusDiscount="0.00">
              <Item ItemID="1001" Barcode=""/>
              <Discounts/>
              <Coupon CouponNo="P-1"/>
            </ChequeLine>
          </ChequeLines>
          <Discounts/>
          <Payments/>
          <Messages/>
          <Coupon CouponNo="A"/>
        </Cheque>)"_s));
}

TEST_F(CanceledCheque, WithNoLineEverHasNoSum)
{
    const QDomElement cheque
        = rootOf(client.buildAccrualCanceledXmlCheck(DocumentBuilder().costs(5.0).build(), {}, {}));

    EXPECT_EQ(attribute(cheque, "Amount"), "0.00");
    EXPECT_EQ(attribute(cheque, "PositionCount"), "0");
    EXPECT_FALSE(below(cheque, "ChequeLines").isNull());
    EXPECT_FALSE(below(cheque, "ChequeLines").hasChildNodes());
}

struct CountRow {
    int count;
    const char* outcome; // Amount, PositionCount and the goods listed
};

class CountOfCanceledCheque : public CanceledCheque, public testing::WithParamInterface<CountRow> { };

TEST_P(CountOfCanceledCheque, SettlesSumAndLines)
{
    const auto document = QSharedPointer<CountingCheque>::create(GetParam().count);

    const QDomElement cheque = rootOf(client.buildAccrualCanceledXmlCheck(document, {}, {}));

    EXPECT_EQ(attribute(cheque, "Amount") + " " + attribute(cheque, "PositionCount") + " "
                  + attribute(below(cheque, "ChequeLines/ChequeLine/Item"), "ItemID"),
              GetParam().outcome);
}

INSTANTIATE_TEST_SUITE_P(Counts, CountOfCanceledCheque,
                         testing::Values(CountRow { 2, "7.00 2 live" }, CountRow { 1, "7.00 1 live" },
                                         CountRow { 0, "30.00 1 deleted" },
                                         // Only a count of exactly nothing replaces the sum, yet no count below one
                                         // has live lines.
                                         CountRow { -1, "7.00 -1 deleted" }));

TEST_F(CanceledCheque, OfAReturnNamesItsSaleBetweenCardAndLines)
{
    ScriptedDocumentsDao dao;
    dao.add(4711, DocumentBuilder().number(900).build());
    const auto document = DocumentBuilder()
                              .type(EDocumentType::returnBySale)
                              .sourceKey(4711)
                              .card(u"9000000001"_s)
                              .line(Goods(1, u"1001"_s, 1.0))
                              .build();

    const QDomElement cheque = rootOf(client.buildAccrualCanceledXmlCheck(document, {}, { u"A"_s }));

    EXPECT_EQ(childrenOf(cheque), "DiscountCard SaleCheque ChequeLines Discounts Payments Messages Coupon");
    EXPECT_EQ(attribute(below(cheque, "SaleCheque"), "ChequeNo"), "900");
}

} // namespace
