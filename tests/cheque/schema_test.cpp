#include "tests/cheque/schema_check.h"

using namespace Qt::StringLiterals;

// A schema that has never refused anything proves nothing.

namespace {

/// One of everything that a cheque can hold.
const QString fullCheque = uR"(<?xml version="1.0" encoding="UTF-8"?>
<Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema"
    ShiftNo="17" ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042" OpenTime="2024-03-05T14:07:09"
    CloseTime="2024-03-05T14:09:30" Amount="95.00" SubtractedBonus="15.00" PositionCount="1" ChequeType="Return"
    Status="Closed">
 <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="10.00" SubtractedBonus="0"
     DiscountCardNo="9000000001" BonusCard="true"/>
 <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="5.00" SubtractedBonus="0"
     DiscountCardNo="C-1" BonusCard="false"/>
 <SaleCheque ChequeNo="900" OpenTime="2024-03-01T10:00:00" CloseTime="2024-03-01T10:05:00" Amount="0"
     SubtractedBonus="0.00" PositionCount="0" Status="Closed" ChequeType="Sale">
  <ChequeLines/>
 </SaleCheque>
 <ChequeLines>
  <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="true" NoDiscounts="false" Price="100.00" Quantity="1.000"
      Amount="95.00" MinAmount="50.00" MinPrice="50.00" MaxDiscount="100.0" BonusDiscount="10.00">
   <Item ItemID="1001" Barcode=""/>
   <Discounts>
    <Discount DiscountID="41" Type="Percent" Percent="7.5" Amount="5.00"/>
    <Discount DiscountID="0" Type="Amount" Percent="0" Amount="0.00"/>
   </Discounts>
   <Coupon CouponNo="P-1"/>
  </ChequeLine>
 </ChequeLines>
 <Discounts/>
 <Payments>
  <Payment PaymentUID="" PaymentNo="1" Type="6" Amount="5.00"/>
  <Payment PaymentUID="" PaymentNo="2" Type="6" Amount="5.00"/>
 </Payments>
 <Messages/>
 <Coupon CouponNo="A-1"/>
</Cheque>
)"_s;

struct EditRow {
    const char* name;
    const char* find; // stands once in the cheque
    const char* replace;
};

QString edited(const EditRow& row)
{
    const QString find = QString::fromUtf8(row.find);
    EXPECT_EQ(fullCheque.count(find), 1) << "the cheque holds no or several " << row.find;
    return QString(fullCheque).replace(find, QString::fromUtf8(row.replace));
}

std::string editName(const testing::TestParamInfo<EditRow>& info)
{
    return info.param.name;
}

class BrokenCheque : public testing::TestWithParam<EditRow> { };

TEST_P(BrokenCheque, IsRefused)
{
    const SchemaReport report = checkAgainstSchema({ edited(GetParam()) });

    EXPECT_EQ(report.verdict, SchemaVerdict::invalid) << report.complaint;
}

INSTANTIATE_TEST_SUITE_P(
    WrongForm, BrokenCheque,
    testing::Values(EditRow { "MoneyWithOneDecimal", "Amount=\"95.00\" SubtractedBonus",
                              "Amount=\"95.0\" SubtractedBonus" },
                    EditRow { "MoneyWithThreeDecimals", "MinAmount=\"50.00\"", "MinAmount=\"50.000\"" },
                    EditRow { "MoneyWithComma", "Price=\"100.00\"", "Price=\"100,00\"" },
                    EditRow { "MoneyWithoutDecimals", "Price=\"100.00\"", "Price=\"100\"" },
                    EditRow { "MoneyWithThousandsSeparator", "Price=\"100.00\"", "Price=\"1 100.00\"" },
                    EditRow { "MoneyWithPlus", "Price=\"100.00\"", "Price=\"+100.00\"" },
                    EditRow { "MoneyInExponentialNotation", "Price=\"100.00\"", "Price=\"1e+02\"" },
                    EditRow { "MoneyThatIsNoNumber", "Price=\"100.00\"", "Price=\"nan\"" },
                    EditRow { "MoneyWithBlank", "Price=\"100.00\"", "Price=\" 100.00\"" },
                    EditRow { "EmptyMoney", "BonusDiscount=\"10.00\"", "BonusDiscount=\"\"" },
                    EditRow { "QuantityWithTwoDecimals", "Quantity=\"1.000\"", "Quantity=\"1.00\"" },
                    EditRow { "MaxDiscountOfMoney", "MaxDiscount=\"100.0\"", "MaxDiscount=\"100.00\"" },
                    EditRow { "CardBonusOfMoney", "SubtractedBonus=\"0\"\n     DiscountCardNo=\"C-1\"",
                              "SubtractedBonus=\"0.00\"\n     DiscountCardNo=\"C-1\"" },
                    EditRow { "SaleAmountOfMoney", "Amount=\"0\"", "Amount=\"0.00\"" },
                    EditRow { "SaleBonusWithoutDecimals", "SubtractedBonus=\"0.00\"", "SubtractedBonus=\"0\"" },
                    EditRow { "TimeWithBlank", "\"2024-03-05T14:07:09\"", "\"2024-03-05 14:07:09\"" },
                    EditRow { "TimeWithZone", "\"2024-03-05T14:07:09\"", "\"2024-03-05T14:07:09Z\"" },
                    EditRow { "TimeWithFractions", "\"2024-03-05T14:07:09\"", "\"2024-03-05T14:07:09.000\"" },
                    EditRow { "TimeThatNeverWas", "\"2024-03-05T14:07:09\"", "\"2024-02-30T14:07:09\"" },
                    EditRow { "EmptyCloseTime", "\"2024-03-05T14:09:30\"", "\"\"" },
                    EditRow { "BooleanAsNumber", "NoAddBonus=\"true\"", "NoAddBonus=\"1\"" },
                    EditRow { "BooleanInCapitals", "BonusCard=\"true\"", "BonusCard=\"True\"" },
                    EditRow { "UidInLowerCase", "11116E73-1C03", "11116e73-1c03" },
                    EditRow { "UidInBraces", "\"11116E73-1C03-5DE6-9130-5F9925AE8AB4\"",
                              "\"{11116E73-1C03-5DE6-9130-5F9925AE8AB4}\"" },
                    EditRow { "UidOfAnotherVersion", "1C03-5DE6", "1C03-4DE6" },
                    EditRow { "IntegerWithLeadingZero", "ChequeLineNo=\"1\"", "ChequeLineNo=\"01\"" },
                    EditRow { "IntegerWithDecimals", "PositionCount=\"1\"", "PositionCount=\"1.0\"" },
                    EditRow { "DiscountIdOfText", "DiscountID=\"41\"", "DiscountID=\"A\"" },
                    EditRow { "EmptyPercent", "Percent=\"7.5\"", "Percent=\"\"" },
                    EditRow { "PercentWithComma", "Percent=\"7.5\"", "Percent=\"7,5\"" },
                    EditRow { "PaymentWithUid", "PaymentUID=\"\" PaymentNo=\"1\"", "PaymentUID=\"1\" PaymentNo=\"1\"" },
                    EditRow { "PaymentNumberZero", "PaymentNo=\"1\"", "PaymentNo=\"0\"" },
                    EditRow { "PaymentNumberTwice", "PaymentNo=\"2\"", "PaymentNo=\"1\"" }),
    editName);

INSTANTIATE_TEST_SUITE_P(
    WrongChoice, BrokenCheque,
    testing::Values(
        EditRow { "UnknownStatus", "ChequeType=\"Return\"\n    Status=\"Closed\"",
                  "ChequeType=\"Return\"\n    Status=\"Cancelled\"" },
        EditRow { "EmptyStatus", "ChequeType=\"Return\"\n    Status=\"Closed\"",
                  "ChequeType=\"Return\"\n    Status=\"\"" },
        EditRow { "UnknownChequeType", "ChequeType=\"Return\"", "ChequeType=\"Back\"" },
        EditRow { "OpenSale", "Status=\"Closed\" ChequeType=\"Sale\"", "Status=\"Open\" ChequeType=\"Sale\"" },
        EditRow { "ReturnOfAReturn", "ChequeType=\"Sale\"", "ChequeType=\"Return\"" },
        EditRow { "UnknownDiscountType", "Type=\"Percent\"", "Type=\"FixedPrice\"" },
        EditRow { "UnknownPaymentType", "PaymentNo=\"2\" Type=\"6\"", "PaymentNo=\"2\" Type=\"5\"" },
        EditRow { "CardById", "DiscountCardID=\"0\" EnteredAsPhoneNumber=\"false\" SubtractAmount=\"10.00\"",
                  "DiscountCardID=\"7\" EnteredAsPhoneNumber=\"false\" SubtractAmount=\"10.00\"" },
        EditRow { "CardByPhone", "EnteredAsPhoneNumber=\"false\" SubtractAmount=\"10.00\"",
                  "EnteredAsPhoneNumber=\"true\" SubtractAmount=\"10.00\"" }),
    editName);

INSTANTIATE_TEST_SUITE_P(
    WrongTree, BrokenCheque,
    testing::Values(EditRow { "MissingAttribute", " ChequeType=\"Return\"", "" },
                    EditRow { "MissingAttributeOfLine", " BonusDiscount=\"10.00\"", "" },
                    EditRow { "MissingAttributeOfCard", " BonusCard=\"false\"", "" },
                    EditRow { "MissingBarcode", " Barcode=\"\"", "" },
                    EditRow { "MissingCouponNumber", "<Coupon CouponNo=\"P-1\"/>", "<Coupon/>" },
                    EditRow { "UnknownAttribute", "ShiftNo=\"17\"", "ShiftNo=\"17\" Shift=\"17\"" },
                    EditRow { "AttributeInOtherCase", "ShiftNo=\"17\"", "shiftNo=\"17\"" },
                    EditRow { "AttributeOfASection", " <Messages/>", " <Messages Count=\"0\"/>" },
                    EditRow { "UnknownElement", " <Messages/>", " <Messages/><Totals/>" },
                    EditRow { "TextInAnElement", " <Messages/>", " <Messages>text</Messages>" },
                    EditRow { "MissingSection", " <Messages/>\n", "" },
                    EditRow { "SectionTwice", " <Messages/>\n", " <Messages/><Messages/>\n" },
                    EditRow { "CouponBeforeMessages", " <Messages/>\n <Coupon CouponNo=\"A-1\"/>",
                              " <Coupon CouponNo=\"A-1\"/><Messages/>" },
                    EditRow { "MissingDiscounts", " <Discounts/>\n <Payments>", " <Payments>" },
                    EditRow { "DiscountsBehindPayments", "</Payments>", "</Payments><Discounts/>" },
                    EditRow { "DiscountsBeforeItem", "<Item ItemID=\"1001\" Barcode=\"\"/>\n   <Discounts>",
                              "<Discounts/><Item ItemID=\"1001\" Barcode=\"\"/>\n   <Discounts>" },
                    EditRow { "LineWithoutItem", "<Item ItemID=\"1001\" Barcode=\"\"/>", "" },
                    EditRow {
                        "CardBehindLines", " <Discounts/>\n <Payments>",
                        "<DiscountCard DiscountCardID=\"0\" EnteredAsPhoneNumber=\"false\" SubtractAmount=\"0.00\""
                        " SubtractedBonus=\"0\" DiscountCardNo=\"1\" BonusCard=\"true\"/>"
                        " <Discounts/>\n <Payments>" },
                    EditRow { "SaleWithoutLines", "  <ChequeLines/>\n", "" },
                    EditRow { "LineOfTheSale", "  <ChequeLines/>\n", "  <ChequeLines><ChequeLine/></ChequeLines>\n" }),
    editName);

class WholeCheque : public testing::TestWithParam<EditRow> { };

TEST_P(WholeCheque, IsAccepted)
{
    EXPECT_TRUE(isValidCheque(edited(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(
    Variants, WholeCheque,
    testing::Values(EditRow { "AsItStands", "ShiftNo=\"17\"", "ShiftNo=\"17\"" },
                    EditRow { "OpenSale", "ChequeType=\"Return\"\n    Status=\"Closed\"",
                              "ChequeType=\"Sale\"\n    Status=\"Open\"" },
                    EditRow { "CanceledOfNoType", "ChequeType=\"Return\"\n    Status=\"Closed\"",
                              "ChequeType=\"\"\n    Status=\"Canceled\"" },
                    EditRow { "NegativeMoney", "BonusDiscount=\"10.00\"", "BonusDiscount=\"-10.00\"" },
                    EditRow { "NothingFromBelow", "BonusDiscount=\"10.00\"", "BonusDiscount=\"-0.00\"" },
                    EditRow { "NegativeQuantity", "Quantity=\"1.000\"", "Quantity=\"-0.500\"" },
                    EditRow { "LongPercent", "Percent=\"7.5\"", "Percent=\"33.299999999999997\"" },
                    EditRow { "TinyPercent", "Percent=\"7.5\"", "Percent=\"1.0000000000000001e-05\"" },
                    EditRow { "NegativeCount", "PositionCount=\"1\"", "PositionCount=\"-1\"" },
                    EditRow { "StoredIdentityThatIsMissing", "ChequeNo=\"1042\"", "ChequeNo=\"\"" },
                    EditRow { "SaleThatWasNeverClosed", "\"2024-03-01T10:05:00\"", "\"\"" },
                    EditRow { "EmptySectionWithEndTag", "  <ChequeLines/>\n", "  <ChequeLines></ChequeLines>\n" },
                    EditRow { "TextThatNeedsEscapes", "CouponNo=\"A-1\"", "CouponNo=\"&lt;&amp;]]&gt;&#10;Ж\"" }),
    editName);

TEST(SchemaCheck, TellsMalformedTextFromARefusal)
{
    EXPECT_EQ(checkAgainstSchema({ u"<Cheque>"_s }).verdict, SchemaVerdict::malformed);
    EXPECT_EQ(checkAgainstSchema({ u"<Cheque a=\"\x1D\"/>"_s }).verdict, SchemaVerdict::malformed);
    EXPECT_EQ(checkAgainstSchema({ u"<Cheque/>"_s }).verdict, SchemaVerdict::invalid);
    EXPECT_EQ(checkAgainstSchema({ fullCheque, u"<Cheque/>"_s }).verdict, SchemaVerdict::invalid);
}

} // namespace
