#include "tests/printing/picture_compare.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// A comparison that lets everything pass would prove nothing, so it is tried on pictures that are wrong.

namespace {

QImage golden()
{
    const QImage image(QStringLiteral(VANTIRO_PRINTING_FOLDER "/golden/sale-32.png"));
    EXPECT_FALSE(image.isNull());
    return image.convertToFormat(QImage::Format_Grayscale8);
}

/// The golden picture with a change.
template <typename Change>
std::string differenceAfter(const Change& change)
{
    const QImage image = golden();
    QImage changed = image;
    change(changed);
    return differenceOf(image, changed).toStdString();
}

void setShade(QImage& image, int x, int y, int shade)
{
    image.setPixel(x, y, qRgb(shade, shade, shade));
}

TEST(PictureComparison, TakesAPictureForItself)
{
    EXPECT_EQ(differenceAfter([](QImage&) {}), "");
}

TEST(PictureComparison, SeesANewSize)
{
    EXPECT_EQ(differenceAfter([](QImage& image) { image = image.copy(0, 0, 384, 500); }),
              "384 x 500 dots instead of 384 x 1009");
}

TEST(PictureComparison, SeesOneDotOnWhitePaper)
{
    EXPECT_EQ(differenceAfter([](QImage& image) { setShade(image, 380, 5, 0); }), "at 380, 5: shade 0 instead of 255");
}

TEST(PictureComparison, SeesAPaleDotAtTheEdgeOfACode)
{
    EXPECT_EQ(differenceAfter([](QImage& image) { setShade(image, 101, 500, 100); }),
              "at 101, 500: shade 100 instead of 0");
}

TEST(PictureComparison, SeesARowThatIsMissing)
{
    EXPECT_NE(differenceAfter([](QImage& image) {
                  for (int y = 100; y < 120; ++y) {
                      for (int x = 0; x < 384; ++x) {
                          setShade(image, x, y, 255);
                      }
                  }
              }),
              "");
}

TEST(PictureComparison, SeesAShiftByOneDot)
{
    EXPECT_NE(differenceAfter([](QImage& image) { image = image.copy(1, 0, 384, 1009); }), "");
    EXPECT_NE(differenceAfter([](QImage& image) { image = image.copy(0, 1, 384, 1009); }), "");
}

/// Every nth grey pixel a little darker or lighter.
void shade(QImage& image, int nth, int by)
{
    int seen = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int old = qGray(image.pixel(x, y));
            if (old > 64 && old < 190 && seen++ % nth == 0) {
                setShade(image, x, y, old + by);
            }
        }
    }
}

TEST(PictureComparison, LetsTheEdgesOfLettersDiffer)
{
    EXPECT_EQ(differenceAfter([](QImage& image) { shade(image, 1, 30); }), "");
    EXPECT_EQ(differenceAfter([](QImage& image) { shade(image, 1, -30); }), "");
}

TEST(PictureComparison, LetsTheEdgesOfLettersDifferByAQuarterOfTheScaleAtMost)
{
    EXPECT_EQ(differenceAfter([](QImage& image) { shade(image, 10, 64); }), "");
    EXPECT_NE(differenceAfter([](QImage& image) { shade(image, 10, 65); }), "");
}

TEST(PictureComparison, SeesAWholePictureOfGreyDust)
{
    QImage dusty(100, 100, QImage::Format_Grayscale8);
    dusty.fill(Qt::white);
    const QImage clean = dusty;
    for (int x = 0; x < 100; ++x) {
        for (const int y : { 10, 50, 90 }) {
            setShade(dusty, x, y, 200);
        }
    }
    EXPECT_EQ(differenceOf(clean, dusty).toStdString(), "");
    setShade(dusty, 0, 51, 200);
    EXPECT_EQ(differenceOf(clean, dusty).toStdString(), "301 pixels are of another grey");
}

} // namespace
