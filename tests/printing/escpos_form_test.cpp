#include "tests/printing/printing_support.h"
#include "till/printing/escpos_form.h"
#include "till/printing/slip_reader.h"

#include <QTextCodec>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// What the printer gets between initialisation and cut, in hexadecimal. Both are checked.
std::string bytesOf(const QString& text, int columns = 32)
{
    const QByteArray bytes = till::renderForPrinter(till::readSlip(text), columns).output;
    const QByteArray begin = QByteArray::fromHex("1b40 1b7411"); // initialise, code page 17
    const QByteArray end = QByteArray::fromHex("1b6403 1d564200"); // feed three lines, feed to the knife and cut
    EXPECT_TRUE(bytes.startsWith(begin)) << bytes.toHex(' ').toStdString();
    EXPECT_TRUE(bytes.endsWith(end)) << bytes.toHex(' ').toStdString();
    return bytes.sliced(begin.size(), bytes.size() - begin.size() - end.size()).toHex(' ').toStdString();
}

std::string printed(const QString& content, int columns = 32)
{
    return bytesOf(reportOf(content), columns);
}

TEST(EscPosForm, BeginsAndEndsASlipWithoutLines)
{
    EXPECT_EQ(till::renderForPrinter(till::readSlip(u"<report/>"_s), 32).output.toHex(' ').toStdString(),
              "1b 40 1b 74 11 1b 64 03 1d 56 42 00");
}

TEST(EscPosForm, SendsATextAsALineOfTheCodePage)
{
    EXPECT_EQ(printed(u"<text>Чек №1</text>"_s), "97 a5 aa 20 fc 31 0a");
}

TEST(EscPosForm, SetsTheAlignmentWhereItChanges)
{
    EXPECT_EQ(printed(u"<text align='left'>a</text><text align='center'>b</text><text align='center'>c</text>"
                      "<text align='right'>d</text><text>e</text>"_s),
              "61 0a 1b 61 01 62 0a 63 0a 1b 61 02 64 0a 1b 61 00 65 0a");
}

TEST(EscPosForm, SetsFontAndSizeWhereTheyChange)
{
    EXPECT_EQ(printed(u"<printer op='setfont' size='smaller'/><text>a</text><printer op='resetfont'/>"
                      "<printer op='setfont' size='enlarge'/><text>b</text><printer op='resetfont'/><text>c</text>"_s),
              "1b 4d 01 1d 21 00 61 0a " // the second font
              "1b 4d 00 1d 21 11 62 0a " // the first one, doubled both ways
              "1b 4d 00 1d 21 00 63 0a");
}

TEST(EscPosForm, FillsARule)
{
    EXPECT_EQ(printed(u"<text fillsymbol='=-'/>"_s),
              "3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 3d 2d 0a");
}

TEST(EscPosForm, BreaksLinesThatAreTooLong)
{
    EXPECT_EQ(
        printed(u"<text>12345678901234567890123456789012 3</text>"_s),
        "31 32 33 34 35 36 37 38 39 30 31 32 33 34 35 36 37 38 39 30 31 32 33 34 35 36 37 38 39 30 31 32 0a 33 0a");
}

TEST(EscPosForm, FeedsALineForABreak)
{
    EXPECT_EQ(printed(u"<br/><br/>"_s), "0a 0a");
}

TEST(EscPosForm, LetsThePrinterDrawAnEan13)
{
    EXPECT_EQ(printed(u"<printer op='barcode' type='EAN13' showmode='SHOW_DOWN' barcode='4600051000057' width='2' "
                      "height='255'/><br/>"_s),
              "1b 61 01 1d 48 02 1d 77 02 1d 68 ff 1d 6b 43 0d 34 36 30 30 30 35 31 30 30 30 30 35 37 1b 61 00 0a");
}

TEST(EscPosForm, SendsAnEan13WithoutDigitsAndNoWiderThanThePaper)
{
    EXPECT_EQ(printed(u"<printer op='barcode' type='EAN13' barcode='4600051000057' width='6' height='80'/>"_s),
              "1b 61 01 1d 48 00 1d 77 03 1d 68 50 1d 6b 43 0d 34 36 30 30 30 35 31 30 30 30 30 35 37");
}

TEST(EscPosForm, LetsThePrinterDrawAQrCode)
{
    EXPECT_EQ(printed(u"<printer op='barcode' type='QR' barcode='Ёж1'/>"_s),
              "1b 61 01 "
              "1d 28 6b 04 00 31 41 32 00 " // model 2
              "1d 28 6b 03 00 31 43 06 " // modules of 6 dots
              "1d 28 6b 03 00 31 45 31 " // error correction M
              "1d 28 6b 08 00 31 50 30 d0 81 d0 b6 31 " // store, in UTF-8
              "1d 28 6b 03 00 31 51 30"); // print
}

TEST(EscPosForm, CountsALongQrCodeInTwoBytes)
{
    const std::string bytes = printed(u"<printer op='barcode' type='QR' barcode='%1'/>"_s.arg(u"x"_s.repeated(600)));

    EXPECT_NE(bytes.find("1d 28 6b 5b 02 31 50 30 78 78"), std::string::npos) << bytes; // 603 bytes
    EXPECT_NE(bytes.find("31 43 03 1d"), std::string::npos) << bytes; // 109 modules with the quiet zone, on 384 dots
}

TEST(EscPosForm, SendsCodesThatCannotBeDrawnAsText)
{
    EXPECT_EQ(printed(u"<printer op='barcode' type='EAN13' barcode='12'/>"_s), "1b 61 01 45 41 4e 31 33 20 31 32 0a");
}

TEST(EscPosForm, SendsAQuestionMarkForEachCharacterThatThePageLacks)
{
    EXPECT_EQ(printed(u"<text>«Ё» \U0001F600</text>"_s), "3f f0 3f 20 3f 0a");
}

TEST(EscPosForm, SendsALetterAndItsAccentAsOne)
{
    EXPECT_EQ(printed(u"<text>и\u0306е\u0308</text>"_s), "a9 f1 0a");
}

TEST(EscPosForm, LetsNoTextCommandThePrinter)
{
    EXPECT_EQ(bytesOf(u"a\u001Bp\u0000\u0019b\tc\u007F\u009B"_s), "61 3f 70 3f 3f 62 20 63 3f 3f 0a");
    EXPECT_EQ(printed(u"<printer op='barcode' type='X&#x9B;' barcode='\n'/>"_s), "1b 61 01 58 3f 0a");
}

TEST(EscPosForm, HasTheWholeCodePage)
{
    QByteArray upper;
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        upper.append(static_cast<char>(byte));
    }
    const QTextCodec* const reference = QTextCodec::codecForName("IBM866");
    ASSERT_NE(reference, nullptr);
    const QString characters = reference->toUnicode(upper);
    ASSERT_EQ(characters.size(), 128);

    for (int i = 0; i < 128; ++i) {
        const QByteArray bytes = till::renderForPrinter(till::readSlip(characters.mid(i, 1)), 32).output;
        EXPECT_EQ(static_cast<int>(static_cast<unsigned char>(bytes[5])), 0x80 + i)
            << characters.mid(i, 1).toStdString();
    }
}

} // namespace
