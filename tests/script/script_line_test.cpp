#include "till/script/script_line.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// The words of a line, and the lines of a script.

namespace {

struct Row {
    const char* rule;
    const char* line;
    const char* words; // each in brackets; or the reason for which it is refused
};

class Words : public testing::TestWithParam<Row> { };

[[nodiscard]] std::string told(const QStringList& words)
{
    std::string text;
    for (const QString& word : words) {
        text += '[' + word.toStdString() + ']';
    }
    return text;
}

[[nodiscard]] std::string wordsOf(const char* line)
{
    try {
        return told(till::wordsOf(QString::fromUtf8(line)));
    } catch (const till::ScriptError& error) {
        return error.text().toStdString();
    }
}

} // namespace

TEST_P(Words, OfALine)
{
    EXPECT_EQ(wordsOf(GetParam().line), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, Words,
    testing::Values(Row { "Nothing", "", "" }, Row { "Blanks", " \t ", "" }, Row { "One", "close", "[close]" },
                    Row { "Several", "open sale 1042", "[open][sale][1042]" },
                    Row { "BlanksOfAnyKindPartThem", "  open \t\tsale\r", "[open][sale]" },
                    Row { "NoBreakSpacePartsThemToo",
                          "pay\xC2\xA0"
                          "cash",
                          "[pay][cash]" },
                    Row { "QuotesKeepThemTogether", R"(expect shown "Нет связи")", "[expect][shown][Нет связи]" },
                    Row { "EmptyQuotesAreAWord", R"(say "" x)", "[say][][x]" },
                    Row { "QuotesWithinAWord", R"(a"b c"d)", "[ab cd]" },
                    Row { "QuotesSideBySide", R"("a""b")", "[ab]" },
                    Row { "QuoteWithinQuotes", R"(say "\"Чек\"")", R"([say]["Чек"])" },
                    Row { "BackslashWithinQuotes", R"(say "a\\b")", R"([say][a\b])" },
                    Row { "OtherEscapesAreNone", R"(say "a\nb")", R"([say][a\nb])" },
                    Row { "BackslashOutsideIsOne", R"(say a\"b")", R"([say][a\b])" },
                    Row { "BackslashAtTheEnd", R"(say a\)", R"([say][a\])" }, Row { "Remark", "# open sale", "" },
                    Row { "RemarkBehindWords", "close # at last", "[close]" },
                    Row { "RemarkWithoutABlank", "close #x", "[close]" },
                    Row { "SignWithinAWordIsNoRemark", "coupon a#b", "[coupon][a#b]" },
                    Row { "SignBehindQuotesIsNoRemark", R"(coupon ""#b)", "[coupon][#b]" },
                    Row { "SignWithinQuotesIsNoRemark", R"(coupon "#b")", "[coupon][#b]" },
                    Row { "QuoteWithinARemark", R"(close # "at last)", "[close]" },
                    Row { "QuoteThatIsNotClosed", R"(say "a b)", "a quote is not closed" },
                    Row { "QuoteThatIsOnlyEscaped", R"(say "a\")", "a quote is not closed" },
                    Row { "QuoteAtTheEnd", R"(say ")", "a quote is not closed" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(Script, LinesKeepTheirNumbersWordsAndText)
{
    const QList<till::ScriptLine> lines = till::parseScript(u"# a story\n\nopen sale 1 # now\n  scan 46 @1\t\n"_s);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines.at(0).number, 3);
    EXPECT_EQ(told(lines.at(0).words), "[open][sale][1]");
    EXPECT_EQ(lines.at(0).text.toStdString(), "open sale 1 # now");
    EXPECT_EQ(lines.at(1).number, 4);
    EXPECT_EQ(lines.at(1).text.toStdString(), "scan 46 @1");
}

TEST(Script, LinesOfAnotherSystemEndInTwoCharacters)
{
    const QList<till::ScriptLine> lines = till::parseScript(u"open sale\r\n\r\nclose\r\n"_s);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(told(lines.at(0).words), "[open][sale]");
    EXPECT_EQ(lines.at(1).number, 3);
    EXPECT_EQ(lines.at(1).text.toStdString(), "close");
}

TEST(Script, LastLineNeedsNoEnd)
{
    EXPECT_EQ(till::parseScript(u"close"_s).size(), 1);
}

TEST(Script, MarkOfTheByteOrderIsNoWord)
{
    const QList<till::ScriptLine> lines = till::parseScript(QString::fromUtf8("\xEF\xBB\xBFopen sale\n"));
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(told(lines.at(0).words), "[open][sale]");
    EXPECT_EQ(told(till::parseScript(u"\uFEFF# remark\nclose"_s).at(0).words), "[close]");
}

TEST(Script, EmptyOneHasNoLines)
{
    EXPECT_EQ(till::parseScript(QString()).size(), 0);
    EXPECT_EQ(till::parseScript(u"\n\n# nothing\n"_s).size(), 0);
}

TEST(Script, DamageIsToldWithItsLine)
{
    try {
        (void)till::parseScript(u"open sale\n\nsay \"a\n"_s);
        ADD_FAILURE() << "not refused";
    } catch (const till::ScriptError& error) {
        EXPECT_EQ(error.text().toStdString(), "line 3: a quote is not closed");
    }
}

TEST(ScriptError, IsAValueWithItsSentence)
{
    const till::ScriptError error(u"Нет файла"_s);
    till::ScriptError other(u"x"_s);
    other = error;
    EXPECT_EQ(till::ScriptError(other).text().toStdString(), "Нет файла");
}
