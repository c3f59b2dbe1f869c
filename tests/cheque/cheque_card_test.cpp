#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/xml_compare.h"

using namespace Qt::StringLiterals;

namespace {

class CardOfCheque : public ChequeTest { };
class CouponsOfCheque : public ChequeTest { };
class SubtractedBonus : public ChequeTest { };

TEST_F(CardOfCheque, HasExactlyItsAttributes)
{
    const auto document = DocumentBuilder().card(u"9000000001"_s).impact(bonusImpact({ { 1, 12.5 } })).build();

    EXPECT_EQ(attributesOf(below(ordinaryCheque(document).documentElement(), "DiscountCard")),
              "BonusCard = true\n"
              "DiscountCardID = 0\n"
              "DiscountCardNo = 9000000001\n"
              "EnteredAsPhoneNumber = false\n"
              "SubtractAmount = 12.50\n"
              "SubtractedBonus = 0");
}

TEST_F(CardOfCheque, TakenPointsStandCrosswiseOnChequeAndCard)
{
    const auto document = DocumentBuilder().card(u"9000000001"_s).impact(bonusImpact({ { 1, 12.5 } })).build();

    const QDomElement cheque = rootOf(ordinaryCheque(document));

    EXPECT_EQ(attribute(cheque, "SubtractedBonus"), "12.50");
    EXPECT_EQ(attribute(below(cheque, "DiscountCard"), "SubtractAmount"), "12.50");
    EXPECT_EQ(attribute(below(cheque, "DiscountCard"), "SubtractedBonus"), "0");
}

TEST_F(CardOfCheque, WithoutPointsSubtractsNothing)
{
    const auto document = DocumentBuilder().card(u"9000000001"_s).build();

    EXPECT_EQ(attribute(below(ordinaryCheque(document).documentElement(), "DiscountCard"), "SubtractAmount"), "0.00");
}

TEST_F(CardOfCheque, IsTheOneOfModeSevenAmongOthers)
{
    const auto document
        = DocumentBuilder().cardOfMode(1, u"1"_s).cardOfMode(6, u"6"_s).card(u"7"_s).cardOfMode(8, u"8"_s).build();

    const QDomElement cheque = rootOf(ordinaryCheque(document));

    EXPECT_EQ(childrenOf(cheque), "DiscountCard ChequeLines Discounts Payments Messages");
    EXPECT_EQ(attribute(below(cheque, "DiscountCard"), "DiscountCardNo"), "7");
}

TEST_F(CardOfCheque, OfAnotherModeStaysOut)
{
    const auto document = DocumentBuilder().cardOfMode(3, u"9000000001"_s).build();

    EXPECT_EQ(childrenOf(ordinaryCheque(document).documentElement()), "ChequeLines Discounts Payments Messages");
}

TEST_F(CardOfCheque, MissingLeavesTheElementOut)
{
    QDomDocument target;
    QDomElement cheque = newElement(target, "Cheque");

    client.addDiscountCardTag(DocumentBuilder().build(), cheque);

    EXPECT_TRUE(sameXml(target, u"<Cheque/>"_s));
}

TEST_F(CardOfCheque, NumberOfAnyKindIsReadAsText)
{
    const auto numeric = DocumentBuilder().card(QVariant(qlonglong(9000000001))).build();
    const auto unset = DocumentBuilder().card(QVariant()).build();

    EXPECT_EQ(attribute(below(ordinaryCheque(numeric).documentElement(), "DiscountCard"), "DiscountCardNo"),
              "9000000001");
    EXPECT_EQ(attribute(below(ordinaryCheque(unset).documentElement(), "DiscountCard"), "DiscountCardNo"), "");
}

TEST_F(CardOfCheque, NumberIsTakenAsItComes)
{
    const auto document = DocumentBuilder().card(u"  Иванов & Ко <1> "_s).build();

    EXPECT_EQ(attribute(below(ordinaryCheque(document).documentElement(), "DiscountCard"), "DiscountCardNo"),
              "  Иванов & Ко <1> ");
}

TEST_F(CouponsOfCheque, StandInTheirOrderUnchanged)
{
    QDomDocument target;
    QDomElement parent = newElement(target, "ChequeLine");

    client.addCouponsTags({ u"B-2"_s, u" a&b "_s, u""_s, u"B-2"_s }, parent);

    EXPECT_TRUE(sameXml(target, uR"(
        <ChequeLine>
          <Coupon CouponNo="B-2"/>
          <Coupon CouponNo=" a&amp;b "/>
          <Coupon CouponNo=""/>
          <Coupon CouponNo="B-2"/>
        </ChequeLine>)"_s));
}

TEST_F(CouponsOfCheque, NoneLeaveNoElement)
{
    QDomDocument target;
    QDomElement parent = newElement(target, "Cheque");

    client.addCouponsTags({}, parent);

    EXPECT_TRUE(sameXml(target, u"<Cheque/>"_s));
}

TEST_F(SubtractedBonus, OfADocumentWithoutImpactsIsNothing)
{
    EXPECT_EQ(client.getSubtractedBonus(DocumentBuilder().build()), 0.0);
}

TEST_F(SubtractedBonus, IsTheSumOverAllImpactsAndPositions)
{
    const auto document = DocumentBuilder()
                              .impact(bonusImpact({ { 1, 10.0 }, { 2, 5.5 } }))
                              .discount(Detail(record_name::positionDiscount).code(41), { { 1, 100.0 } })
                              .impact(bonusImpact({ { 1, 2.25 }, { 9, -1.0 } }))
                              .build();

    EXPECT_DOUBLE_EQ(client.getSubtractedBonus(document), 16.75);
}

TEST_F(SubtractedBonus, CountsByTheExactNameAlone)
{
    const auto document
        = DocumentBuilder()
              .discount(Detail(u"баллы Vantiro"_s).type(EDiscountType::bonus), { { 1, 1.0 } })
              .discount(Detail(u"Баллы vantiro"_s).type(EDiscountType::bonus), { { 1, 2.0 } })
              .discount(Detail(u"Баллы Vantiro "_s).type(EDiscountType::bonus), { { 1, 4.0 } })
              .discount(Detail(u"Баллы"_s).type(EDiscountType::bonus), { { 1, 8.0 } })
              .discount(Detail(u"Баллы Vantiro"_s).type(EDiscountType::percent).source(0).onCheque(), { { 1, 16.0 } })
              .build();

    EXPECT_DOUBLE_EQ(client.getSubtractedBonus(document), 16.0);
}

TEST_F(SubtractedBonus, CountsDetailsAndNotTotals)
{
    const auto withoutDetails = discountImpact(Detail(record_name::bonus).sum(50.0));
    const auto document = DocumentBuilder().impact(withoutDetails).build();

    EXPECT_EQ(client.getSubtractedBonus(document), 0.0);
}

TEST_F(SubtractedBonus, OfPositionsThatAreNotOnTheChequeCounts)
{
    const auto document
        = DocumentBuilder().line(Goods(1, u"1001"_s, 10.0)).impact(bonusImpact({ { 99, 3.0 } })).build();

    EXPECT_DOUBLE_EQ(client.getSubtractedBonus(document), 3.0);
}

TEST_F(SubtractedBonus, IsNotRounded)
{
    const auto document = DocumentBuilder().impact(bonusImpact({ { 1, 0.0625 }, { 2, 0.001953125 } })).build();

    EXPECT_EQ(client.getSubtractedBonus(document), 0.064453125);
}

TEST_F(SubtractedBonus, NamesMayDifferWithinOneImpact)
{
    const auto impact = bonusImpact({ { 1, 10.0 }, { 2, 5.0 } });
    impact->getDetails().value(2)->setDiscountName(u"Скидка"_s);

    EXPECT_DOUBLE_EQ(client.getSubtractedBonus(DocumentBuilder().impact(impact).build()), 10.0);
}

} // namespace
