#include "tests/documents/page.h"
#include "tests/documents/source_text.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// What the other tests of this folder see of a page and of a source: what they do not see they cannot hold to anything.

namespace {

[[nodiscard]] std::string textsOf(const QString& source)
{
    QStringList texts;
    for (const Literal& literal : literalsOf(source)) {
        texts.append(literal.text);
    }
    return texts.join(u'|').toStdString();
}

} // namespace

TEST(SourceTexts, AreLiteralsOfEveryKind)
{
    EXPECT_EQ(textsOf(u"a(\"one\"); b = u\"two\"_s; c(QStringLiteral(\"three\")); d = u8\"four\"; e = LR\"(five)\";"_s),
              "one|two|three|four|five");
}

TEST(SourceTexts, NeighboursAreOne)
{
    EXPECT_EQ(textsOf(u"a(\"one \"\n    \"and \" u\"two\"); b(\"x\", \"y\");"_s), "one and two|x|y");
    EXPECT_EQ(textsOf(u"a = u\"one \"_s\n u\"two\"_s;"_s), "one two");
}

TEST(SourceTexts, EscapesAreReadOnceAndRawTextsNotAtAll)
{
    EXPECT_EQ(textsOf(uR"(a("say \"x\" and \\ and \n"); b(R"-(raw \n "q")-");)"_s),
              "say \"x\" and \\ and \\n|raw \\n \"q\"");
}

TEST(SourceTexts, CommentsCharactersAndIncludesAreNone)
{
    EXPECT_EQ(textsOf(u"// \"no\"\n/* \"no\n\" */\n#include \"no.h\"\n"
                      "c = '\"'; n = 200'000; t = u'\\''; a(\"yes\");"_s),
              "yes");
}

TEST(SourceTexts, KnowTheCallThatTheyStandIn)
{
    const QList<Literal> literals
        = literalsOf(u"throw DeskError(QStringLiteral(\"no\"));\n logger->info(\n    \"yes\");"_s);
    ASSERT_EQ(literals.size(), 2);
    EXPECT_TRUE(literals[0].before.endsWith(u"DeskError(QStringLiteral("));
    EXPECT_TRUE(literals[1].before.trimmed().endsWith(u"logger->info("));
}

TEST(Pages, HaveRowsWithTheirSectionsAndHeads)
{
    const Page page(u"# Title\n## Outer\n### Inner\n\n| a | b |\n|---|---|\n| `x` | y |\n\n"
                    "## Next\n\n| c |\n|---|\n| z |\n"_s);
    ASSERT_EQ(page.rows().size(), 2);
    EXPECT_EQ(page.rows()[0].heading.toStdString(), "Outer / Inner");
    EXPECT_EQ(page.rows()[0].head.join(u' ').toStdString(), "a b");
    EXPECT_EQ(page.rows()[0].cells.join(u' ').toStdString(), "`x` y");
    EXPECT_EQ(page.rows()[1].heading.toStdString(), "Next");
    EXPECT_EQ(page.anchors().join(u' ').toStdString(), "title outer inner next");
}

TEST(Pages, HaveBarsBehindABackslashInTheirCells)
{
    const Page page(u"| a | b |\n|---|---|\n| `x\\|y` | z |\n"_s);
    ASSERT_EQ(page.rows().size(), 1);
    EXPECT_EQ(page.rows()[0].cells.join(u' ').toStdString(), "`x|y` z");
}

TEST(Pages, KeepTheBlanksOfACodeSpanAndKnowWhatIsNone)
{
    EXPECT_EQ(codeOf(u"`x `"_s).toStdString(), "x ");
    EXPECT_TRUE(codeOf(u"x"_s).isNull());
    EXPECT_TRUE(codeOf(u"`x` and `y`"_s).isNull());
}

TEST(Pages, HaveBlocksAndTakeNothingElseFromThem)
{
    const Page page(u"```json\n# {\"a\": 1}\n| x |\n[l](m)\n```\n[text](other.md#part) \"said\" `\"code\"`\n"_s);
    ASSERT_EQ(page.blocks().size(), 1);
    EXPECT_EQ(page.blocks()[0].language.toStdString(), "json");
    EXPECT_EQ(page.blocks()[0].text.toStdString(), "# {\"a\": 1}\n| x |\n[l](m)\n");
    EXPECT_TRUE(page.rows().isEmpty());
    ASSERT_EQ(page.links().size(), 1);
    EXPECT_EQ(page.links()[0].target.toStdString(), "other.md");
    EXPECT_EQ(page.links()[0].anchor.toStdString(), "part");
    EXPECT_EQ(page.quotations().join(u' ').toStdString(), "said");
}
