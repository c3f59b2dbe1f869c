#include "tests/printing/picture_compare.h"
#include "tests/printing/printing_support.h"
#include "till/printing/picture_form.h"
#include "till/printing/slip_reader.h"

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

// Each golden picture was looked at before it was kept. To make them anew after a change that is wanted, run
// `printing_probe gui slip forms/NAME.xml png COLUMNS golden/NAME-COLUMNS.png`, and look at each again.

namespace {

/// The picture of a form, drawn by a till of its own.
class Picture {
public:
    Picture(const QString& form, int columns)
    {
        file = till.path(u"slip.png"_s);
        const Ended ended = till.slip(form, u"png"_s, columns, file);
        EXPECT_TRUE(ended.status == 0 || ended.status == 1) << ended.errors.toStdString();
    }

    [[nodiscard]] QImage image() const
    {
        return QImage(file).convertToFormat(QImage::Format_Grayscale8);
    }

    [[nodiscard]] std::string codes() const
    {
        return codesIn(file);
    }

private:
    PrintingTill till;
    QString file;
};

Picture pictureOf(const QString& content, int columns)
{
    const PrintingTill till;
    return { till.write(u"form.xml"_s, reportOf(content).toUtf8()), columns };
}

struct Golden {
    const char* form;
    int columns;
    const char* codes; // as another reader finds them
};

class GoldenPicture : public testing::TestWithParam<Golden> { };

TEST_P(GoldenPicture, IsDrawnAgain)
{
    const Golden& golden = GetParam();
    const QString name = QLatin1String(golden.form);
    const Picture picture(sampleForm(name + u".xml"_s), golden.columns);
    const QImage expected(
        QStringLiteral(VANTIRO_PRINTING_FOLDER "/golden/%1-%2.png").arg(name, QString::number(golden.columns)));

    EXPECT_EQ(differenceOf(expected, picture.image()).toStdString(), "");
    EXPECT_EQ(picture.codes(), golden.codes);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, GoldenPicture,
    testing::Values(Golden { "sale", 32, "EAN-13:2000000010427\nQR-Code:https://example.org/bonus/1042" },
                    Golden { "sale", 42, "EAN-13:2000000010427\nQR-Code:https://example.org/bonus/1042" },
                    Golden { "sale", 48, "EAN-13:2000000010427\nQR-Code:https://example.org/bonus/1042" },
                    Golden { "codes", 32, "EAN-13:4600051000057\nEAN-13:5901234123457\nQR-Code:Баллы: 59,98" },
                    Golden { "codes", 48, "EAN-13:4600051000057\nEAN-13:5901234123457\nQR-Code:Баллы: 59,98" },
                    Golden { "faulty", 32, "EAN-13:4600051000057" }, Golden { "faulty", 48, "EAN-13:4600051000057" }),
    [](const testing::TestParamInfo<Golden>& row) { return row.param.form + std::to_string(row.param.columns); });

struct PaperSize {
    int columns;
    int dots;
};

class PictureOfPaper : public testing::TestWithParam<PaperSize> { };

TEST_P(PictureOfPaper, IsAsWideAsThePaper)
{
    const QImage image = pictureOf(u"<text>А</text>"_s, GetParam().columns).image();

    EXPECT_EQ(image.width(), GetParam().dots);
    EXPECT_EQ(image.dotsPerMeterX(), 8000); // 203 dots per inch
}

INSTANTIATE_TEST_SUITE_P(Columns, PictureOfPaper,
                         testing::Values(PaperSize { 32, 384 }, PaperSize { 42, 576 }, PaperSize { 48, 576 }),
                         [](const testing::TestParamInfo<PaperSize>& row) {
                             return std::to_string(row.param.columns);
                         });

/// The bars of the row of dots, as lengths of white and black in turn.
std::vector<int> runsOf(const QImage& image, int y)
{
    std::vector<int> runs;
    int before = 255;
    runs.push_back(0);
    for (int x = 0; x < image.width(); ++x) {
        const int shade = qGray(image.pixel(x, y));
        EXPECT_TRUE(shade == 0 || shade == 255) << x;
        if (shade != before) {
            runs.push_back(0);
            before = shade;
        }
        ++runs.back();
    }
    return runs;
}

TEST(PictureOfACode, HasBarsOfWholeModulesAndItsQuietZones)
{
    const QImage image
        = pictureOf(u"<printer op='barcode' type='EAN13' barcode='5901234123457' width='2' height='60'/>"_s, 32)
              .image();

    // 384 dots: 11 + 95 + 7 modules of 2 dots, and the rest at both sides. The bars are from the code's own tables.
    EXPECT_THAT(runsOf(image, 60),
                testing::ElementsAreArray({ 101, 2, 2, 2, 6, 2, 2, 4, 2, 2, 4, 6, 2, 4, 4, 4, 4, 2, 4, 4, 2,
                                            8,   2, 2, 4, 6, 2, 2, 2, 2, 2, 2, 2, 4, 4, 4, 2, 4, 2, 4, 4, 2,
                                            8,   2, 2, 2, 2, 6, 4, 2, 4, 6, 2, 2, 6, 2, 4, 2, 2, 2, 93 }));
}

TEST(PictureOfACode, IsAsHighAsTheFormSays)
{
    const QImage image
        = pictureOf(u"<printer op='barcode' type='EAN13' barcode='5901234123457' width='2' height='60'/>"_s, 32)
              .image();
    int black = 0; // of the fourth bar, which is no guard
    for (int y = 0; y < image.height(); ++y) {
        black += qGray(image.pixel(113, y)) == 0 ? 1 : 0;
    }
    EXPECT_EQ(black, 60);
}

TEST(PictureOfACode, CanBeReadAtEveryWidth)
{
    for (int width = 2; width <= 5; ++width) {
        EXPECT_EQ(pictureOf(u"<printer op='barcode' type='EAN13' barcode='4600051000057' width='%1' "
                            "height='80'/>"_s.arg(width),
                            48)
                      .codes(),
                  "EAN-13:4600051000057")
            << width;
    }
}

TEST(PictureOfACode, OfALongTextCanBeReadOnNarrowPaper)
{
    const QString text = u"https://example.org/"_s + u"abcdefghij"_s.repeated(100);

    EXPECT_EQ(pictureOf(u"<printer op='barcode' type='QR' barcode='%1'/>"_s.arg(text), 32).codes(),
              "QR-Code:" + text.toStdString());
}

TEST(PictureForm, OfAnEmptySlipIsBlankPaper)
{
    const QImage image = pictureOf(QString(), 32).image();

    QImage blank(384, 48, QImage::Format_Grayscale8);
    blank.fill(Qt::white);
    EXPECT_EQ(differenceOf(blank, image).toStdString(), "");
}

TEST(PictureForm, NeedsAnApplicationWithFonts)
{
    // The tests' own application has none.
    try {
        static_cast<void>(till::renderAsPicture(till::readSlip(u"А"_s), 42));
        FAIL() << "drawn without fonts";
    } catch (const till::PictureError& error) {
        EXPECT_STREQ(
            error.what(),
            "pictures need a QGuiApplication in this process; make one with QT_QPA_PLATFORM=offscreen, or print as "
            "text");
    }
}

TEST(PictureForm, TellsOfTheMissingFont)
{
    const PrintingTill till;
    const QString settings = till.write(u"fonts.conf"_s, "<?xml version=\"1.0\"?><fontconfig></fontconfig>");
    const Ended ended
        = till.run({ u"gui"_s, u"slip"_s, sampleForm(u"sale.xml"_s), u"png"_s, u"42"_s, till.path(u"a.png"_s) },
                   { u"FONTCONFIG_FILE="_s + settings });

    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(ended.errors.toStdString(),
              "error: the font DejaVu Sans Mono is missing; install the package fonts-dejavu-core\n");
    EXPECT_FALSE(QFile::exists(till.path(u"a.png"_s)));
}

TEST(PictureForm, OfAnEndlessSlipIsRefused)
{
    const PrintingTill till;
    const QString longest = till.write(u"longest"_s, QByteArray(1663, '\n')); // 1,664 lines of 24 dots, and the margins
    const QString longer = till.write(u"longer"_s, QByteArray(1664, '\n'));

    EXPECT_EQ(till.slip(longest, u"png"_s, 32, till.path(u"a.png"_s)).status, 0);
    const Ended ended = till.slip(longer, u"png"_s, 32, till.path(u"b.png"_s));
    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(ended.errors.toStdString(), "error: the slip is longer than five metres of paper; print it as text\n");
}

} // namespace
