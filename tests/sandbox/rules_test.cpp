#include "sandbox/rules.h"
#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

namespace {

/// What is said of the file, without its name.
[[nodiscard]] std::string mistake(const std::string& text)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.write("rules.yaml", text);
    try {
        static_cast<void>(sandbox::readRules(file));
    } catch (const sandbox::RulesMistake& found) {
        const std::string line = found.what();
        EXPECT_TRUE(line.starts_with(file.string())) << line;
        EXPECT_EQ(line.find('\n'), std::string::npos);
        return line.substr(file.string().size());
    }
    return "no mistake";
}

}

TEST(SandboxRules, EverythingMayBeLeftOut)
{
    EXPECT_EQ(mistake(""), "no mistake");
    EXPECT_EQ(mistake("# nothing\n"), "no mistake");
    EXPECT_EQ(mistake("cards:\npoints:\nslip:\n"), "no mistake");
}

TEST(SandboxRules, MistakesNameTheirLine)
{
    EXPECT_EQ(mistake("cards\n"),
              ":1: the rule file must hold \"key: value\" lines: credentials, cards, discounts, coupons, "
              "points, messages, slip");
    EXPECT_EQ(mistake("cards: [\n"), ":2: not YAML: end of sequence flow not found");
    EXPECT_EQ(mistake("\ncard: []\n"),
              ":2: the rule file has no key \"card\"; known are credentials, cards, discounts, "
              "coupons, points, messages, slip");
    EXPECT_EQ(mistake("cards: []\ncards: []\n"), ":2: \"cards\" stands twice in the rule file; keep one of them");
    EXPECT_EQ(mistake("cards: 5\n"), ":1: \"cards\" must be a list, each entry beginning with \"-\"");
    EXPECT_EQ(mistake("cards:\n  - 5\n"),
              ":2: a card must hold \"key: value\" lines: number, phone, code, balance, blocked");
    EXPECT_EQ(mistake("credentials:\n  user: till\n"), ":2: \"credentials\" needs \"password\"");
    EXPECT_EQ(mistake("credentials:\n  user: a:b\n  password: c\n"), ":2: \"user\" may not hold a colon");
}

TEST(SandboxRules, CardsAreChecked)
{
    const std::string card = "cards:\n  - number: \"1\"\n";
    EXPECT_EQ(mistake("cards:\n  - balance: 5\n"), ":2: a card needs \"number\"");
    EXPECT_EQ(mistake(card + "    balance: 5,50\n"),
              ":3: \"balance\" must be a number from 0 to 10000000000 with at most 2 decimals, but is \"5,50\"");
    EXPECT_EQ(mistake(card + "    balance: -5\n"),
              ":3: \"balance\" must be a number from 0 to 10000000000 with at most 2 decimals, but is \"-5\"");
    EXPECT_EQ(mistake(card + "    blocked: maybe\n"), ":3: \"blocked\" must be one of no, yes, but is \"maybe\"");
    EXPECT_EQ(mistake(card + "  - number: \"1\"\n"), ":3: another entry has the same \"number\"; keep one of them");
    EXPECT_EQ(mistake(card + "    phone: \"+79990000001\"\n"), ":2: a card needs \"code\"");
    EXPECT_EQ(mistake(card + "    code: \"1\"\n"),
              ":3: \"code\" is for cards with a \"phone\"; add one or take the code away");
    EXPECT_EQ(
        mistake(card + "    phone: \"79990000001\"\n    code: \"1\"\n  - number: \"2\"\n    phone: \"89990000001\"\n"),
        ":6: another card has the same \"phone\"; keep one of them");
    EXPECT_EQ(mistake("cards:\n  - number: \"1:2\"\n"), ":2: neither \"number\" nor \"code\" may hold a colon");
}

TEST(SandboxRules, DiscountsAndCouponsAreChecked)
{
    const std::string discount = "discounts:\n  - id: 5\n    percent: 5\n";
    EXPECT_EQ(mistake(discount + "    place: shop\n"), ":4: \"place\" must be one of cheque, line, but is \"shop\"");
    EXPECT_EQ(mistake(discount + "    card: must\n"),
              ":4: \"card\" must be one of any, required, absent, but is \"must\"");
    EXPECT_EQ(mistake(discount + "    items: [\"1\"]\n"), ":4: \"items\" is for discounts with \"place: line\"");
    EXPECT_EQ(mistake(discount + "    place: line\n    items: 1\n"),
              ":5: \"items\" must be a list, as in [\"1001\", \"1002\"]");
    EXPECT_EQ(mistake("discounts:\n  - id: 0\n"),
              ":2: \"id\" must be a whole number from 1 to 2147483647, but is \"0\"");
    EXPECT_EQ(mistake("discounts:\n  - id: 2147483648\n"),
              ":2: \"id\" must be a whole number from 1 to 2147483647, but is \"2147483648\"");
    EXPECT_EQ(mistake("discounts:\n  - id: 1\n    percent: 100.01\n"),
              ":3: \"percent\" must be a number from 0 to 100 with at most 2 decimals, but is \"100.01\"");
    EXPECT_EQ(mistake(discount + "coupons:\n  - number: a\n    id: 5\n    percent: 1\n"),
              ":6: another entry has the same \"id\"; keep one of them");
    EXPECT_EQ(mistake("coupons:\n  - number: a\n"), ":2: a coupon needs \"id\"");
}

TEST(SandboxRules, PointsAreChecked)
{
    EXPECT_EQ(mistake("points:\n  step: 0\n"), ":2: \"step\" must be greater than 0, as in 0.01 or 1");
    EXPECT_EQ(mistake("points:\n  per-rouble: 0.0000001\n"),
              ":2: \"per-rouble\" must be a number from 0 to 100 with at most 6 decimals, but is \"0.0000001\"");
    EXPECT_EQ(mistake("points:\n  rounding: bank\n"),
              ":2: \"rounding\" must be one of down, nearest, up, but is \"bank\"");
}

TEST(SandboxRules, PlaceholdersAreChecked)
{
    EXPECT_EQ(mistake("messages:\n  - device: 1\n    text: \"{name}\"\n"),
              ":3: {name} is not known in a message; known are {amount}, {card}, {balance}");
    EXPECT_EQ(mistake("messages:\n  - device: 1\n    text: \"{balance}\"\n"), ":3: {balance} needs \"card: required\"");
    EXPECT_EQ(mistake("messages:\n  - device: 1\n    text: \"{ a } {}\"\n"), "no mistake");
    EXPECT_EQ(mistake("slip:\n  without-card: \"{balance}\"\n"),
              ":2: the slip \"without-card\" cannot be printed: {balance} needs a card");
    EXPECT_EQ(mistake("slip:\n  with-card: \"{sum}\"\n"),
              ":2: the slip \"with-card\" cannot be printed: {sum} is not known");
}

TEST(SandboxRules, SlipsAreChecked)
{
    const auto ofSlip = [](const std::string& text) { return mistake("slip:\n  with-card: '" + text + "'\n"); };
    const std::string start = ":2: the slip \"with-card\" cannot be printed: ";
    EXPECT_EQ(ofSlip("<doc><f0>a</doc>"), start + "it is not well-formed XML");
    EXPECT_EQ(ofSlip("<docs><doc/></docs>"), start + "its root must be <doc>");
    EXPECT_EQ(ofSlip("<doc><f3>a</f3></doc>"), start + "<f3> is no element that may stand there");
    EXPECT_EQ(ofSlip("<doc><center><br/></center></doc>"), start + "<br> is no element that may stand there");
    EXPECT_EQ(ofSlip("<doc><f0><f1/></f0></doc>"), start + "<f1> is no element that may stand there");
    EXPECT_EQ(ofSlip("<doc><line symbol=\"-\"/></doc>"), start + "<line> has no attribute symbol");
    EXPECT_EQ(ofSlip("<doc><f0>&lt;</f0></doc>"), start + "the tills' reader cannot take &lt; in a slip");
    EXPECT_EQ(ofSlip("<doc><center>a<f2>b</f2></center><line symbols=\"=\"/><br/></doc>"), "no mistake");
}

TEST(SandboxRules, ExampleSlipUsesTheWholeLanguage)
{
    const sandbox::Rules rules = sandbox::readRules(VANTIRO_SANDBOX_RULES);
    for (const char* const part :
         { "<doc>",      "<left>",   "<right>",   "<center>", "<pair left=", " right=",  "<line symbols=",
           "<line/>",    "<br/>",    "<barcode>", "<qrcode>", "<f0>",        "<f1>",     "<f2>",
           "<noformat>", "{cheque}", "{amount}",  "{earned}", "{spent}",     "{balance}" }) {
        EXPECT_NE(rules.slip.withCard.find(part), std::string::npos) << part;
    }
    EXPECT_TRUE(rules.credentials.has_value());
    EXPECT_EQ(rules.findCard("9000000001")->balance, 50'000);
    EXPECT_EQ(rules.findPhone("89990000001")->number, "9000000001");
}

TEST(SandboxRules, ExamplePointsAreWhatTheFileSays)
{
    const sandbox::Rules rules = sandbox::readRules(VANTIRO_SANDBOX_RULES);
    EXPECT_EQ(rules.points.payable, 5000);
    EXPECT_EQ(rules.points.perRouble, 50'000);
    EXPECT_EQ(rules.points.step, 1);
    EXPECT_EQ(rules.points.rounding, sandbox::Rounding::down);
}
