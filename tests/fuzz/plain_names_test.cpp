#include "tests/fuzz/plain_names.h"

#include <gtest/gtest.h>

using fuzz::plainName;
using fuzz::fromOtherEncoding;
using fuzz::withPlainNames;
using namespace std::string_view_literals;

TEST(PlainNames, NamesOfXmlStayAsTheyAre)
{
    EXPECT_EQ(plainName("s:Body"), "s:Body");
    EXPECT_EQ(plainName("_a-1.b"), "_a-1.b");
}

TEST(PlainNames, OtherSignsAreWrittenInHexadecimal)
{
    EXPECT_EQ(plainName("a$b"), "a_24_b");
    EXPECT_EQ(plainName("@"), "_40_");
    EXPECT_EQ(plainName("1a"), "_31_a");
    EXPECT_EQ(plainName("\xC2\xA0"), "_c2__a0_");
}

TEST(PlainNames, TagsAreMadePlainAndNothingElse)
{
    EXPECT_EQ(withPlainNames("<a$ b!='$!'>$<!-- <b$> --><![CDATA[<b$>]]></a$>"),
              "<a_24_ b_21_='$!'>$<!-- <b$> --><![CDATA[<b$>]]></a_24_>");
    EXPECT_EQ(withPlainNames("<?p$ <b$> ?><a/>"), "<?p_24_ <b$> ?><a/>");
    EXPECT_EQ(withPlainNames("<a b=\"'>\" c$='\">'/>"), "<a b=\"'>\" c_24_='\">'/>");
}

TEST(PlainNames, SignsThatEndANameStay)
{
    EXPECT_EQ(withPlainNames("<a%b/>"), "<a%b/>");
    EXPECT_EQ(withPlainNames("<a&b/>"), "<a&b/>");
}

TEST(PlainNames, UnfinishedTextsEndWhereTheyEnd)
{
    for (const char* const text : { "", "<", "<a", "<a b='", "<!--", "<![CDATA[", "<?", "<?p" }) {
        EXPECT_EQ(withPlainNames(text), text);
    }
}

TEST(OtherEncoding, TextComesOutInUtf8)
{
    EXPECT_EQ(fromOtherEncoding("\xFF\xFE<\0a\0$\0/\0>\0"sv), "<a$/>");
    EXPECT_EQ(fromOtherEncoding("\0<\0a\0/\0>"sv), "<a/>");
    EXPECT_EQ(fromOtherEncoding("<?xml version='1.0' encoding='windows-1251'?><a>\xC4\xE0</a>"),
              "<?xml version='1.0' encoding='windows-1251'?><a>Да</a>");
}

TEST(OtherEncoding, BytesThatDoNotFitGiveNothing)
{
    EXPECT_EQ(fromOtherEncoding("<\0a"sv), "");
    EXPECT_EQ(fromOtherEncoding("<?xml encoding=\"windows-1251\"?><a>\x98</a>"), "");
    EXPECT_EQ(fromOtherEncoding("<?xml encoding='none-of-these'?><a/>"), "");
}

TEST(OtherEncoding, Utf8IsNone)
{
    EXPECT_EQ(fromOtherEncoding("<a>\xC4\xE0</a>"), std::nullopt);
    EXPECT_EQ(fromOtherEncoding("<?xml version='1.0' encoding='UTF-8'?><a/>"), std::nullopt);
    EXPECT_EQ(fromOtherEncoding("<?xml encoding="), std::nullopt);
    EXPECT_EQ(fromOtherEncoding("<a> encoding='windows-1251'</a>"), std::nullopt);
}
