#include "bonus/vantiro_bonus_interface.h"
#include "tests/desk/print_form_support.h"

#include <QDomDocument>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// On paper of ten columns.
std::string narrow(const QString& content)
{
    return laidOut(content, 10);
}

TEST(PrintForm, LeftTextBeginsTheLine)
{
    EXPECT_EQ(narrow(textLine(u"left"_s, u"Чек"_s)), "|Чек|\n");
}

TEST(PrintForm, RightTextEndsTheLine)
{
    EXPECT_EQ(narrow(textLine(u"right"_s, u"Чек"_s)), "|       Чек|\n");
}

TEST(PrintForm, CentredTextStandsInTheMiddleAndALittleLeftOfIt)
{
    EXPECT_EQ(narrow(textLine(u"center"_s, u"Чеки"_s)), "|   Чеки|\n");
    EXPECT_EQ(narrow(textLine(u"center"_s, u"Чек"_s)), "|   Чек|\n");
}

TEST(PrintForm, TextWithoutAlignmentStandsAsItIs)
{
    EXPECT_EQ(narrow(u"<text>  Чек </text>"_s), "|  Чек |\n");
}

TEST(PrintForm, UnknownAlignmentIsNone)
{
    EXPECT_EQ(narrow(textLine(u"justify"_s, u"Чек"_s)), "|Чек|\n");
    EXPECT_EQ(narrow(textLine(u"RIGHT"_s, u"Чек"_s)), "|Чек|\n");
}

TEST(PrintForm, TextOfTheWholeWidthNeedsNoBlanks)
{
    EXPECT_EQ(narrow(textLine(u"left"_s, u"1234567890"_s)), "|1234567890|\n");
    EXPECT_EQ(narrow(textLine(u"center"_s, u"1234567890"_s)), "|1234567890|\n");
    EXPECT_EQ(narrow(textLine(u"right"_s, u"1234567890"_s)), "|1234567890|\n");
}

TEST(PrintForm, EmptyTextIsAnEmptyLine)
{
    EXPECT_EQ(narrow(u"<text align='left' maxwidth='all'/>"_s), "||\n");
    EXPECT_EQ(narrow(u"<text/><text></text>"_s), "||\n||\n");
}

TEST(PrintForm, FontsChangeNoLine)
{
    EXPECT_EQ(narrow(u"<printer op='setfont' size='enlarge'/><text align='left' maxwidth='all'>А</text>"
                     "<printer op='resetfont'/><text>Б</text>"_s),
              "|А|\n|Б|\n");
}

TEST(PrintForm, RuleFillsTheLine)
{
    EXPECT_EQ(narrow(u"<text fillsymbol='-' maxwidth='all'/>"_s), "|----------|\n");
    EXPECT_EQ(narrow(u"<text fillsymbol=' ' maxwidth='all'/>"_s), "|          |\n");
}

TEST(PrintForm, RuleOfSeveralSymbolsIsCutAtThePaper)
{
    EXPECT_EQ(narrow(u"<text fillsymbol='=-~' maxwidth='all'/>"_s), "|=-~=-~=-~=|\n");
    EXPECT_EQ(narrow(u"<text fillsymbol='12345678901234' maxwidth='all'/>"_s), "|1234567890|\n");
}

TEST(PrintForm, RuleIsNotCutWithinACharacter)
{
    EXPECT_EQ(narrow(u"<text fillsymbol='-\U0001F600' maxwidth='all'/>"_s), "|-\U0001F600-\U0001F600-\U0001F600-|\n");
}

TEST(PrintForm, RuleWithoutSymbolsIsAnEmptyLine)
{
    EXPECT_EQ(narrow(u"<text fillsymbol='' maxwidth='all'/>"_s), "||\n");
}

TEST(PrintForm, RuleShowsNoTextOfItsOwn)
{
    EXPECT_EQ(narrow(u"<text fillsymbol='-' align='right' maxwidth='all'>Чек</text>"_s), "|----------|\n");
}

TEST(PrintForm, BreakIsAnEmptyLine)
{
    EXPECT_EQ(narrow(u"<text>А</text><br/><br></br><text>Б</text>"_s), "|А|\n||\n||\n|Б|\n");
}

TEST(PrintForm, BarcodeIsShownByItsKindAndDigits)
{
    EXPECT_EQ(laidOut(u"<printer op='barcode' type='EAN13' showmode='SHOW_DOWN' barcode='4600051000057' width='2' "
                      "height='255'/><br/>"_s,
                      32),
              "|      EAN13 4600051000057|\n||\n");
}

TEST(PrintForm, QrCodeIsShownByItsKindAndContent)
{
    EXPECT_EQ(laidOut(u"<printer op='barcode' type='QR' barcode='vantiro 1'/><br/>"_s, 32),
              "|          QR vantiro 1|\n||\n");
}

TEST(PrintForm, CodeLongerThanThePaperIsBroken)
{
    EXPECT_EQ(laidOut(u"<printer op='barcode' type='QR' barcode='https://example.org/0123456789/0123456789/x'/>"_s, 32),
              "|               QR|\n"
              "|https://example.org/0123456789/0|\n"
              "|          123456789/x|\n");
}

TEST(PrintForm, PrinterCommandsThatItDoesNotKnowShowNothing)
{
    EXPECT_EQ(narrow(u"<printer op='cut'/><printer/><text>А</text>"_s), "|А|\n");
}

TEST(PrintForm, ElementsThatItDoesNotKnowAreSkippedWithAllThatTheyHold)
{
    EXPECT_EQ(narrow(u"<image><text>нет</text></image><Text>нет</Text><text>А</text><br><text>нет</text></br>"_s),
              "|А|\n||\n");
}

TEST(PrintForm, TextBetweenElementsIsNotPrinted)
{
    EXPECT_EQ(narrow(u"нет\n <text>А</text>\n нет <!-- нет -->"_s), "|А|\n");
}

TEST(PrintForm, EntitiesAndSectionsAreText)
{
    EXPECT_EQ(narrow(u"<text>&lt;&amp;&gt; &#1041;</text><text><![CDATA[<b>&amp;]]></text>"_s),
              "|<&> Б|\n|<b>&amp;|\n");
}

TEST(PrintForm, WithoutLinesIsAnEmptySlip)
{
    EXPECT_EQ(narrow(QString()), "");
    EXPECT_EQ(barred(till::layOut(u"<report/>"_s, 10)), "");
}

TEST(PrintForm, MayBeginWithADeclaration)
{
    EXPECT_EQ(barred(till::layOut(
                  u"<?xml version='1.0' encoding='windows-1251'?>\n<report><text>Ёж</text></report>\n"_s, 10)),
              "|Ёж|\n");
}

TEST(PrintForm, IsWhatTheServersSlipHasBecome)
{
    QDomDocument source;
    ASSERT_TRUE(source.setContent(u"<doc><center>Магазин<f2>ВАНТИРО</f2></center><line symbols='='/>"
                                  "<pair left='Баллы' right='120'/><line/><right><f1>Итого</f1></right><br/>"
                                  "<barcode>4600051000057</barcode><qrcode>1042</qrcode><f0>мелко</f0>"
                                  "<noformat>как есть</noformat></doc>"_s));
    const QString form = VantiroBonusInterface().transformReport(source).toString(1);

    EXPECT_EQ(barred(till::layOut(form, 20)),
              "|      Магазин|\n"
              "|      ВАНТИРО|\n"
              "|====================|\n"
              "|     Баллы 120|\n"
              "|                    |\n"
              "|               Итого|\n"
              "||\n"
              "|EAN13 4600051000057|\n"
              "||\n"
              "|      QR 1042|\n"
              "||\n"
              "|мелко|\n"
              "|как есть|\n");
}

} // namespace
