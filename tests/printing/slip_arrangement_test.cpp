#include "tests/printing/printing_support.h"
#include "till/printing/escpos_form.h"
#include "till/printing/slip_reader.h"
#include "till/printing/terminal_form.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

std::string foundOnTheTerminal(const QString& content, int columns)
{
    return told(till::renderForTerminal(till::readSlip(reportOf(content)), columns).findings);
}

std::string foundOnPaper(const QString& content, int columns)
{
    return told(till::renderForPrinter(till::readSlip(reportOf(content)), columns).findings);
}

TEST(OverlongLine, IsToldWithThePlaceOfItsBreak)
{
    EXPECT_EQ(foundOnTheTerminal(u"<text>Баллы начислены на карту покупателя</text>"_s, 32),
              "1: a line of 35 characters where 32 fit is broken into 2: \"покупателя\" begins the second\n");
}

TEST(OverlongLine, ThatJustFitsIsNoFault)
{
    EXPECT_EQ(foundOnTheTerminal(u"<text>12345678901234567890123456789012</text>"_s, 32), "");
    EXPECT_EQ(foundOnTheTerminal(u"<text>123456789012345678901234567890123</text>"_s, 32),
              "1: a line of 33 characters where 32 fit is broken into 2: \"3\" begins the second\n");
}

TEST(OverlongLine, OfATextWithLineFeedsIsToldForEachOfThem)
{
    EXPECT_EQ(
        foundOnTheTerminal(u"<text>%1\nкоротко\n%2</text>"_s.arg(u"a"_s.repeated(33), u"b"_s.repeated(65)), 32),
        "1: a line of 33 characters where 32 fit is broken into 2: \"a\" begins the second\n"
        "1: a line of 65 characters where 32 fit is broken into 3: \"bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb\" begins the "
        "second\n");
}

TEST(OverlongLine, OfPlainTextIsTold)
{
    EXPECT_EQ(told(till::renderForTerminal(till::readSlip(u"x"_s.repeated(43)), 42).findings),
              "1: a line of 43 characters where 42 fit is broken into 2: \"x\" begins the second\n");
}

struct Room {
    const char* size;
    int columns;
    int onTerminal; // characters that fit
    int onPaper;
};

class RoomFor : public testing::TestWithParam<Room> { };

TEST_P(RoomFor, IsAsThePrintersFontHasIt)
{
    const Room& room = GetParam();
    const auto text = [&room](int characters) {
        return u"<printer op='setfont' size='%1'/><text>%2</text>"_s.arg(QLatin1String(room.size),
                                                                         u"x"_s.repeated(characters));
    };
    EXPECT_EQ(foundOnTheTerminal(text(room.onTerminal), room.columns), "");
    EXPECT_NE(foundOnTheTerminal(text(room.onTerminal + 1), room.columns), "");
    EXPECT_EQ(foundOnPaper(text(room.onPaper), room.columns), "");
    EXPECT_NE(foundOnPaper(text(room.onPaper + 1), room.columns), "");
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, RoomFor,
    testing::Values(Room { "smaller", 32, 32, 42 }, Room { "smaller", 42, 42, 56 }, Room { "smaller", 48, 48, 64 },
                    Room { "normal", 32, 32, 32 }, Room { "normal", 42, 42, 42 }, Room { "normal", 48, 48, 48 },
                    Room { "enlarge", 32, 16, 16 }, Room { "enlarge", 42, 21, 21 }, Room { "enlarge", 48, 24, 24 }),
    [](const testing::TestParamInfo<Room>& row) { return row.param.size + std::to_string(row.param.columns); });

TEST(WideCode, IsMadeNarrowerAndToldOnPaperThatIsTooNarrow)
{
    const QString code = u"<printer op='barcode' type='EAN13' barcode='4600051000057' width='%1'/>"_s;

    EXPECT_EQ(foundOnPaper(code.arg(3), 32), ""); // 113 modules of 3 dots on 384 dots
    EXPECT_EQ(foundOnPaper(code.arg(4), 32), "1: the code does not fit the paper with bars of 4 dots; they are of 3\n");
    EXPECT_EQ(foundOnPaper(code.arg(5), 48), "");
    EXPECT_EQ(foundOnPaper(code.arg(6), 48), "1: the code does not fit the paper with bars of 6 dots; they are of 5\n");
}

TEST(LongQrCode, IsToldAndPrintedAsText)
{
    const QString code = u"<printer op='barcode' type='QR' barcode='%1'/>"_s;

    EXPECT_EQ(foundOnPaper(code.arg(u"ab"_s.repeated(1165) + u"a"_s), 48), ""); // 2,331 bytes: the most
    const std::string found = foundOnPaper(code.arg(u"ab"_s.repeated(1166)), 48);
    EXPECT_EQ(found.substr(0, found.find('\n') + 1),
              "1: the text of 2332 bytes is too long for a QR code; it is printed as text\n");
}

TEST(Findings, StandInTheOrderOfTheSlip)
{
    const QString form = u"<report>\n<text>%1</text>\n<image/>\n<text>•</text>\n</report>"_s.arg(u"x"_s.repeated(43));

    EXPECT_EQ(told(till::renderForTerminal(till::readSlip(form), 42).findings),
              "2: a line of 43 characters where 42 fit is broken into 2: \"x\" begins the second\n"
              "3: the element \"image\" is unknown; it is not printed, with all that it holds\n"
              "4: the printer's code page 866 does not have • (U+2022)\n");
}

} // namespace
