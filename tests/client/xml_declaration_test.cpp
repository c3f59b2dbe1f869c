#include "client/outside_xml.h"
#include "client/xml_declaration.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

using namespace vantiro;
using namespace Qt::StringLiterals;

// The declaration is read twice: in the bytes, for the encoding that it names, and in the text, before the parser.

namespace {

struct MalformedBytes {
    const char* rule;
    QByteArray bytes;
};

void PrintTo(const MalformedBytes& row, std::ostream* out)
{
    *out << row.bytes.toPercentEncoding(" <>=?'/").constData();
}

class MalformedDeclaration : public testing::TestWithParam<MalformedBytes> { };

}

TEST(XmlDeclaration, EncodingMayHaveAnUnderscore)
{
    const std::optional<XmlDeclaration> declaration
        = readXmlDeclaration(u"<?xml version='1.0' encoding='Shift_JIS'?><a/>");

    ASSERT_TRUE(declaration.has_value());
    EXPECT_EQ(declaration->encoding.toString().toStdString(), "Shift_JIS");
    EXPECT_EQ(declaration->size, 42);
}

TEST(XmlDeclaration, UnknownEncodingWithAnUnderscoreIsToldByItsWholeName)
{
    const XmlReading reading = readOutsideXml(QByteArray("<?xml version='1.0' encoding='no_such'?><a/>"));

    EXPECT_FALSE(reading.ok);
    EXPECT_EQ(reading.errorText.toStdString(), "encoding is not supported: no_such");
    EXPECT_EQ(reading.line, 1);
    EXPECT_EQ(reading.column, 1);
}

// A declaration that cannot be read names no encoding. What is told is the fault of the declaration, not a
// contradiction with an encoding that nobody knows.
INSTANTIATE_TEST_SUITE_P(
    Bytes, MalformedDeclaration,
    testing::Values(MalformedBytes { "WithoutAMark", "<?xml version='1.0' version='1.0' encoding='UTF-16'?><a/>" },
                    MalformedBytes { "WithAMarkOfUtf8",
                                     "\xEF\xBB\xBF<?xml version='1.0' version='1.0' encoding='UTF-16'?><a/>" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(MalformedDeclaration, IsTheFaultThatIsTold)
{
    const XmlReading reading = readOutsideXml(GetParam().bytes);

    EXPECT_FALSE(reading.ok);
    EXPECT_TRUE(reading.document.isNull());
    EXPECT_EQ(reading.errorText.toStdString(), "XML declaration is malformed");
    EXPECT_EQ(reading.line, 1);
    EXPECT_EQ(reading.column, 1);
}
