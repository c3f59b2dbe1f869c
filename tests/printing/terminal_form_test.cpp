#include "tests/printing/printing_support.h"
#include "till/printing/slip_reader.h"
#include "till/printing/terminal_form.h"

#include <QImage>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QStringList linesOf(const QString& content, int columns)
{
    return till::renderForTerminal(till::readSlip(reportOf(content)), columns).output;
}

/// Each line between bars.
std::string shown(const QString& content, int columns)
{
    QString result;
    for (const QString& line : linesOf(content, columns)) {
        result += u'|' + line + u"|\n"_s;
    }
    return result.toStdString();
}

TEST(TerminalForm, SetsTextsByTheirAlignment)
{
    EXPECT_EQ(
        shown(u"<text align='left'>лево</text><text align='center'>середина</text><text align='right'>право</text>"
              "<text> как есть</text>"_s,
              32),
        "|лево|\n|            середина|\n|                           право|\n| как есть|\n");
}

TEST(TerminalForm, SpacesEnlargedTextOut)
{
    EXPECT_EQ(shown(u"<printer op='setfont' size='enlarge'/><text align='left'>Итого 1.50</text>"
                    "<text align='right'>Да</text><text align='center'>Да</text>"_s,
                    32),
              "|И т о г о   1 . 5 0|\n|                             Д а|\n|              Д а|\n");
}

TEST(TerminalForm, BreaksEnlargedTextWherePaperDoes)
{
    EXPECT_EQ(shown(u"<printer op='setfont' size='enlarge'/><text>Баллы начислены на карту</text>"_s, 32),
              "|Б а л л ы   н а ч и с л е н ы|\n|н а   к а р т у|\n");
}

TEST(TerminalForm, KeepsCharactersTogetherWhenItSpacesThemOut)
{
    EXPECT_EQ(shown(u"<printer op='setfont' size='enlarge'/><text>\U0001F600x\u0323y</text>"_s, 32),
              "|\U0001F600 x\u0323 y|\n");
}

TEST(TerminalForm, ShowsSmallerAndNormalTextAlike)
{
    EXPECT_EQ(shown(u"<printer op='setfont' size='smaller'/><text>мелко</text><printer op='setfont' size='normal'/>"
                    "<text>Обычно</text>"_s,
                    32),
              "|мелко|\n|Обычно|\n");
}

TEST(TerminalForm, FillsRulesAndKeepsBreaks)
{
    EXPECT_EQ(shown(u"<text fillsymbol='=-'/><br/><text fillsymbol='─'/>"_s, 32),
              "|=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-=-|\n||\n|────────────────────────────────|\n");
}

TEST(TerminalForm, HoldsNoControlCharacters)
{
    EXPECT_EQ(till::renderForTerminal(till::readSlip(u"a\u001B[31mb\u009Bc\u007Fd\te"_s), 42)
                  .output.join(u'\n')
                  .toStdString(),
              "a\uFFFD[31mb\uFFFDc\uFFFDd e");
    EXPECT_EQ(shown(u"<printer op='barcode' type='X' barcode='a&#x9B;b'/>"_s, 32), "|             X a\uFFFDb|\n");
}

TEST(TerminalForm, DrawsAnEan13WhereItFits)
{
    const QString code = u"<printer op='barcode' type='EAN13' showmode='SHOW_DOWN' barcode='5901234123457'/>"_s;

    // From the code's own tables: the first digit 5 sets the second to seventh in L G G L L G. Two bars to a character.
    const std::string bars = "|▌▌ ▌█▐ █▌█ █ ▌▐▌██▐ █▌▌▌▌█ █▐▌█ ▌ ▐▐▐█ ▌▐█▐ ▐ ▌▌|\n";
    EXPECT_EQ(shown(code, 48), bars + bars + bars + bars + "|                 5901234123457|\n");
    EXPECT_EQ(shown(code, 42), "|           EAN13 5901234123457|\n");
    EXPECT_EQ(shown(code, 32), "|      EAN13 5901234123457|\n");
}

/// The block characters as a picture: half a line is a module, and the terminal around it is white.
QImage pictureOf(const QStringList& lines, int columns)
{
    constexpr int module = 4;
    constexpr int margin = 4 * module;
    QImage image(columns * module + 2 * margin, static_cast<int>(lines.size()) * 2 * module, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    for (int y = 0; y < image.height(); ++y) {
        const QString& line = lines[y / module / 2];
        const bool isUpper = y / module % 2 == 0;
        for (int x = 0; x < columns * module; ++x) {
            const QChar c = line.size() > x / module ? line[x / module] : QChar(u' ');
            if (c == u'█' || c == (isUpper ? u'▀' : u'▄')) {
                image.setPixel(margin + x, y, qRgb(0, 0, 0));
            }
        }
    }
    return image;
}

class QrOnTheTerminal : public testing::TestWithParam<int> { };

TEST_P(QrOnTheTerminal, CanBeReadFromTheScreen)
{
    const PrintingTill till;
    const QString picture = till.path(u"screen.png"_s);
    const QStringList lines = linesOf(
        u"<text>Чек 1042</text><printer op='barcode' type='QR' barcode='https://example.org/1042'/>"
        "<text>Спасибо</text>"_s,
        GetParam());

    ASSERT_TRUE(pictureOf(lines, GetParam()).save(picture));
    EXPECT_EQ(codesIn(picture), "QR-Code:https://example.org/1042");
    EXPECT_EQ(lines.constFirst().toStdString(), "Чек 1042");
    EXPECT_EQ(lines.constLast().toStdString(), "Спасибо");
}

INSTANTIATE_TEST_SUITE_P(Columns, QrOnTheTerminal, testing::Values(32, 42, 48),
                         [](const testing::TestParamInfo<int>& row) { return std::to_string(row.param); });

TEST(TerminalForm, ShowsAQrCodeThatIsTooWideAsText)
{
    const QString code = u"<printer op='barcode' type='QR' barcode='%1'/>"_s;

    EXPECT_EQ(linesOf(code.arg(u"x"_s.repeated(42)), 32).size(), 17); // 29 modules, and a line above and below
    EXPECT_EQ(shown(code.arg(u"x"_s.repeated(43)), 32), // 33 modules
              "|               QR|\n"
              "|xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx|\n"
              "|          xxxxxxxxxxx|\n");
}

TEST(TerminalForm, ShowsCodesThatCannotBeDrawnAsText)
{
    EXPECT_EQ(shown(u"<printer op='barcode' type='EAN13' barcode='12'/><printer op='barcode' type='QR' barcode=''/>"
                    "<printer op='barcode' type='CODE39' barcode='A1'/>"_s,
                    32),
              "|            EAN13 12|\n|               QR|\n|           CODE39 A1|\n");
}

} // namespace
