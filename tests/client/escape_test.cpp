#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct Escape {
    const char* rule;
    const char* text;
    const char* expected;
};

void PrintTo(const Escape& row, std::ostream* out)
{
    *out << row.text;
}

class RemoveEscape : public testing::TestWithParam<Escape> { };

}

INSTANTIATE_TEST_SUITE_P(
    Texts, RemoveEscape,
    testing::Values(Escape { "NothingToDo", "Привет, <мир> & \"все\" %1", "Привет, <мир> & \"все\" %1" },
                    Escape { "Empty", "", "" }, Escape { "BlanksStay", " \t\n&lt; \n", " \t\n< \n" },
                    Escape { "Ampersand", "a&amp;b", "a&b" }, Escape { "Less", "&lt;", "<" },
                    Escape { "Greater", "&gt;", ">" }, Escape { "Apostrophe", "&apos;", "'" },
                    Escape { "Quote", "&quot;", "\"" }, Escape { "ReturnIsDeleted", "a&#xD;\nb&#xD;", "a\nb" },
                    Escape { "EachOccurrence", "&lt;a&gt;&lt;b&gt;&amp;&amp;", "<a><b>&&" },
                    Escape { "DoublyEscapedLess", "&amp;lt;", "<" }, Escape { "DoublyEscapedGreater", "&amp;gt;", ">" },
                    Escape { "DoublyEscapedApostrophe", "&amp;apos;", "'" },
                    Escape { "DoublyEscapedQuote", "&amp;quot;", "\"" },
                    Escape { "DoublyEscapedReturnIsDeleted", "a&amp;#xD;b", "ab" },
                    Escape { "DoublyEscapedAmpersandKeepsOne", "&amp;amp;", "&amp;" },
                    Escape { "AmpersandsTakeOnePassOnly", "&amp;amp;amp;", "&amp;amp;" },
                    Escape { "TriplyEscapedLessIsOutOfReach", "&amp;amp;lt;", "&amp;lt;" },
                    Escape { "WhatTheLastStepLeavesIsNotReadAgain", "&l&#xD;t;", "&lt;" },
                    Escape { "WhatALaterStepLeavesIsNotReadAgain", "&&gt;amp;", "&>amp;" },
                    Escape { "CaseMatters", "&LT;&Gt;&AMP;&Apos;&QUOT;", "&LT;&Gt;&AMP;&Apos;&QUOT;" },
                    Escape { "OtherFormsOfReturnStay", "&#xd;&#13;&#x0D;&#XD;", "&#xd;&#13;&#x0D;&#XD;" },
                    Escape { "OtherEntitiesStay", "&nbsp;&#60;&lt", "&nbsp;&#60;&lt" },
                    Escape { "Document", "&lt;Answer Name=&quot;O&amp;apos;Neil&quot;/&gt;&#xD;\n",
                             "<Answer Name=\"O'Neil\"/>\n" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(RemoveEscape, GivesXml)
{
    const ClientUnderTest client({});
    const QString text = QString::fromUtf8(GetParam().text);

    EXPECT_EQ(readable(client.removeEscapeFromXml(text)), GetParam().expected);
    EXPECT_EQ(readable(text), GetParam().text);
}
