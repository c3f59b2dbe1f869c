#include "tests/printing/printing_support.h"
#include "till/printing/slip_reader.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

std::string findingsIn(const QString& text)
{
    return told(till::readSlip(text).findings);
}

std::string findingsOf(const QString& content)
{
    return findingsIn(reportOf(content));
}

QString ean13(const QString& code, const QString& others = u"showmode='SHOW_DOWN' width='2' height='255'"_s)
{
    return u"<printer op='barcode' type='EAN13' barcode='%1' %2/>"_s.arg(code, others);
}

TEST(SlipReader, HasNothingToSayOfAnElementOfEachKind)
{
    EXPECT_EQ(findingsOf(u"<printer op='setfont' size='smaller'/><text align='left' maxwidth='all'>А</text>"
                         "<printer op='resetfont'/><printer op='setfont' size='normal'/><text align='center'>Б</text>"
                         "<printer op='setfont' size='enlarge'/><text align='right'>В</text><text>Г</text><br/>"
                         "<text fillsymbol='-' maxwidth='all'/><printer op='barcode' type='QR' barcode='1'/>"_s
                         + ean13(u"4600051000057"_s)),
              "");
}

TEST(SlipReader, ReadsEachElementWithItsSizeAndAlignment)
{
    const till::Slip slip = till::readSlip(reportOf(
        u"<printer op='setfont' size='enlarge'/><text align='right' maxwidth='all'>А</text><printer op='resetfont'/>"
        "<text>Б</text><text fillsymbol='=-'/><br/>"_s
        + ean13(u"4600051000057"_s, u"showmode='SHOW_DOWN' width='3' height='80'"_s)));

    ASSERT_EQ(slip.kind, till::SlipKind::printForm);
    ASSERT_EQ(slip.blocks.size(), 5);
    const auto& enlarged = std::get<till::SlipText>(slip.blocks[0]);
    EXPECT_EQ(enlarged.text.toStdString(), "А");
    EXPECT_EQ(enlarged.align, till::SlipAlign::right);
    EXPECT_EQ(enlarged.size, till::SlipSize::enlarge);
    const auto& plain = std::get<till::SlipText>(slip.blocks[1]);
    EXPECT_EQ(plain.text.toStdString(), "Б");
    EXPECT_EQ(plain.align, till::SlipAlign::none);
    EXPECT_EQ(plain.size, till::SlipSize::normal);
    EXPECT_EQ(std::get<till::SlipRule>(slip.blocks[2]).symbols.toStdString(), "=-");
    EXPECT_TRUE(std::holds_alternative<till::SlipBreak>(slip.blocks[3]));
    const auto& code = std::get<till::SlipCode>(slip.blocks[4]);
    EXPECT_EQ(code.content.toStdString(), "4600051000057");
    EXPECT_EQ(code.moduleWidth, 3);
    EXPECT_EQ(code.height, 80);
    EXPECT_TRUE(code.withDigits);
    EXPECT_TRUE(code.drawable);
}

TEST(SlipReader, TellsTheLineOfAFinding)
{
    EXPECT_EQ(findingsIn(u"<report>\n <text>А</text>\n <image/>\n</report>\n"_s),
              "3: the element \"image\" is unknown; it is not printed, with all that it holds\n");
}

struct Fault {
    const char* name;
    const char* content;
    const char* finding;
};

class FaultOfAForm : public testing::TestWithParam<Fault> { };

TEST_P(FaultOfAForm, IsTold)
{
    EXPECT_EQ(findingsOf(QString::fromUtf8(GetParam().content)), "1: " + std::string(GetParam().finding) + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Elements, FaultOfAForm,
    testing::Values(
        Fault { "UnknownElement", "<image><text>нет</text></image>",
                "the element \"image\" is unknown; it is not printed, with all that it holds" },
        Fault { "ElementOfAnotherCase", "<Text>нет</Text>",
                "the element \"Text\" is unknown; it is not printed, with all that it holds" },
        Fault { "UnknownAttributeOfAText", "<text colour='red'>А</text>",
                "the attribute \"colour\" of \"text\" is unknown" },
        Fault { "UnknownAttributeOfABreak", "<br lines='2'/>", "the attribute \"lines\" of \"br\" is unknown" },
        Fault {
            "UnknownAlignment", "<text align='justify'>А</text>",
            "the value \"justify\" of the attribute \"align\" of \"text\" is unknown; the text begins at the left" },
        Fault { "UnknownWidth", "<text maxwidth='12'>А</text>",
                "the value \"12\" of the attribute \"maxwidth\" of \"text\" is unknown; the whole width is used" },
        Fault {
            "UnknownSize", "<printer op='setfont' size='huge'/>",
            "the value \"huge\" of the attribute \"size\" of \"printer setfont\" is unknown; the normal size is used" },
        Fault { "NoSize", "<printer op='setfont'/>",
                "the value \"\" of the attribute \"size\" of \"printer setfont\" is unknown; the normal size is used" },
        Fault { "UnknownCommand", "<printer op='cut'/>", "the printer command \"cut\" is unknown; nothing is done" },
        Fault { "NoCommand", "<printer/>", "the printer command \"\" is unknown; nothing is done" },
        Fault { "TextBetweenTheElements", "<br/>\tнет <br/>", "text between the elements is not printed: \"нет\"" },
        Fault { "TextInABreak", "<br>нет<text>нет</text></br>", "what stands in \"br\" is not printed" },
        Fault { "TextInACommand", "<printer op='resetfont'>нет</printer>",
                "what stands in \"printer\" is not printed" },
        Fault { "RuleWithoutSymbols", "<text fillsymbol=''/>", "the rule has no symbols; it is an empty line" },
        Fault { "TextOfARule", "<text fillsymbol='-'>нет</text>", "the text of a rule is not printed: \"нет\"" }),
    [](const testing::TestParamInfo<Fault>& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Codes, FaultOfAForm,
    testing::Values(
        Fault { "TooShort", "<printer op='barcode' type='EAN13' barcode='460005100005'/>",
                "\"460005100005\" is no EAN-13 code: it has 12 digits instead of 13; it is printed as text" },
        Fault { "TooLong", "<printer op='barcode' type='EAN13' barcode='46000510000570'/>",
                "\"46000510000570\" is no EAN-13 code: it has 14 digits instead of 13; it is printed as text" },
        Fault { "Empty", "<printer op='barcode' type='EAN13' barcode=''/>",
                "\"\" is no EAN-13 code: it has 0 digits instead of 13; it is printed as text" },
        Fault { "WrongCheckDigit", "<printer op='barcode' type='EAN13' barcode='4600051000058'/>",
                "\"4600051000058\" is no EAN-13 code: it ends in 8, and its check digit is 7; it is printed as text" },
        Fault { "Letter", "<printer op='barcode' type='EAN13' barcode='46000510000S7'/>",
                "\"46000510000S7\" is no EAN-13 code: it has characters that are no digits; it is printed as text" },
        Fault { "DigitsOfAnotherScript", "<printer op='barcode' type='EAN13' barcode='46000510000５7'/>",
                "\"46000510000５7\" is no EAN-13 code: it has characters that are no digits; it is printed as text\n"
                "1: the printer's code page 866 does not have ５ (U+FF15)" },
        Fault { "EmptyQr", "<printer op='barcode' type='QR' barcode=''/>",
                "the QR code is empty; its kind is printed as text" },
        Fault { "UnknownType", "<printer op='barcode' type='CODE39' barcode='A1'/>",
                "codes of the type \"CODE39\" are unknown; the code is printed as text" },
        Fault { "UnknownAttribute", "<printer op='barcode' type='QR' barcode='1' width='2'/>",
                "the attribute \"width\" of \"printer barcode QR\" is unknown" },
        Fault { "WidthOutOfBounds", "<printer op='barcode' type='EAN13' barcode='4600051000057' width='7'/>",
                "the width \"7\" of the code is no number from 2 to 6; 2 is used" },
        Fault { "WidthThatIsNoNumber", "<printer op='barcode' type='EAN13' barcode='4600051000057' width='wide'/>",
                "the width \"wide\" of the code is no number from 2 to 6; 2 is used" },
        Fault { "HeightOutOfBounds", "<printer op='barcode' type='EAN13' barcode='4600051000057' height='256'/>",
                "the height \"256\" of the code is no number from 1 to 255; 162 is used" },
        Fault {
            "UnknownPlaceOfTheDigits",
            "<printer op='barcode' type='EAN13' barcode='4600051000057' showmode='SHOW_UP'/>",
            "the value \"SHOW_UP\" of the attribute \"showmode\" of \"printer barcode EAN13\" is unknown; the digits "
            "stand below the code" }),
    [](const testing::TestParamInfo<Fault>& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Characters, FaultOfAForm,
    testing::Values(
        Fault { "Quotes", "<text>«Ёж» — «ёж»</text>",
                "the printer's code page 866 does not have « (U+00AB), » (U+00BB), — (U+2014)" },
        Fault { "OfARule", "<text fillsymbol='•'/>", "the printer's code page 866 does not have • (U+2022)" },
        Fault { "Emoji", "<text>\U0001F600</text>", "the printer's code page 866 does not have \U0001F600 (U+1F600)" },
        Fault { "ControlCharacter", "<text>А&#9;Б&#x9B;В</text>",
                "the printer's code page 866 does not have U+0009, U+009B" },
        Fault { "ManyOfThem", "<text>àáâãäåæçèéêë</text>",
                "the printer's code page 866 does not have à (U+00E0), á (U+00E1), â (U+00E2), ã (U+00E3), ä "
                "(U+00E4), å (U+00E5), æ (U+00E6), ç (U+00E7), è (U+00E8), é (U+00E9) and 2 more" }),
    [](const testing::TestParamInfo<Fault>& row) { return row.param.name; });

TEST(SlipReader, AcceptsWhatTheCodePageHasAsOneCharacter)
{
    EXPECT_EQ(findingsOf(u"<text>и\u0306 е\u0308 № ° \u00A0 ═╬\n</text>"_s), "");
}

TEST(SlipReader, QuotesALongTextByItsFront)
{
    EXPECT_EQ(findingsOf(u"x"_s.repeated(61)),
              "1: text between the elements is not printed: \"" + std::string(60, 'x') + "…\"\n");
    EXPECT_EQ(findingsOf(u"x"_s.repeated(60)),
              "1: text between the elements is not printed: \"" + std::string(60, 'x') + "\"\n");
}

TEST(SlipReader, QuotesNoControlCharacters)
{
    EXPECT_EQ(
        findingsOf(u"<text align='a&#10;b&#x9B;c'/>"_s),
        "1: the value \"a\uFFFDb\uFFFDc\" of the attribute \"align\" of \"text\" is unknown; the text begins at the "
        "left\n");
}

TEST(SlipReader, PlainTextIsNoFault)
{
    const till::Slip slip = till::readSlip(u"Спасибо\n  за покупку"_s);

    EXPECT_EQ(slip.kind, till::SlipKind::plainText);
    EXPECT_EQ(told(slip.findings), "");
    ASSERT_EQ(slip.blocks.size(), 1);
    EXPECT_EQ(std::get<till::SlipText>(slip.blocks[0]).text.toStdString(), "Спасибо\n  за покупку");
}

TEST(SlipReader, KnowsTheServicesOwnForm)
{
    EXPECT_EQ(till::readSlip(u"<doc><center>А</center></doc>"_s).kind, till::SlipKind::serviceForm);
    EXPECT_EQ(till::readSlip(u"\n <?xml version='1.0'?><!-- --><docs><a><doc/></a></docs>"_s).kind,
              till::SlipKind::plainText); // a declaration behind blanks is no XML
    EXPECT_EQ(till::readSlip(u"<?xml version='1.0'?><!-- --><docs><a><doc/></a></docs>"_s).kind,
              till::SlipKind::serviceForm);
}

struct NoForm {
    const char* name;
    QString text;
    const char* finding; // up to the reason that the XML reader gives
};

class NoPrintForm : public testing::TestWithParam<NoForm> { };

TEST_P(NoPrintForm, IsToldAndPrintedAsItStands)
{
    const till::Slip slip = till::readSlip(GetParam().text);

    EXPECT_EQ(slip.kind, till::SlipKind::plainText);
    ASSERT_EQ(slip.blocks.size(), 1);
    EXPECT_EQ(std::get<till::SlipText>(slip.blocks[0]).text, GetParam().text);
    EXPECT_EQ(told(slip.findings).substr(0, std::string(GetParam().finding).size()), GetParam().finding);
    EXPECT_EQ(slip.findings.size(), 1);
    EXPECT_TRUE(slip.findings.constLast().text.endsWith(u"; it is printed as it stands"))
        << slip.findings.constLast().text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, NoPrintForm,
    testing::Values(NoForm { "AnotherRoot", u"<slip><text>A</text></slip>"_s,
                             "1: this is no print form: its root is \"slip\" instead of \"report\"" },
                    NoForm { "CutShort", u"<report>\n<text>A</text>"_s, "2: this is no print form: " },
                    NoForm { "Crossed", u"<report><text>crossed</report></text>"_s, "1: this is no print form: " },
                    NoForm { "NestedText", u"<report><text><b>nested</b></text></report>"_s,
                             "1: this is no print form: " },
                    NoForm { "TextBehindIt", u"<report></report>\n\nbehind"_s, "3: this is no print form: " },
                    NoForm { "DocumentType", u"<!DOCTYPE report [<!ENTITY a 'b'>]><report><text>&a;</text></report>"_s,
                             "0: this is no print form: it declares a document type" },
                    NoForm { "TooDeep", u"<report>"_s + u"<a>"_s.repeated(64) + u"</a>"_s.repeated(64) + u"</report>"_s,
                             "0: this is no print form: its elements are nested more than 64 deep" },
                    NoForm { "DeepAndNeverClosed", u"<a>"_s.repeated(1'000'000),
                             "0: this is no print form: its elements are nested more than 64 deep" },
                    NoForm { "TooManyAttributes", u"<report "_s + u"a='>' "_s.repeated(65) + u"/>"_s,
                             "0: this is no print form: an element has more than 64 attributes" },
                    NoForm { "PrefixBeforeTheDigitsOfAReference", u"<report><text>&#x0x41;</text></report>"_s,
                             "0: this is no print form: it holds a malformed character reference" },
                    NoForm { "PrefixBeforeTheDigitsOfAReferenceInAValue", u"<report><text font='&#x0XA;'/></report>"_s,
                             "0: this is no print form: it holds a malformed character reference" },
                    NoForm { "TooLong", u"<report>"_s + u" "_s.repeated(4'000'000) + u"</report>"_s,
                             "0: this is no print form: it is longer than 4000000 characters" }),
    [](const testing::TestParamInfo<NoForm>& row) { return row.param.name; });

TEST(SlipReader, BoundsHoldForElementsAndNotForTexts)
{
    EXPECT_EQ(
        findingsOf(u"<text><![CDATA[<!DOCTYPE a>&#x0x41;"_s + u"<a b='"_s.repeated(200) + u"]]></text><!-- <!DOCTYPE "_s
                   + u"<a>"_s.repeated(200) + u" --><?pi <a><!DOCTYPE ?>"_s + u"<br/>"_s.repeated(200)
                   + u"<text fillsymbol='=================================================================='/>"_s),
        "");
}

} // namespace
