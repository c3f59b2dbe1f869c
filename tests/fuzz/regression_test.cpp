#include "sandbox/xml_check.h"
#include "tests/fuzz/corpus.h"
#include "tests/fuzz/judge.h"
#include "till/store/document_json.h"

#include <gtest/gtest.h>

// What the fuzzers have found, each under the rule that it broke.

namespace {

[[nodiscard]] std::string broken(const fuzz::Target& target, std::string_view text)
{
    try {
        target.read({}); // what is made at the first use must not count as the time of an input
        fuzz::judge(target, text);
        return "nothing";
    } catch (const fuzz::BrokenPromise& promise) {
        return promise.what();
    }
}

[[nodiscard]] std::string broken(std::string_view name)
{
    const fuzz::KeptInput& input = fuzz::keptInput(name);
    return broken(*input.target, input.text);
}

} // namespace

TEST(Regression, NameWithSignsOfNoNameIsAnotherNameAndNoFailure)
{
    EXPECT_EQ(broken("regressions/exchange/sign-in-a-name.txt"), "nothing");
    EXPECT_EQ(broken("regressions/exchange/sign-in-a-wide-name.txt"), "nothing");
    EXPECT_EQ(broken("regressions/exchange/sign-in-a-name-of-an-old-charset.txt"), "nothing");
    EXPECT_EQ(broken("regressions/discounts/sign-in-a-name.xml"), "nothing");
}

TEST(Regression, MessageWithAControlCharacterAsItIsStepsAside)
{
    EXPECT_EQ(broken("regressions/queue_record/nul-as-it-is.txt"), "nothing");
}

TEST(Regression, MessageWhoseHeadersNobodyCanBeSentHoldsUpNone)
{
    EXPECT_EQ(broken("regressions/queue_record/nul-in-a-header.txt"), "nothing");
    EXPECT_EQ(broken("regressions/queue_record/line-end-in-a-header.txt"), "nothing");
}

TEST(Regression, AnswerInAnotherCharsetIsAnAnswer)
{
    EXPECT_EQ(broken("regressions/queue_record/byte-of-no-character.txt"), "nothing");
    EXPECT_EQ(broken("regressions/queue_record/byte-of-no-character-at-the-end.txt"), "nothing");
    EXPECT_EQ(broken("regressions/exchange/byte-of-no-character.txt"), "nothing");
    EXPECT_EQ(broken("regressions/exchange/charset-by-another-name.txt"), "nothing");
    EXPECT_EQ(broken("regressions/exchange/declaration-with-blanks.txt"), "nothing");
    EXPECT_EQ(broken("regressions/exchange/byte-of-no-character-beside-a-name.txt"), "nothing");
}

TEST(Regression, ReferenceWithAPrefixBeforeItsDigitsIsNoXml)
{
    EXPECT_EQ(broken("regressions/balance/prefix-before-the-digits-of-a-reference.xml"), "nothing");
    EXPECT_EQ(broken("regressions/queue_record/prefix-before-the-digits-of-a-reference.txt"), "nothing");
    EXPECT_EQ(broken("regressions/report/prefix-before-the-digits-of-a-reference.xml"), "nothing");
}

TEST(Regression, CommentWithThreeHyphensAtItsEndIsNoXml)
{
    EXPECT_EQ(broken("regressions/sandbox_request/comment-with-three-hyphens-at-its-end.xml"), "nothing");
}

TEST(Regression, DocumentWithANumberWithoutADigitIsDamaged)
{
    const std::string& text = fuzz::keptInput("regressions/restore/number-without-a-digit.json").text;
    EXPECT_NE(text.find(":.25"), std::string::npos);
    EXPECT_EQ(broken("regressions/restore/number-without-a-digit.json"), "nothing");
}

TEST(Regression, BlankOfAnotherScriptIsABlank)
{
    EXPECT_EQ(broken("regressions/discounts/wide-blank-before-a-number.xml"), "nothing");
    EXPECT_EQ(broken("regressions/messages/wide-blank-before-a-whole-number.xml"), "nothing");
    EXPECT_EQ(broken("regressions/report/wide-blank-in-a-name.xml"), "nothing");
    EXPECT_EQ(broken("regressions/report/late-letter-in-a-name.xml"), "nothing");
    EXPECT_EQ(broken("regressions/report/colons-in-a-name.xml"), "nothing");
}

TEST(Regression, ThousandsOfSlipsThatAreNoneAreReadInTheTimeOfTheirText)
{
    const fuzz::KeptInput& input = fuzz::keptInput("regressions/report/slips-that-are-none.xml");
    const std::string text = fuzz::swollen(input.text, 128 * 1024, 1);
    ASSERT_NE(text.find("<br/><br/><br/>"), std::string::npos);
    EXPECT_EQ(broken(*input.target, input.text), "nothing");
    EXPECT_EQ(broken(*input.target, text), "nothing"); // one line of the log each
}

TEST(Regression, ThousandsOfEmptyPairsArePrintedInTheTimeOfTheirForm)
{
    const fuzz::KeptInput& input = fuzz::keptInput("regressions/report/pairs-of-nothing.xml");
    std::string text = "<doc>";
    while (text.size() < 128 * 1024) {
        text += "<pair/>";
    }
    EXPECT_EQ(broken(*input.target, input.text), "nothing");
    EXPECT_EQ(broken(*input.target, text + "</doc>"), "nothing"); // three elements each
}

TEST(Regression, DocumentWithAControlCharacterAsItIsIsDamaged)
{
    const std::string& text = fuzz::keptInput("regressions/restore/control-character-as-it-is.json").text;
    EXPECT_THROW(static_cast<void>(till::documentFromJson(QByteArray::fromStdString(text))), till::DamagedDocument);
    EXPECT_EQ(broken("regressions/restore/control-character-as-it-is.json"), "nothing");
}

TEST(Regression, SandboxReadsTheDeclarationItself)
{
    EXPECT_EQ(broken("regressions/sandbox_request/declaration-without-equals-sign.xml"), "nothing");
    EXPECT_EQ(sandbox::findXmlDefect("<?xml version \"1.0\"?><a/>", {}), "ожидался знак =");
    for (const char* const declaration :
         { "<?xml ?>", "<?xml version-'1.0'?>", "<?xml encoding='utf-8'?>", "<?xml version='1.0'encoding='utf-8'?>",
           "<?xml version='2'?>", "<?xml encoding='utf-8' version='1.0'?>", "<?xml version='1.0' version='1.0'?>",
           "<?xml version='1.0' standalone='maybe'?>", "<?xml version='1.0' standalone='yes' encoding='utf-8'?>" }) {
        EXPECT_EQ(sandbox::findXmlDefect(std::string(declaration) + "<a/>", {}), "неверное объявление XML")
            << declaration;
    }
    for (const char* const declaration :
         { "<?xml version='1.0'?>", "<?xml\tversion = \"1.0\"\n?>", "<?xml version='1.0' standalone='yes'?>",
           "<?xml version='1.0' encoding='Utf-8' standalone='no' ?>" }) {
        EXPECT_EQ(sandbox::findXmlDefect(std::string(declaration) + "<a/>", {}), "") << declaration;
    }
}
