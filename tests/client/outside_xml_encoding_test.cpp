#include "tests/client/xml_reading_checks.h"

#include <QStringConverter>

using vantiro::readOutsideXml;
using vantiro::XmlReading;
using xml_reading_checks::contentOf;
using xml_reading_checks::expectRefused;
using namespace Qt::StringLiterals;

namespace {

constexpr const char* contradiction = "declared encoding contradicts the bytes";
constexpr const char* documentType = "document type declaration is not allowed";
constexpr const char* outsideText = "text is not allowed outside the root element";

template <QStringConverter::Encoding encoding>
[[nodiscard]] QByteArray encode(const QString& text)
{
    return QStringEncoder(encoding).encode(text);
}

constexpr auto utf16le = encode<QStringConverter::Utf16LE>;
constexpr auto utf16be = encode<QStringConverter::Utf16BE>;
constexpr auto utf32le = encode<QStringConverter::Utf32LE>;
constexpr auto utf32be = encode<QStringConverter::Utf32BE>;

const QString price = u"<a>ж€😀</a>"_s;
const QString mark = QString(QChar(0xFEFF));

} // namespace

TEST(OutsideXmlEncoding, UnicodeFormsAreTold)
{
    const std::string content = "ж€😀";
    EXPECT_EQ(contentOf(readOutsideXml(price)), content);
    EXPECT_EQ(contentOf(readOutsideXml(mark + price)), content);
    EXPECT_EQ(contentOf(readOutsideXml(price.toUtf8())), content);
    EXPECT_EQ(contentOf(readOutsideXml((mark + price).toUtf8())), content);
    for (const QString& text : { price, mark + price }) {
        EXPECT_EQ(contentOf(readOutsideXml(utf16le(text))), content);
        EXPECT_EQ(contentOf(readOutsideXml(utf16be(text))), content);
        EXPECT_EQ(contentOf(readOutsideXml(utf32le(text))), content);
        EXPECT_EQ(contentOf(readOutsideXml(utf32be(text))), content);
    }
}

TEST(OutsideXmlEncoding, DeclarationMayNameWhatTheBytesTell)
{
    const auto declared = [](const char* name) {
        return u"<?xml version=\"1.0\" encoding=\"%1\"?><a>ж</a>"_s.arg(QLatin1String(name));
    };
    EXPECT_EQ(contentOf(readOutsideXml(declared("utf-8").toUtf8())), "ж");
    EXPECT_EQ(contentOf(readOutsideXml((mark + declared("UTF-8")).toUtf8())), "ж");
    EXPECT_EQ(contentOf(readOutsideXml(utf16le(declared("utf-16")))), "ж");
    EXPECT_EQ(contentOf(readOutsideXml(utf16le(mark + declared("UTF-16LE")))), "ж");
    EXPECT_EQ(contentOf(readOutsideXml(utf16be(declared("UTF-16")))), "ж");
    EXPECT_EQ(contentOf(readOutsideXml(utf32be(declared("utf-32")))), "ж");
    expectRefused(readOutsideXml(declared("utf-16").toUtf8()), contradiction);
    expectRefused(readOutsideXml(declared("UTF-32BE").toUtf8()), contradiction);
    expectRefused(readOutsideXml((mark + declared("iso-8859-1")).toUtf8()), contradiction);
    expectRefused(readOutsideXml((mark + declared("bogus")).toUtf8()), contradiction);
    expectRefused(readOutsideXml(utf16le(declared("utf-8"))), contradiction);
    expectRefused(readOutsideXml(utf16le(mark + declared("UTF-16BE"))), contradiction);
    expectRefused(readOutsideXml(utf32le(declared("utf-16"))), contradiction);
}

TEST(OutsideXmlEncoding, DeclarationInADecodedTextDoesNotCount)
{
    EXPECT_EQ(contentOf(readOutsideXml(u"<?xml version=\"1.0\" encoding=\"utf-16\"?><a>ж</a>"_s)), "ж");
    EXPECT_EQ(contentOf(readOutsideXml(u"<?xml version=\"1.0\" encoding=\"bogus\"?><a>ж</a>"_s)), "ж");
}

TEST(OutsideXmlEncoding, NamedEncodingIsReadOrRefused)
{
    EXPECT_EQ(contentOf(readOutsideXml(QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>"))), "é");
    expectRefused(readOutsideXml(QByteArray("<?xml version='1.0' encoding='bogus'?><a/>")),
                  "encoding is not supported: bogus");

    const XmlReading reading
        = readOutsideXml(QByteArray("<?xml version='1.0' encoding='windows-1251'?><a>\xCF\xF0\xE8</a>"));
    if (QStringDecoder("windows-1251").isValid()) {
        EXPECT_EQ(contentOf(reading), "При");
    } else {
        expectRefused(reading, "encoding is not supported: windows-1251");
    }
}

TEST(OutsideXmlEncoding, BytesThatDoNotFitAreRefused)
{
    const char* const utf8 = "bytes do not fit the encoding UTF-8";
    expectRefused(readOutsideXml(QByteArray("<a>\xCF\xF0\xE8</a>")), utf8);
    expectRefused(readOutsideXml(QByteArray("<a>\xFF</a>")), utf8);
    expectRefused(readOutsideXml(QByteArray("<a>\xC0\xBC</a>")), utf8); // "<" in a longer form
    expectRefused(readOutsideXml(QByteArray("<a>\xED\xA0\x80</a>")), utf8); // a surrogate
    expectRefused(readOutsideXml(QByteArray("<a/>\xD0")), utf8); // cut short
    expectRefused(readOutsideXml(QByteArray("<a>\xF0\x9F\x98")), utf8);
    expectRefused(readOutsideXml(utf16le(price) + '\n'), "bytes do not fit the encoding UTF-16LE");
    expectRefused(readOutsideXml(utf32le(price) + '\n'), "bytes do not fit the encoding UTF-32LE");
    const QByteArray surrogate = utf32be(price).replace(12, 4, QByteArray("\x00\x00\xD8\x00", 4));
    const QByteArray tooHigh = utf32le(price).replace(12, 4, QByteArray("\x00\x00\x01\x04", 4));
    expectRefused(readOutsideXml(surrogate), "bytes do not fit the encoding UTF-32BE");
    expectRefused(readOutsideXml(tooHigh), "bytes do not fit the encoding UTF-32LE");
}

TEST(OutsideXmlEncoding, ReplacementCharacterOfTheSenderIsKept)
{
    EXPECT_EQ(contentOf(readOutsideXml(QByteArray("<a>\xEF\xBF\xBD</a>"))), "\xEF\xBF\xBD");
}

TEST(OutsideXmlEncoding, SecondMarkIsText)
{
    expectRefused(readOutsideXml(mark + mark + price), outsideText);
    expectRefused(readOutsideXml((mark + mark + price).toUtf8()), outsideText);
}

TEST(OutsideXmlEncoding, DocumentTypeIsFoundInEveryEncoding)
{
    const QString text = u"<!--ж-->\n<!DOCTYPE a><a/>"_s;
    expectRefused(readOutsideXml(text.toUtf8()), documentType, 2, 1);
    expectRefused(readOutsideXml(utf16le(mark + text)), documentType, 2, 1);
    expectRefused(readOutsideXml(utf16be(text)), documentType, 2, 1);
    expectRefused(readOutsideXml(utf32le(text)), documentType, 2, 1);
    // UTF-7 hides the bracket from who looks at the bytes.
    const QByteArray seven = "<?xml version='1.0' encoding='UTF-7'?>\n+ADw-!DOCTYPE a><a/>";
    if (QStringDecoder("UTF-7").isValid()) {
        expectRefused(readOutsideXml(seven), documentType, 2, 1);
    } else {
        expectRefused(readOutsideXml(seven), "encoding is not supported: UTF-7");
    }
}
