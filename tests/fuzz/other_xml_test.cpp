#include "tests/fuzz/other_xml.h"

#include <gtest/gtest.h>

#include <functional>

using fuzz::readOtherwise;
using fuzz::XmlElement;
using fuzz::XmlEncoding;

// The reading that others are held against must itself be right.

namespace {

/// `name[attribute=value](children)text`, so that a tree stands in one line.
[[nodiscard]] std::string line(const XmlElement& element)
{
    std::string text = element.name;
    for (const auto& [name, value] : element.attributes) {
        text += '[' + name + '=' + value + ']';
    }
    for (const XmlElement& child : element.children) {
        text += '(' + line(child) + ')';
    }
    return text + ':' + element.text;
}

[[nodiscard]] std::string read(std::string_view text, XmlEncoding encoding = XmlEncoding::fromTheText)
{
    const std::optional<XmlElement> root = readOtherwise(text, encoding);
    return root ? line(*root) : "no XML";
}

[[nodiscard]] std::string differenceOf(std::string_view one, std::string_view other)
{
    return fuzz::difference(readOtherwise(one, XmlEncoding::utf8).value(),
                            readOtherwise(other, XmlEncoding::utf8).value());
}

} // namespace

TEST(OtherXml, GivesTheTreeAsItIsWritten)
{
    EXPECT_EQ(read("<s:a xmlns:s='u' b=\"&lt;\">x<c/>&amp;<![CDATA[<]]><!-- n --></s:a>"),
              "s:a[xmlns:s=u][b=<](c:):x&<");
}

TEST(OtherXml, TextOfChildrenCountsInItsPlace)
{
    EXPECT_EQ(read("<a>1<b>2<c>3</c></b>4</a>"), "a(b(c:3):23):1234");
}

TEST(OtherXml, RefusesWhatIsNotWellFormed)
{
    for (const char* const text : { "", "text", "<a>", "<a></b>", "<a b='1' b='2'/>", "<a/><b/>", "<a>&x;</a>",
                                    "<a b=1/>", "<a>\x01</a>", "<a>\xff</a>", "<a>&#0;</a>" }) {
        EXPECT_EQ(read(text), "no XML") << text;
    }
}

TEST(OtherXml, RefusesADocumentType)
{
    EXPECT_EQ(read("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>"), "no XML");
}

TEST(OtherXml, DeclaredEncodingCountsUnlessTold)
{
    const std::string text = "<?xml version='1.0' encoding='windows-1251'?><a>\xC4</a>";
    EXPECT_EQ(read(text), "a:Д");
    EXPECT_EQ(read(text, XmlEncoding::utf8), "no XML");
    EXPECT_EQ(read("<?xml version='1.0' encoding='utf-16'?><a>Д</a>", XmlEncoding::utf8), "a:Д");
}

TEST(OtherXml, DifferenceTellsTheFirstOne)
{
    EXPECT_EQ(differenceOf("<a b='1' c='2'> x <d/></a>", "<a c='2' b='1'>x\n<d/>\n</a>"), "");
    EXPECT_EQ(differenceOf("<a/>", "<b/>"), "the element a against b");
    EXPECT_EQ(differenceOf("<a b='1'/>", "<a b='2'/>"), "the attributes of a");
    EXPECT_EQ(differenceOf("<a>x</a>", "<a>y</a>"), "the text of a");
    EXPECT_EQ(differenceOf("<a><b/></a>", "<a><b/><b/></a>"), "the children of a");
    EXPECT_EQ(differenceOf("<a><b><c/></b></a>", "<a><b><d/></b></a>"), "the element c against d");
}

TEST(OtherXml, ElementsAreFoundAtAnyDepth)
{
    const XmlElement root = readOtherwise("<a><b><a><a/></a></b></a>", XmlEncoding::utf8).value();
    EXPECT_EQ(fuzz::elementsNamed(root, "a").size(), 3U);
    EXPECT_EQ(fuzz::elementsBelow(root, "a").size(), 2U);
    EXPECT_TRUE(fuzz::elementsNamed(root, "c").empty());
}
