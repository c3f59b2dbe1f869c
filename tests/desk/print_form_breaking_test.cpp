#include "tests/desk/print_form_support.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

std::string narrow(const QString& text, const QString& align = u"left"_s)
{
    return laidOut(textLine(align, text), 10);
}

TEST(LongText, IsBrokenAtTheLastBlankThatFits)
{
    EXPECT_EQ(narrow(u"Спасибо за покупку"_s), "|Спасибо за|\n|покупку|\n");
    EXPECT_EQ(narrow(u"один два три"_s), "|один два|\n|три|\n");
}

TEST(LongText, BlankBehindAFullLineIsTheBreak)
{
    EXPECT_EQ(narrow(u"1234567890 1234567890 1"_s), "|1234567890|\n|1234567890|\n|1|\n");
}

TEST(LongText, EachOfItsLinesIsAlignedByItself)
{
    EXPECT_EQ(narrow(u"Спасибо за покупку"_s, u"right"_s), "|Спасибо за|\n|   покупку|\n");
    EXPECT_EQ(narrow(u"Спасибо за покупку"_s, u"center"_s), "|Спасибо за|\n| покупку|\n");
}

TEST(LongText, WordLongerThanThePaperIsBrokenAnywhere)
{
    EXPECT_EQ(narrow(u"12345678901234567890123"_s), "|1234567890|\n|1234567890|\n|123|\n");
}

TEST(LongText, WordLongerThanThePaperBeginsALine)
{
    EXPECT_EQ(narrow(u"код 12345678901234 да"_s), "|код|\n|1234567890|\n|1234 да|\n");
}

TEST(LongText, OnlyBlankAtTheFrontBreaksNothing)
{
    EXPECT_EQ(narrow(u" 12345678901"_s), "| 123456789|\n|01|\n");
}

TEST(LongText, FurtherBlanksAtABreakStay)
{
    EXPECT_EQ(narrow(u"12345678  1234567"_s), "|12345678 |\n|1234567|\n");
    EXPECT_EQ(narrow(u"1234567890  12345"_s), "|1234567890|\n| 12345|\n");
}

TEST(LongText, BlankThatDoesNotFitIsNoLine)
{
    EXPECT_EQ(narrow(u"1234567890 "_s), "|1234567890|\n");
    EXPECT_EQ(narrow(u"123456789 "_s), "|123456789 |\n");
}

TEST(LongText, LineFeedsBreakIt)
{
    EXPECT_EQ(narrow(u"один\nдва\n\nтри\n"_s), "|один|\n|два|\n||\n|три|\n||\n");
    EXPECT_EQ(narrow(u"один\nдва"_s, u"right"_s), "|      один|\n|       два|\n");
}

TEST(LongText, CarriageReturnsBreakItAndTakeNoRoom)
{
    EXPECT_EQ(narrow(u"один\r\nдва"_s, u"right"_s), "|      один|\n|       два|\n");
    EXPECT_EQ(narrow(u"один&#13;&#10;два"_s, u"right"_s), "|      один|\n|       два|\n");
    EXPECT_EQ(narrow(u"1234567890&#13;\nдва&#13;три"_s), "|1234567890|\n|два|\n|три|\n");
}

TEST(LongText, IsBrokenAtNoOtherBlank)
{
    EXPECT_EQ(narrow(u"12345&#160;678901"_s), "|12345\u00A06789|\n|01|\n");
    EXPECT_EQ(narrow(u"12345&#9;678901"_s), "|12345\t6789|\n|01|\n");
}

// A column is a UTF-16 code unit: what Russian slips are made of takes one each. Wider and narrower characters shift
// the line, but none is ever parted.

TEST(WidthOfText, IsOneColumnForEachRussianLetter)
{
    EXPECT_EQ(narrow(u"ЁжикёЩъЫьЭюя"_s), "|ЁжикёЩъЫьЭ|\n|юя|\n");
}

TEST(WidthOfText, IsTwoColumnsForAnEmoji)
{
    EXPECT_EQ(narrow(u"12345678\U0001F600"_s), "|12345678\U0001F600|\n");
    EXPECT_EQ(narrow(u"\U0001F600"_s, u"right"_s), "|        \U0001F600|\n");
}

TEST(WidthOfText, EmojiIsNeverParted)
{
    EXPECT_EQ(narrow(u"123456789\U0001F600\U0001F601"_s), "|123456789|\n|\U0001F600\U0001F601|\n");
    EXPECT_EQ(narrow(u"1234567\U0001F44D\U0001F3FB"_s), "|1234567|\n|\U0001F44D\U0001F3FB|\n");
}

TEST(WidthOfText, IsOneColumnMoreForACombiningMark)
{
    EXPECT_EQ(narrow(u"и\u0306"_s, u"right"_s), "|        и\u0306|\n");
}

TEST(WidthOfText, CombiningMarkStaysWithItsLetter)
{
    EXPECT_EQ(narrow(u"123456789и\u0306х"_s), "|123456789|\n|и\u0306х|\n");
    EXPECT_EQ(narrow(u"12345678и\u0306х"_s), "|12345678и\u0306|\n|х|\n");
}

TEST(WidthOfText, CharacterWiderThanThePaperStandsAlone)
{
    EXPECT_EQ(laidOut(textLine(u"left"_s, u"a\U0001F600b"_s), 1), "|a|\n|\U0001F600|\n|b|\n");
}

TEST(WidthOfPaper, IsAtLeastOneColumn)
{
    for (const int columns : { 1, 0, -1, -42 }) {
        EXPECT_EQ(laidOut(u"<text>ab</text><text fillsymbol='-'/>"_s, columns), "|a|\n|b|\n|-|\n") << columns;
    }
}

struct Paper {
    int columns = 0;
    const char* text;
    const char* right;
    const char* centred;
    const char* rule;
};

class PaperOf : public testing::TestWithParam<Paper> { };

TEST_P(PaperOf, IsFilledToItsWidth)
{
    const Paper& paper = GetParam();
    EXPECT_EQ(laidOut(textLine(u"left"_s, u"Баллы начислены на карту покупателя и доступны завтра"_s), paper.columns),
              paper.text);
    EXPECT_EQ(laidOut(textLine(u"right"_s, u"120.00"_s), paper.columns), paper.right);
    EXPECT_EQ(laidOut(textLine(u"center"_s, u"Спасибо"_s), paper.columns), paper.centred);
    EXPECT_EQ(laidOut(u"<text fillsymbol='-=' maxwidth='all'/>"_s, paper.columns), paper.rule);
}

INSTANTIATE_TEST_SUITE_P(
    Columns, PaperOf,
    testing::Values(Paper { 32, "|Баллы начислены на карту|\n|покупателя и доступны завтра|\n",
                            "|                          120.00|\n", "|            Спасибо|\n",
                            "|-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=|\n" },
                    Paper { 42, "|Баллы начислены на карту покупателя и|\n|доступны завтра|\n",
                            "|                                    120.00|\n", "|                 Спасибо|\n",
                            "|-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=|\n" },
                    Paper { 48, "|Баллы начислены на карту покупателя и доступны|\n|завтра|\n",
                            "|                                          120.00|\n", "|                    Спасибо|\n",
                            "|-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=|\n" }),
    [](const testing::TestParamInfo<Paper>& row) { return std::to_string(row.param.columns); });

TEST(NoPrintForm, IsShownLineByLine)
{
    EXPECT_EQ(barred(till::layOut(u"Спасибо\n  за покупку, которая длиннее бумаги"_s, 10)),
              "|Спасибо|\n|  за покупку, которая длиннее бумаги|\n");
}

TEST(NoPrintForm, ShowsNoCarriageReturns)
{
    EXPECT_EQ(barred(till::layOut(u"один\r\nдва\rтри\r\n"_s, 10)), "|один|\n|два|\n|три|\n||\n");
}

TEST(NoPrintForm, EmptyTextIsOneEmptyLine)
{
    EXPECT_EQ(barred(till::layOut(QString(), 10)), "||\n");
}

class NoPrintFormOf : public testing::TestWithParam<const char*> { };

TEST_P(NoPrintFormOf, IsShownAsItStands)
{
    EXPECT_EQ(barred(till::layOut(QString::fromUtf8(GetParam()), 10)), std::string("|") + GetParam() + "|\n");
}

INSTANTIATE_TEST_SUITE_P(Kinds, NoPrintFormOf,
                         testing::Values("<doc><text>another root</text></doc>", "<Report><text>A</text></Report>",
                                         "<report><text>cut short</text>", "<report><text>crossed</report></text>",
                                         "<report><text><b>nested</b></text></report>",
                                         "<report><text>A</text></report> and text behind it",
                                         "<report><text>A</text></report><report><text>B</text></report>",
                                         "text before <report><text>A</text></report>",
                                         "<report><text>&unknown;</text></report>", "<", " "));

TEST(LongText, OfAMegabyteIsBroken)
{
    const QStringList lines = till::layOut(u"<report><text>"_s + QString(1'000'000, u'x') + u"</text></report>"_s, 42);

    EXPECT_EQ(lines.size(), 23810); // 23,809 full ones, and 22 letters
    EXPECT_EQ(lines.constLast().toStdString(), "xxxxxxxxxxxxxxxxxxxxxx");
}

} // namespace
