#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/xml_compare.h"

using namespace Qt::StringLiterals;

namespace {

class ChequeLines : public ChequeTest {
protected:
    /// The line that is written of these goods alone.
    [[nodiscard]] QDomElement lineOfGoods(const Goods& goods) const
    {
        return below(ordinaryCheque(DocumentBuilder().line(goods).build()).documentElement(), "ChequeLines/ChequeLine");
    }
};

TEST_F(ChequeLines, LineHasExactlyItsAttributes)
{
    const QDomElement line
        = lineOfGoods(Goods(12, u"1001"_s, 89.9, 2.0).barcode(u"4600051000057"_s).minPrice(60.0).costs(170.0));

    EXPECT_EQ(attributesOf(line),
              "Amount = 170.00\n"
              "BonusDiscount = 0.00\n"
              "ChequeLineNo = 12\n"
              "MaxDiscount = 100.0\n"
              "MinAmount = 120.00\n"
              "MinPrice = 60.00\n"
              "NoAddBonus = false\n"
              "NoDiscounts = false\n"
              "NoPayBonus = false\n"
              "Price = 89.90\n"
              "Quantity = 2.000");
}

TEST_F(ChequeLines, ItemHasExactlyItsAttributes)
{
    const QDomElement line = lineOfGoods(Goods(1, u"000 1001"_s, 10.0).barcode(u"4600051000057"_s));

    EXPECT_EQ(attributesOf(below(line, "Item")), "Barcode = 4600051000057\nItemID = 000 1001");
}

TEST_F(ChequeLines, EmptyBarcodeStaysAnEmptyAttribute)
{
    EXPECT_EQ(attribute(below(lineOfGoods(Goods(1, u"1001"_s, 10.0)), "Item"), "Barcode"), "");
}

TEST_F(ChequeLines, LineWithNothingOnItCarriesEmptyDiscountsAndNoCoupon)
{
    const QDomElement line = lineOfGoods(Goods(1, u"1001"_s, 10.0));

    EXPECT_EQ(childrenOf(line), "Item Discounts");
    EXPECT_FALSE(below(line, "Discounts").hasChildNodes());
    EXPECT_FALSE(below(line, "Discounts").hasAttributes());
}

TEST_F(ChequeLines, ItemDiscountsAndCouponsStandInThisOrder)
{
    const auto document = DocumentBuilder()
                              .line(Goods(1, u"1001"_s, 10.0))
                              .discount(Detail(record_name::positionDiscount).code(41), { { 1, 1.0 } })
                              .build();

    const QDomDocument cheque = client.buildXmlCheck(document, { { 1, { u"P-2"_s, u"P-1"_s } } }, {}, {});

    EXPECT_EQ(childrenOf(lineOf(cheque, 1)), "Item Discounts Coupon Coupon");
    EXPECT_EQ(couponsOf(lineOf(cheque, 1)), "P-2 P-1");
}

TEST_F(ChequeLines, CouponsJoinTheirPositionAlone)
{
    const auto document = DocumentBuilder()
                              .line(Goods(1, u"1001"_s, 10.0))
                              .line(Goods(2, u"1002"_s, 10.0))
                              .line(Goods(3, u"1003"_s, 10.0))
                              .build();

    const QDomDocument cheque
        = client.buildXmlCheck(document, { { 2, { u"P-1"_s } }, { 3, {} }, { 4, { u"P-2"_s } } }, {}, {});

    EXPECT_EQ(couponsOf(lineOf(cheque, 1)), "");
    EXPECT_EQ(couponsOf(lineOf(cheque, 2)), "P-1");
    EXPECT_EQ(couponsOf(lineOf(cheque, 3)), "");
    EXPECT_EQ(childrenOf(lineOf(cheque, 3)), "Item Discounts");
    EXPECT_EQ(couponsOf(cheque.documentElement()), "");
}

TEST_F(ChequeLines, StandInTheOrderOfTheCheque)
{
    const auto document = DocumentBuilder()
                              .line(Goods(3, u"c"_s, 1.0))
                              .line(Goods(1, u"a"_s, 1.0))
                              .line(Goods(20, u"t"_s, 1.0))
                              .line(Goods(2, u"b"_s, 1.0))
                              .build();

    std::string numbers;
    QDomElement line = below(ordinaryCheque(document).documentElement(), "ChequeLines/ChequeLine");
    for (; !line.isNull(); line = line.nextSiblingElement()) {
        numbers += attribute(line, "ChequeLineNo") + " " + attribute(below(line, "Item"), "ItemID") + "; ";
    }

    EXPECT_EQ(numbers, "3 c; 1 a; 20 t; 2 b; ");
}

TEST_F(ChequeLines, DeletedLinesDoNotAppear)
{
    const auto document
        = DocumentBuilder().deletedLine(Goods(1, u"1001"_s, 1.0)).line(Goods(2, u"1002"_s, 1.0)).build();

    const QDomDocument cheque = ordinaryCheque(document);

    EXPECT_TRUE(lineOf(cheque, 1).isNull());
    EXPECT_FALSE(lineOf(cheque, 2).isNull());
}

TEST_F(ChequeLines, ChequeWithoutGoodsHasAnEmptySection)
{
    QDomDocument target;
    QDomElement cheque = newElement(target, "Cheque");

    client.addChequeLinesTag(DocumentBuilder().build(), cheque, {}, {});

    EXPECT_TRUE(sameXml(target, u"<Cheque><ChequeLines/></Cheque>"_s));
}

struct NumbersRow {
    double price;
    double minPrice;
    double quantity;
    double sum;
    const char* numbers; // Price Quantity Amount MinAmount MinPrice
};

class NumbersOfLine : public ChequeLines, public testing::WithParamInterface<NumbersRow> { };

TEST_P(NumbersOfLine, AreRoundedByPrintingThem)
{
    const NumbersRow row = GetParam();

    const QDomElement line
        = lineOfGoods(Goods(1, u"1001"_s, row.price, row.quantity).minPrice(row.minPrice).costs(row.sum));

    EXPECT_EQ(attribute(line, "Price") + " " + attribute(line, "Quantity") + " " + attribute(line, "Amount") + " "
                  + attribute(line, "MinAmount") + " " + attribute(line, "MinPrice"),
              row.numbers);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, NumbersOfLine,
    testing::Values(NumbersRow { 0.0, 0.0, 0.0, 0.0, "0.00 0.000 0.00 0.00 0.00" },
                    NumbersRow { 1234567.5, 1000000.0, 1.0, 1234567.5,
                                 "1234567.50 1.000 1234567.50 1000000.00 1000000.00" },
                    NumbersRow { 25.5, 20.0, -1.0, -25.5, "25.50 -1.000 -25.50 -20.00 20.00" },
                    NumbersRow { 99.99, 10.1, 0.333, 33.29667, "99.99 0.333 33.30 3.36 10.10" },
                    NumbersRow { 10.0, 1.5, 1.23456, 12.3456, "10.00 1.235 12.35 1.85 1.50" },
                    NumbersRow { 0.125, 0.004, 0.0625, 0.125, "0.13 0.063 0.13 0.00 0.00" },
                    // The product is made of the numbers as they are, and not of what is printed of them.
                    NumbersRow { 2.0, 0.004, 1000.0, 2000.0, "2.00 1000.000 2000.00 4.00 0.00" },
                    NumbersRow { 3.0, 1.0, 0.0004, 0.001, "3.00 0.000 0.00 0.00 1.00" },
                    NumbersRow { 1.0, 0.0, 1.0, -0.001, "1.00 1.000 -0.00 0.00 0.00" }));

TEST_F(ChequeLines, LineStatesWhatItIsGiven)
{
    QDomDocument target;
    QDomElement lines = newElement(target, "ChequeLines");
    const auto item = QSharedPointer<till::Line>::create(
        Goods(5, u"1001"_s, 50.0, 2.0).barcode(u"46"_s).minPrice(10.0).costs(100.0).fields());

    client.addChequeLineTag(item, lines, -5.5, { Detail(record_name::positionDiscount).code(7).sum(2.0).record() }, 3.0,
                            { u"P-1"_s });

    EXPECT_TRUE(sameXml(target, uR"(
        <ChequeLines>
          <ChequeLine ChequeLineNo="5" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="50.00"
              Quantity="2.000" Amount="105.50" MinAmount="20.00" MinPrice="10.00" MaxDiscount="100.0"
              BonusDiscount="3.00">
            <Item ItemID="1001" Barcode="46"/>
            <Discounts>
              <Discount DiscountID="7" Type="Amount" Percent="0" Amount="2.00"/>
            </Discounts>
            <Coupon CouponNo="P-1"/>
          </ChequeLine>
        </ChequeLines>)"_s));
}

TEST_F(ChequeLines, DeletedLinesAreWrittenWithoutAnyReconciling)
{
    const auto document = DocumentBuilder()
                              .line(Goods(1, u"live"_s, 1.0))
                              .deletedLine(Goods(3, u"1003"_s, 50.0).costs(40.0))
                              .deletedLine(Goods(2, u"1002"_s, 20.0, 2.0).minPrice(5.0))
                              .impact(bonusImpact({ { 3, 10.0 } }))
                              .discount(Detail(record_name::positionDiscount).code(41), { { 2, 4.0 } })
                              .build();
    QDomDocument target;
    QDomElement cheque = newElement(target, "Cheque");

    client.addChequeLinesTag(document, cheque, { { 2, { u"P-1"_s } }, { 1, { u"P-2"_s } } });

    EXPECT_TRUE(sameXml(target, uR"(
        <Cheque>
          <ChequeLines>
            <ChequeLine ChequeLineNo="3" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="50.00"
                Quantity="1.000" Amount="40.00" MinAmount="0.00" MinPrice="0.00" MaxDiscount="100.0"
                BonusDiscount="0.00">
              <Item ItemID="1003" Barcode=""/>
              <Discounts/>
            </ChequeLine>
            <ChequeLine ChequeLineNo="2" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="20.00"
                Quantity="2.000" Amount="40.00" MinAmount="10.00" MinPrice="5.00" MaxDiscount="100.0"
                BonusDiscount="0.00">
              <Item ItemID="1002" Barcode=""/>
              <Discounts/>
              <Coupon CouponNo="P-1"/>
            </ChequeLine>
          </ChequeLines>
        </Cheque>)"_s));
}

} // namespace
