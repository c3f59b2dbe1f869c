#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/xml_compare.h"

// The accrual cheque is a rewritten cheque. These sources are written by hand, so that they may hold what no builder
// of today gives.

using namespace Qt::StringLiterals;

namespace {

class AccrualOfSource : public ChequeTest {
protected:
    [[nodiscard]] QDomDocument rewritten(const QString& source,
                                         const QList<QSharedPointer<BonusImpact>>& bonuses = {}) const
    {
        return client.buildAccrualXmlCheck(parsed(source), bonuses, {}, {}, {});
    }
};

TEST_F(AccrualOfSource, KeepsWhateverIsNotNamed)
{
    EXPECT_TRUE(sameXml(rewritten(uR"(
        <Cheque xmlns:xsi="urn:instance" Zone="+3" status="x" SubtractedBonus="9.99" Status="Open" subtractedBonus="y"
            Amount="1,5" ChequeType="">
          <DiscountCard SubtractAmount="9.99" SubtractedBonus="7" Level="gold" subtractAmount="z"/>
          <ChequeLines>
            <ChequeLine ChequeLineNo="1" BonusDiscount="9.99" bonusDiscount="w" Status="Open" SubtractedBonus="8"
                Note="&#10;&quot;]]&gt;&lt;"/>
          </ChequeLines>
        </Cheque>)"_s,
                                  { bonusImpact({ { 1, 2.5 } }) }),
                        uR"(
        <Cheque xmlns:xsi="urn:instance" Zone="+3" status="x" SubtractedBonus="2.50" Status="Closed" subtractedBonus="y"
            Amount="1,5" ChequeType="">
          <DiscountCard SubtractAmount="2.50" SubtractedBonus="7" Level="gold" subtractAmount="z"/>
          <ChequeLines>
            <ChequeLine ChequeLineNo="1" BonusDiscount="2.50" bonusDiscount="w" Status="Open" SubtractedBonus="8"
                Note="&#10;&quot;]]&gt;&lt;"/>
          </ChequeLines>
          <Discounts/>
          <Payments/>
          <Messages/>
        </Cheque>)"_s));
}

TEST_F(AccrualOfSource, CopiesItemAndDiscountsOfALineInDepth)
{
    EXPECT_TRUE(sameXml(rewritten(uR"(
        <Cheque>
          <ChequeLines>
            <ChequeLine ChequeLineNo="1">
              <Coupon CouponNo="OLD"/>
              <Discounts Kind="a"><Discount DiscountID="41"><Deeper>text</Deeper></Discount><Discount/></Discounts>
              <Item ItemID="1001" Barcode=""><Piece No="1"/></Item>
              <Item ItemID="second"/>
              <Discounts Kind="second"/>
            </ChequeLine>
            <ChequeLine ChequeLineNo="2">
              <Item ItemID="1002"/>
              <Discounts/>
            </ChequeLine>
          </ChequeLines>
        </Cheque>)"_s),
                        uR"(
        <Cheque>
          <ChequeLines>
            <ChequeLine ChequeLineNo="1">
              <Item ItemID="1001" Barcode=""><Piece No="1"/></Item>
              <Discounts Kind="a"><Discount DiscountID="41"><Deeper>text</Deeper></Discount><Discount/></Discounts>
            </ChequeLine>
            <ChequeLine ChequeLineNo="2">
              <Item ItemID="1002"/>
              <Discounts/>
            </ChequeLine>
          </ChequeLines>
          <Discounts/>
          <Payments/>
          <Messages/>
        </Cheque>)"_s));
}

TEST_F(AccrualOfSource, MakesTheSectionsOfTheChequeAfresh)
{
    EXPECT_TRUE(sameXml(rewritten(uR"(
        <Cheque>
          <ChequeLines/>
          <Discounts><Discount DiscountID="1"/></Discounts>
          <Payments><Payment PaymentNo="1"/></Payments>
          <Messages><Message/></Messages>
          <Coupon CouponNo="OLD"/>
          <Unknown/>
        </Cheque>)"_s),
                        u"<Cheque><ChequeLines/><Discounts/><Payments/><Messages/></Cheque>"_s));
}

TEST_F(AccrualOfSource, WithoutLinesHasAnEmptySection)
{
    EXPECT_TRUE(sameXml(rewritten(u"<Cheque Status=\"Open\"/>"_s), uR"(
        <Cheque Status="Closed"><ChequeLines/><Discounts/><Payments/><Messages/></Cheque>)"_s));
}

TEST_F(AccrualOfSource, CardWithoutAttributesIsNoCard)
{
    EXPECT_EQ(childrenOf(rewritten(u"<Cheque><DiscountCard/><ChequeLines/></Cheque>"_s).documentElement()),
              "ChequeLines Discounts Payments Messages");
}

TEST_F(AccrualOfSource, TakesTheFirstCardOnly)
{
    const QDomElement cheque = rootOf(rewritten(uR"(
        <Cheque>
          <DiscountCard DiscountCardNo="first" SubtractAmount="1.00"/>
          <DiscountCard DiscountCardNo="second" SubtractAmount="1.00"/>
          <ChequeLines/>
        </Cheque>)"_s));

    EXPECT_EQ(childrenOf(cheque), "DiscountCard ChequeLines Discounts Payments Messages");
    EXPECT_EQ(attribute(below(cheque, "DiscountCard"), "DiscountCardNo"), "first");
}

struct LineNumberRow {
    const char* number; // ChequeLineNo of the source, "" for a line without it
    const char* bonus; // with 1 spent on position 0, 10 on 1, 20 on 2147483647 and 40 on -7
};

class NumberOfSourceLine : public AccrualOfSource, public testing::WithParamInterface<LineNumberRow> { };

TEST_P(NumberOfSourceLine, CountsAsZeroUnlessItIsAnInteger)
{
    const QDomDocument cheque = rewritten(
        QStringLiteral("<Cheque><ChequeLines><ChequeLine %1 BonusDiscount=\"9.99\"/></ChequeLines></Cheque>")
            .arg(QString::fromLatin1(GetParam().number)),
        { bonusImpact({ { 0, 1.0 }, { 1, 10.0 }, { 2147483647, 20.0 }, { -7, 40.0 } }) });

    EXPECT_EQ(attribute(below(cheque.documentElement(), "ChequeLines/ChequeLine"), "BonusDiscount"), GetParam().bonus);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, NumberOfSourceLine,
    testing::Values(LineNumberRow { "ChequeLineNo=\"1\"", "10.00" }, LineNumberRow { "ChequeLineNo=\"001\"", "10.00" },
                    LineNumberRow { "ChequeLineNo=\"2\"", "0.00" }, LineNumberRow { "ChequeLineNo=\"-7\"", "40.00" },
                    LineNumberRow { "ChequeLineNo=\"2147483647\"", "20.00" },
                    LineNumberRow { "ChequeLineNo=\"2147483648\"", "1.00" },
                    LineNumberRow { "ChequeLineNo=\"99999999999\"", "1.00" },
                    LineNumberRow { "ChequeLineNo=\"0x1\"", "1.00" }, LineNumberRow { "ChequeLineNo=\"1.0\"", "1.00" },
                    LineNumberRow { "ChequeLineNo=\"one\"", "1.00" }, LineNumberRow { "ChequeLineNo=\"\"", "1.00" },
                    LineNumberRow { "", "1.00" }));

TEST_F(AccrualOfSource, LineThatCountsAsZeroGetsTheCouponsOfPositionZero)
{
    const QDomDocument cheque = client.buildAccrualXmlCheck(
        parsed(u"<Cheque><ChequeLines><ChequeLine ChequeLineNo=\"x\"/></ChequeLines></Cheque>"_s), {},
        { { 0, { u"P-0"_s } } }, {}, {});

    EXPECT_EQ(couponsOf(below(cheque.documentElement(), "ChequeLines/ChequeLine")), "P-0");
}

TEST_F(AccrualOfSource, LeavesTheSourceUntouched)
{
    const auto document = DocumentBuilder()
                              .card(u"9000000001"_s)
                              .line(Goods(1, u"1001"_s, 100.0))
                              .discount(Detail(record_name::positionDiscount).code(41), { { 1, 5.0 } })
                              .certificate(u"C-1"_s, 5.0)
                              .build();
    const QDomDocument source = client.buildXmlCheck(document, { { 1, { u"P-1"_s } } }, { u"A-1"_s }, {});
    const QString before = source.toString();

    QDomDocument cheque
        = client.buildAccrualXmlCheck(source, { bonusImpact({ { 1, 10.0 } }) }, {}, {}, document->getMoneyItems());
    below(cheque.documentElement(), "ChequeLines/ChequeLine/Item").setAttribute(u"ItemID"_s, u"changed"_s);

    EXPECT_EQ(source.toString(), before);
    EXPECT_EQ(attribute(cheque.documentElement(), "SubtractedBonus"), "15.00");
}

} // namespace
