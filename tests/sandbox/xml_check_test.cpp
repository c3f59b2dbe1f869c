#include "sandbox/xml_check.h"

#include <gtest/gtest.h>

namespace {

[[nodiscard]] std::string defect(const std::string& text)
{
    return sandbox::findXmlDefect(text, {});
}

[[nodiscard]] std::string nested(std::size_t levels)
{
    std::string text;
    for (std::size_t i = 0; i < levels; ++i) {
        text += "<a>";
    }
    for (std::size_t i = 0; i < levels; ++i) {
        text += "</a>";
    }
    return text;
}

}

TEST(XmlCheck, WellFormedTextsPass)
{
    for (const char* const text : {
             "<a/>",
             "\xef\xbb\xbf<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a/>\n",
             "<?xml version='1.0' encoding='UTF-8' standalone='yes'?><a b='1' c=\"2\" />",
             "<!-- before --><a><!-- <b> & - --></a><!-- after -->",
             "<a><![CDATA[<b> & ]] ]> ]]></a>",
             "<a b='&lt;&amp;&#65;&#x410;&quot;&apos;'>&gt;</a >",
             "<имя атрибут=\"значение\">текст 😀</имя>",
             "<a>]]&gt; > \"'</a>",
         }) {
        EXPECT_EQ(defect(text), "") << text;
    }
}

TEST(XmlCheck, WhatIsNoXmlIsRefused)
{
    for (const char* const text : {
             "",
             "   ",
             "text",
             "<a>",
             "<a></b>",
             "</a>",
             "<a/><b/>",
             "<a/>text",
             "text<a/>",
             "<a b='1' b='2'/>",
             "<a b=1/>",
             "<a b/>",
             "<a b='1'c='2'/>",
             "<a b='<'/>",
             "<a b='&'/>",
             "<a>&</a>",
             "<a>&nbsp;</a>",
             "<a>&#0;</a>",
             "<a>&#xFFFE;</a>",
             "<a>&#x;</a>",
             "<a>&#99999999999;</a>",
             "<a>]]></a>",
             "<a><!-- -- --></a>",
             "<a><!-- x ---></a>",
             "<!-----><a/>",
             "<a>&#x0x41;</a>",
             "<a><!-- </a>",
             "<a><![CDATA[ </a>",
             "<![CDATA[x]]><a/>",
             "< a/>",
             "<1/>",
             "<a",
             "<a b='1",
             "<a/ >",
             "\x01<a/>",
             "<a>\x0b</a>",
             "<a>\xff</a>",
             "<a>\xc0\xaf</a>",
             "<a>\xe2\x82</a>",
             "<a>\xed\xa0\x80</a>",
         }) {
        EXPECT_NE(defect(text), "") << text;
    }
}

TEST(XmlCheck, DocumentTypesAndInstructionsAreRefused)
{
    EXPECT_EQ(defect("<!DOCTYPE a><a/>"), "объявление типа документа не допускается");
    EXPECT_EQ(defect("<!doctype a><a/>"), "объявление типа документа не допускается");
    EXPECT_EQ(defect("<a><!ENTITY b 'c'></a>"), "объявление типа документа не допускается");
    EXPECT_EQ(defect("<?php echo ?><a/>"), "инструкция обработки не допускается");
    EXPECT_EQ(defect(" <?xml version='1.0'?><a/>"), "инструкция обработки не допускается");
    EXPECT_EQ(defect("<?xml version='1.0' encoding='windows-1251'?><a/>"), "кодировка не UTF-8");
}

TEST(XmlCheck, CapsHoldToTheLast)
{
    EXPECT_EQ(defect(nested(64)), "");
    EXPECT_EQ(defect(nested(65)), "слишком глубокая вложенность");
    EXPECT_EQ(sandbox::findXmlDefect("<a>12345</a>", { 12, 64, 64 }), "");
    EXPECT_EQ(sandbox::findXmlDefect("<a>123456</a>", { 12, 64, 64 }), "больше 12 байт");
    EXPECT_EQ(sandbox::findXmlDefect("<a b='' c=''/>", { 100, 64, 2 }), "");
    EXPECT_EQ(sandbox::findXmlDefect("<a b='' c='' d=''/>", { 100, 64, 2 }), "слишком много атрибутов");
}
