#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/xml_compare.h"

using namespace Qt::StringLiterals;

namespace {

class ChequeText : public ChequeTest {
protected:
    [[nodiscard]] QString textOf(const DocumentBuilder& document, const PositionCoupons& positionCoupons = {},
                                 const Coupons& coupons = {}) const
    {
        return client.getXmlCheckString(client.buildXmlCheck(document.build(), positionCoupons, coupons, {}));
    }
};

TEST_F(ChequeText, IsTheDeclarationFollowedByTheIndentedElement)
{
    QDomDocument cheque;
    QDomElement root = newElement(cheque, "Cheque");
    root.appendChild(cheque.createElement(u"ChequeLines"_s));
    client.addCouponsTags({ u"A-1"_s }, root);

    EXPECT_EQ(client.getXmlCheckString(cheque).toStdString(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><Cheque>\n <ChequeLines/>\n <Coupon CouponNo=\"A-1\"/>\n"
              "</Cheque>\n");
}

TEST_F(ChequeText, HasOneDeclarationAndOneRoot)
{
    const QString text = textOf(DocumentBuilder().line(Goods(1, u"1001"_s, 1.0)));

    EXPECT_TRUE(text.startsWith(uR"(<?xml version="1.0" encoding="UTF-8"?><Cheque )"_s)) << text.toStdString();
    EXPECT_EQ(text.count(u"<?"_s), 1);
    EXPECT_EQ(text.count(u"<Cheque "_s), 1);
    EXPECT_TRUE(text.endsWith(u"</Cheque>\n"_s)) << text.toStdString();
}

TEST_F(ChequeText, PlaceMarkersOfTheDocumentStayAsTheyAre)
{
    const QString text = textOf(DocumentBuilder().card(u"%1"_s), {}, { u"%2%99"_s });

    EXPECT_TRUE(text.contains(u"DiscountCardNo=\"%1\""_s)) << text.toStdString();
    EXPECT_TRUE(text.contains(u"CouponNo=\"%2%99\""_s)) << text.toStdString();
}

struct TextRow {
    const char16_t* given;
    const char16_t* readBack;
};

class TextOfDocument : public ChequeText, public testing::WithParamInterface<TextRow> { };

// Every text of a document that comes from people, scanners or goods files, in one cheque.
TEST_P(TextOfDocument, ComesBackFromTheChequeThatCarriesIt)
{
    const QString given = QString::fromUtf16(GetParam().given);
    const std::string expected = QString::fromUtf16(GetParam().readBack).toStdString();
    const DocumentBuilder document
        = DocumentBuilder().card(given).line(Goods(1, given, 1.0).barcode(given)).certificate(given, 1.0);
    const QDomDocument ordinary = client.buildXmlCheck(document.build(), { { 1, { given } } }, { given }, {});
    const QDomDocument accrual
        = client.buildAccrualXmlCheck(ordinary, {}, { { 1, { given } } }, { given }, document.build()->getMoneyItems());

    for (const QDomDocument& built : { ordinary, accrual }) {
        const QDomElement cheque = rootOf(parsed(client.getXmlCheckString(built)));
        const QDomElement line = below(cheque, "ChequeLines/ChequeLine");
        EXPECT_EQ(attribute(below(cheque, "DiscountCard"), "DiscountCardNo"), expected);
        EXPECT_EQ(attribute(below(line, "Item"), "ItemID"), expected);
        EXPECT_EQ(attribute(below(line, "Item"), "Barcode"), expected);
        EXPECT_EQ(couponsOf(line), expected);
        EXPECT_EQ(couponsOf(cheque), expected);
    }
    const QDomElement certificate
        = below(parsed(client.getXmlCheckString(accrual)).documentElement(), "DiscountCard").nextSiblingElement();
    EXPECT_EQ(attribute(certificate, "DiscountCardNo"), expected);
}

INSTANTIATE_TEST_SUITE_P(ThatXmlCanCarry, TextOfDocument,
                         testing::Values(TextRow { u"", u"" }, TextRow { u"Сыр «Российский»", u"Сыр «Российский»" },
                                         TextRow { u"a\"b'c", u"a\"b'c" }, TextRow { u"a&b&amp;c", u"a&b&amp;c" },
                                         TextRow { u"<b>&lt;</b>", u"<b>&lt;</b>" }, TextRow { u"]]>", u"]]>" },
                                         TextRow { u"a]]>b]]>", u"a]]>b]]>" }, TextRow { u"one\ntwo", u"one\ntwo" },
                                         TextRow { u"one\r\ntwo\rthree\tfour", u"one\r\ntwo\rthree\tfour" },
                                         TextRow { u"  blanks  ", u"  blanks  " },
                                         TextRow { u"\U0001F600", u"\U0001F600" },
                                         TextRow { u"\x7F\xA0\xAD\uFFFD", u"\x7F\xA0\xAD\uFFFD" }));

INSTANTIATE_TEST_SUITE_P(WithoutWhatXmlCannotCarry, TextOfDocument,
                         testing::Values(TextRow { u"01046\x1D"
                                                   u"21",
                                                   u"0104621" },
                                         TextRow { u"\x01\x02\x03\x04\x05\x06\x07\x08", u"" },
                                         TextRow { u"a\x0B\x0C"
                                                   u"b",
                                                   u"ab" },
                                         TextRow { u"\x0E\x0F\x10\x1A\x1B"
                                                   u"c",
                                                   u"c" },
                                         TextRow { u"\x1C\x1D\x1E\x1F 1", u" 1" },
                                         TextRow { u"a\xFFFE"
                                                   u"b\xFFFF",
                                                   u"ab" },
                                         TextRow { u"high \xD83D alone", u"high  alone" },
                                         TextRow { u"low \xDE00 alone", u"low  alone" },
                                         TextRow { u"\xDE00\xD83D turned", u" turned" },
                                         TextRow { u"cut\xD83D", u"cut" },
                                         TextRow { u"\xD83D\xD83D\xDE00", u"\xD83D\xDE00" }));

TEST_F(ChequeText, ZeroCharactersAreDropped)
{
    const QString zero(QChar(u'\0'));

    const QDomElement cheque = rootOf(parsed(textOf(DocumentBuilder().card(u"90"_s + zero + u"01"_s))));

    EXPECT_EQ(attribute(below(cheque, "DiscountCard"), "DiscountCardNo"), "9001");
}

} // namespace
