#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/xml_compare.h"

#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace {

class ChequeHead : public ChequeTest { };

TEST_F(ChequeHead, ChequeHasExactlyItsAttributes)
{
    const auto document = DocumentBuilder().line(Goods(1, u"1001"_s, 1234.5)).build();

    EXPECT_EQ(attributesOf(ordinaryCheque(document).documentElement()),
              "Amount = 1234.50\n"
              "ChequeNo = 1042\n"
              "ChequeType = Sale\n"
              "ChequeUID = 11116E73-1C03-5DE6-9130-5F9925AE8AB4\n"
              "CloseTime = 2024-03-05T14:07:09\n"
              "OpenTime = 2024-03-05T14:07:09\n"
              "PositionCount = 1\n"
              "ShiftNo = 17\n"
              "Status = Open\n"
              "SubtractedBonus = 0.00\n"
              "xmlns:xsd = http://www.w3.org/2001/XMLSchema\n"
              "xmlns:xsi = http://www.w3.org/2001/XMLSchema-instance");
}

TEST_F(ChequeHead, ChequeIsTheOneRootElement)
{
    const QDomDocument cheque = ordinaryCheque(DocumentBuilder().build());

    EXPECT_EQ(cheque.childNodes().count(), 1);
    EXPECT_EQ(cheque.documentElement().tagName(), u"Cheque"_s);
}

TEST_F(ChequeHead, ChequeWithoutCardDiffersInNothingElse)
{
    const auto document = DocumentBuilder().build();

    EXPECT_TRUE(sameXml(ordinaryCheque(document), uR"(
        <Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema"
            ShiftNo="17" ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042"
            OpenTime="2024-03-05T14:07:09" CloseTime="2024-03-05T14:07:09" Amount="0.00" SubtractedBonus="0.00"
            PositionCount="0" ChequeType="Sale" Status="Open">
          <ChequeLines/>
          <Discounts/>
          <Payments/>
          <Messages/>
        </Cheque>)"_s));
}

TEST_F(ChequeHead, SectionsStandInOrderWithTheCouponsBehindMessages)
{
    const auto document = DocumentBuilder().card(u"9000000001"_s).line(Goods(1, u"1001"_s, 10.0)).build();

    const QDomElement cheque = rootOf(client.buildXmlCheck(document, {}, { u"B"_s, u"A"_s }, {}));

    EXPECT_EQ(childrenOf(cheque), "DiscountCard ChequeLines Discounts Payments Messages Coupon Coupon");
    EXPECT_EQ(couponsOf(cheque), "B A");
}

TEST_F(ChequeHead, SectionsHaveNeitherAttributesNorContent)
{
    QDomDocument target;
    QDomElement cheque = newElement(target, "Cheque");

    client.addDiscountsMessagesPaymentsTags(cheque);

    EXPECT_TRUE(sameXml(target, u"<Cheque><Discounts/><Payments/><Messages/></Cheque>"_s));
}

TEST_F(ChequeHead, CallerSettlesTypeStatusSumAndCount)
{
    QDomDocument target;
    QDomElement cheque;

    client.addChequeTag(DocumentBuilder().line(Goods(1, u"1001"_s, 10.0)).build(), u"Return"_s, u"Canceled"_s, target,
                        cheque, 7.5, -3, {});

    EXPECT_EQ(cheque.tagName(), u"Cheque"_s);
    EXPECT_EQ(cheque.ownerDocument(), target);
    EXPECT_TRUE(target.documentElement().isNull());
    EXPECT_EQ(attribute(cheque, "ChequeType"), "Return");
    EXPECT_EQ(attribute(cheque, "Status"), "Canceled");
    EXPECT_EQ(attribute(cheque, "Amount"), "7.50");
    EXPECT_EQ(attribute(cheque, "PositionCount"), "-3");
}

struct TypeRow {
    int documentType;
    const char* chequeType;
};

class ChequeTypeOfDocument : public ChequeTest, public testing::WithParamInterface<TypeRow> { };

TEST_P(ChequeTypeOfDocument, IsThatOfItsType)
{
    const auto document = DocumentBuilder().type(GetParam().documentType).build();

    EXPECT_EQ(attribute(ordinaryCheque(document).documentElement(), "ChequeType"), GetParam().chequeType);
}

INSTANTIATE_TEST_SUITE_P(Types, ChequeTypeOfDocument,
                         testing::Values(TypeRow { 1, "Sale" }, TypeRow { 2, "Return" }, TypeRow { 25, "" },
                                         TypeRow { 0, "" }, TypeRow { 3, "" }, TypeRow { -1, "" }));

TEST_F(ChequeHead, OpenDocumentClosesWhenItOpened)
{
    const QDomElement cheque = rootOf(ordinaryCheque(DocumentBuilder().openedAt(at("2024-02-29T23:59:59")).build()));

    EXPECT_EQ(attribute(cheque, "OpenTime"), "2024-02-29T23:59:59");
    EXPECT_EQ(attribute(cheque, "CloseTime"), "2024-02-29T23:59:59");
}

TEST_F(ChequeHead, ClosedDocumentShowsWhenItClosed)
{
    const QDomElement cheque = rootOf(ordinaryCheque(DocumentBuilder().closedAt(at("2024-03-06T00:00:01")).build()));

    EXPECT_EQ(attribute(cheque, "OpenTime"), "2024-03-05T14:07:09");
    EXPECT_EQ(attribute(cheque, "CloseTime"), "2024-03-06T00:00:01");
}

TEST_F(ChequeHead, TimesHaveNeitherFractionsNorZone)
{
    const QDateTime opened(QDate(2024, 3, 5), QTime(4, 7, 9, 987), QTimeZone(7200));
    const QDateTime closed(QDate(2024, 3, 5), QTime(2, 8, 0, 1), QTimeZone::utc());

    const QDomElement cheque = rootOf(ordinaryCheque(DocumentBuilder().openedAt(opened).closedAt(closed).build()));

    EXPECT_EQ(attribute(cheque, "OpenTime"), "2024-03-05T04:07:09");
    EXPECT_EQ(attribute(cheque, "CloseTime"), "2024-03-05T02:08:00");
}

struct SumRow {
    double documentSum;
    QList<double> granted;
    const char* amount;
};

class AmountOfCheque : public ChequeTest, public testing::WithParamInterface<SumRow> { };

TEST_P(AmountOfCheque, IsTheSumLessWhatIsGranted)
{
    GrantedDiscounts granted;
    for (const double sum : GetParam().granted) {
        granted.append(discountImpact(Detail(record_name::chequeDiscount).onCheque().sum(sum)));
    }

    const QDomDocument cheque = ordinaryCheque(DocumentBuilder().costs(GetParam().documentSum).build(), granted);

    EXPECT_EQ(attribute(cheque.documentElement(), "Amount"), GetParam().amount);
}

INSTANTIATE_TEST_SUITE_P(Sums, AmountOfCheque,
                         testing::Values(SumRow { 0.0, {}, "0.00" }, SumRow { 245.0, {}, "245.00" },
                                         SumRow { 1234567.5, {}, "1234567.50" }, SumRow { -15.5, {}, "-15.50" },
                                         SumRow { 0.125, {}, "0.13" }, SumRow { 1.004, {}, "1.00" },
                                         SumRow { 100.0, { 10.0 }, "90.00" },
                                         SumRow { 100.0, { 10.0, 0.5, 2.25 }, "87.25" },
                                         SumRow { 10.0, { 12.5 }, "-2.50" }, SumRow { 10.0, { -1.5 }, "11.50" },
                                         // Nothing is rounded on the way: 0.004 twice makes a kopeck.
                                         SumRow { 10.0, { 0.004, 0.004 }, "9.99" }));

TEST_F(ChequeHead, GrantedDiscountsOfPositionsLowerTheSumAsWell)
{
    const auto onPosition = discountImpact(Detail(record_name::positionDiscount).on(1).code(42).sum(25.0));
    const auto onCheque = discountImpact(Detail(record_name::chequeDiscount).onCheque().code(90).sum(10.0));

    const QDomDocument cheque = ordinaryCheque(DocumentBuilder().costs(295.0).build(), { onPosition, onCheque });

    EXPECT_EQ(attribute(cheque.documentElement(), "Amount"), "260.00");
}

TEST_F(ChequeHead, DetailsOfGrantedDiscountsDoNotCountBesideTheirTotals)
{
    const auto granted
        = discountImpact(Detail(record_name::chequeDiscount).onCheque().sum(10.0), { { 1, 4.0 }, { 2, 6.0 } });

    const QDomDocument cheque = ordinaryCheque(DocumentBuilder().costs(100.0).build(), { granted });

    EXPECT_EQ(attribute(cheque.documentElement(), "Amount"), "90.00");
}

TEST_F(ChequeHead, PointsSpentLeaveTheSumAsItStands)
{
    const auto document = DocumentBuilder().costs(70.0).impact(bonusImpact({ { 1, 30.0 } })).build();

    const QDomElement cheque = rootOf(ordinaryCheque(document));

    EXPECT_EQ(attribute(cheque, "Amount"), "70.00");
    EXPECT_EQ(attribute(cheque, "SubtractedBonus"), "30.00");
}

TEST_F(ChequeHead, PositionCountIsThatOfTheLiveLines)
{
    const auto document = DocumentBuilder()
                              .line(Goods(1, u"1001"_s, 1.0))
                              .deletedLine(Goods(2, u"1002"_s, 1.0))
                              .line(Goods(3, u"1003"_s, 1.0))
                              .build();

    EXPECT_EQ(attribute(ordinaryCheque(document).documentElement(), "PositionCount"), "2");
}

TEST_F(ChequeHead, SectionsOfOneChequeDoNotReachTheNext)
{
    const auto document = DocumentBuilder().build();
    QDomElement first = rootOf(ordinaryCheque(document));
    first.setAttribute(u"Status"_s, u"Changed"_s);

    EXPECT_EQ(attribute(ordinaryCheque(document).documentElement(), "Status"), "Open");
}

} // namespace
