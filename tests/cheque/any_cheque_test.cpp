#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/scripted_documents_dao.h"
#include "tests/support/xml_compare.h"

using namespace Qt::StringLiterals;

namespace {

class AnyCheque : public ChequeTest {
protected:
    ScriptedDocumentsDao dao;
};

struct TypeRow {
    int documentType;
    const char* chequeType;
};

class TypeOfAnyCheque : public AnyCheque, public testing::WithParamInterface<TypeRow> { };

TEST_P(TypeOfAnyCheque, FollowsTheDocument)
{
    const auto document = DocumentBuilder().type(GetParam().documentType).build();

    const QDomElement cheque = rootOf(client.buildAccrualAnyXmlCheck(document));

    EXPECT_EQ(attribute(cheque, "ChequeType"), GetParam().chequeType);
    EXPECT_EQ(attribute(cheque, "Status"), "Closed");
}

TEST_P(TypeOfAnyCheque, IsThatOfTheCancelledChequeToo)
{
    const auto document = DocumentBuilder().type(GetParam().documentType).build();

    const QDomElement cheque = rootOf(client.buildAccrualCanceledXmlCheck(document, {}, {}));

    EXPECT_EQ(attribute(cheque, "ChequeType"), GetParam().chequeType);
    EXPECT_EQ(attribute(cheque, "Status"), "Canceled");
}

INSTANTIATE_TEST_SUITE_P(Types, TypeOfAnyCheque,
                         testing::Values(TypeRow { 1, "Sale" }, TypeRow { 2, "Return" }, TypeRow { 25, "Return" },
                                         TypeRow { 0, "" }, TypeRow { 7, "" }));

class SaleOfAnyCheque : public AnyCheque, public testing::WithParamInterface<TypeRow> { };

TEST_P(SaleOfAnyCheque, IsNamedForAReturnBySaleOnly)
{
    dao.add(4711, DocumentBuilder().number(900).build());
    const auto document = DocumentBuilder().type(GetParam().documentType).sourceKey(4711).build();

    EXPECT_EQ(childrenOf(client.buildAccrualAnyXmlCheck(document).documentElement()), GetParam().chequeType);
    EXPECT_EQ(childrenOf(client.buildAccrualCanceledXmlCheck(document, {}, {}).documentElement()),
              GetParam().chequeType);
}

INSTANTIATE_TEST_SUITE_P(Types, SaleOfAnyCheque,
                         testing::Values(TypeRow { 25, "SaleCheque ChequeLines Discounts Payments Messages" },
                                         TypeRow { 1, "ChequeLines Discounts Payments Messages" },
                                         TypeRow { 2, "ChequeLines Discounts Payments Messages" },
                                         TypeRow { 7, "ChequeLines Discounts Payments Messages" }));

TEST_F(AnyCheque, HasNoCardAndNoCoupons)
{
    const auto document = DocumentBuilder().card(u"9000000001"_s).line(Goods(1, u"1001"_s, 10.0)).build();

    EXPECT_EQ(childrenOf(client.buildAccrualAnyXmlCheck(document).documentElement()),
              "ChequeLines Discounts Payments Messages");
}

TEST_F(AnyCheque, OfAReturnWhoseSaleIsUnknownGoesWithoutIt)
{
    const DocumentBuilder document = DocumentBuilder().type(EDocumentType::returnBySale);
    const auto without = document.build();
    const auto unknownRecord = document.buildReturn(nullptr);
    const auto unknownKey = DocumentBuilder(document).sourceKey(4712).build();

    for (const QSharedPointer<AbstractDocument>& back :
         { QSharedPointer<AbstractDocument>(without), QSharedPointer<AbstractDocument>(unknownRecord),
           QSharedPointer<AbstractDocument>(unknownKey) }) {
        EXPECT_EQ(childrenOf(client.buildAccrualAnyXmlCheck(back).documentElement()),
                  "ChequeLines Discounts Payments Messages");
        EXPECT_EQ(childrenOf(client.buildAccrualCanceledXmlCheck(back, {}, {}).documentElement()),
                  "ChequeLines Discounts Payments Messages");
    }
}

TEST_F(AnyCheque, OfAReturnNamesTheSaleOfItsRecord)
{
    const auto source = saleSource(901, at("2024-02-29T23:59:59"), at("2024-03-01T00:01:00"));
    const auto document = DocumentBuilder().buildReturn(source);

    EXPECT_EQ(attribute(below(client.buildAccrualAnyXmlCheck(document).documentElement(), "SaleCheque"), "ChequeNo"),
              "901");
    EXPECT_EQ(attribute(below(client.buildAccrualCanceledXmlCheck(document, {}, {}).documentElement(), "SaleCheque"),
                        "ChequeNo"),
              "901");
}

TEST_F(AnyCheque, ShowsTheDocumentAsItStands)
{
    const auto document = DocumentBuilder()
                              .closed()
                              .costs(75.0)
                              .line(Goods(1, u"1001"_s, 90.0).costs(80.0))
                              .deletedLine(Goods(2, u"1002"_s, 5.0))
                              .impact(bonusImpact({ { 1, 8.0 } }))
                              .discount(Detail(u"Скидка"_s), { { 1, 2.0 } })
                              .certificate(u"C-1"_s, 5.0)
                              .build();

    EXPECT_TRUE(sameXml(client.buildAccrualAnyXmlCheck(document), uR"(
        <Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema"
            ShiftNo="17" ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042"
            OpenTime="2024-03-05T14:07:09" CloseTime="2024-03-05T14:09:30" Amount="75.00" SubtractedBonus="8.00"
            PositionCount="1" ChequeType="Sale" Status="Closed">
          <ChequeLines>
            <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="90.00"
                Quantity="1.000" Amount="88.00" MinAmount="0.00" MinPrice="0.00" MaxDiscount="100.0"
                BonusDiscount="8.00">
              <Item ItemID="1001" Barcode=""/>
              <Discounts>
                <Discount DiscountID="0" Type="Amount" Percent="0" Amount="2.00"/>
              </Discounts>
            </ChequeLine>
          </ChequeLines>
          <Discounts/>
          <Payments/>
          <Messages/>
        </Cheque>)"_s));
}

} // namespace
