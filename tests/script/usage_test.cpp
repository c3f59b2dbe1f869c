#include "tests/script/script_till.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

// Lines that are not understood: one sentence that names what is wrong, the usage of the verb, and nothing is done.

namespace {

struct Row {
    const char* line;
    const char* reason;
};

void PrintTo(const Row& row, std::ostream* stream)
{
    *stream << row.line;
}

class Usage : public ScriptTill, public testing::WithParamInterface<Row> {
protected:
    [[nodiscard]] static std::string usageOf(const QString& verb)
    {
        for (const till::VerbHelp& help : till::Player::verbs()) {
            if (help.usage.section(u' ', 0, 0).remove(u';') == verb) {
                return " (usage: " + help.usage.toStdString() + ')';
            }
        }
        return "";
    }
};

class Sight : public Usage { }; // verbs that only look tell the reason alone

} // namespace

TEST_P(Usage, IsToldWithTheReason)
{
    const QString line = QString::fromUtf8(GetParam().line);
    const std::string usage = usageOf(line.section(u' ', 0, 0));
    ASSERT_NE(usage, "");
    EXPECT_EQ(play(line), GetParam().reason + usage);
    EXPECT_EQ(play(u"expect failed"_s), "") << "the step is no good one";
    EXPECT_FALSE(checkout->isOpen());
    EXPECT_EQ(service.requests().size(), 0);
    EXPECT_EQ(controlCalls(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Verbs, Usage,
    testing::Values(
        Row { "open", "kind is missing" },
        Row { "open sail", "a cheque is a sale, a return or a return-of, not \"sail\"" },
        Row { "open sale x", "NUMBER must be a whole number, not \"x\"" },
        Row { "open sale -1", "NUMBER must be a whole number, not \"-1\"" },
        Row { "open sale 1 2", "\"2\" is not understood here" },
        Row { "open return 1 2", "\"2\" is not understood here" }, Row { "open return-of", "SALE is missing" },
        Row { "open return-of x", "SALE must be a whole number, not \"x\"" },
        Row { "open return-of 1 x", "NUMBER must be a whole number, not \"x\"" },
        Row { "open return-of 1 2 3", "\"3\" is not understood here" }, Row { "scan", "BARCODE is missing" },
        Row { "scan 46", "@PRICE is missing" },
        Row { "scan 46 @", "PRICE must be a number with at most 2 decimals, not \"\"" },
        Row { "scan 46 @1.234", "PRICE must be a number with at most 2 decimals, not \"1.234\"" },
        Row { "scan 46 @-5", "PRICE must be a number with at most 2 decimals, not \"-5\"" },
        Row { "scan 46 x @5", "QUANTITY must be a number with at most 3 decimals, not \"\"" },
        Row { "scan 46 xtwo @5", "QUANTITY must be a number with at most 3 decimals, not \"two\"" },
        Row { "scan 46 @5 min", "PRICE is missing" },
        Row { "scan 46 @5 min x", "PRICE must be a number with at most 2 decimals, not \"x\"" },
        Row { "scan 46 @5 code", "CODE is missing" },
        Row { "scan 46 @5 no-discounts", "\"no-discounts\" is not understood here" },
        Row { "take", "POSITION is missing" }, Row { "take one", "POSITION must be a whole number, not \"one\"" },
        Row { "take 1 2", "\"2\" is not understood here" }, Row { "take 1 x2 x3", "\"x3\" is not understood here" },
        Row { "take 1 xall", "QUANTITY must be a number with at most 3 decimals, not \"all\"" },
        Row { "remove", "POSITION is missing" }, Row { "remove one", "POSITION must be a whole number, not \"one\"" },
        Row { "remove 1 2", "\"2\" is not understood here" }, Row { "position", "POSITION is missing" },
        Row { "position one", "POSITION must be a whole number, not \"one\"" },
        Row { "position 1 2", "\"2\" is not understood here" }, Row { "card", "NUMBER is missing" },
        Row { "card 1 2", "\"2\" is not understood here" }, Row { "phone", "NUMBER is missing" },
        Row { "phone 1 code", "CODE is missing" }, Row { "phone 1 cod 2", "\"cod\" is not understood here" },
        Row { "phone 1 code 2 3", "\"3\" is not understood here" },
        Row { "request now", "\"now\" is not understood here" }, Row { "coupon", "NUMBER is missing" },
        Row { "coupon delete", "NUMBER is missing" }, Row { "coupon c-1 c-2", "\"c-2\" is not understood here" },
        Row { "coupon delete c-1 c-2", "\"c-2\" is not understood here" },
        Row { "points all", "AMOUNT must be a number with at most 2 decimals, not \"all\"" },
        Row { "points 1 2", "\"2\" is not understood here" }, Row { "rollback 5", "\"5\" is not understood here" },
        Row { "pay", "means is missing" }, Row { "pay card", "one pays cash or certificate, not \"card\"" },
        Row { "pay cash all", "AMOUNT must be a number with at most 2 decimals, not \"all\"" },
        Row { "pay cash 1 2", "\"2\" is not understood here" }, Row { "pay certificate", "NUMBER is missing" },
        Row { "pay certificate 7 all", "AMOUNT must be a number with at most 2 decimals, not \"all\"" },
        Row { "pay certificate 7 1 2", "\"2\" is not understood here" },
        Row { "close now", "\"now\" is not understood here" }, Row { "cancel now", "\"now\" is not understood here" },
        Row { "cancel anyway now", "\"now\" is not understood here" },
        Row { "putout 1", "\"1\" is not understood here" }, Row { "reveal", "NUMBER is missing" },
        Row { "reveal x", "NUMBER must be a whole number, not \"x\"" },
        Row { "reveal 1 x", "NEW must be a whole number, not \"x\"" },
        Row { "reveal 1 2 3", "\"3\" is not understood here" }, Row { "server", "action is missing" },
        Row { "server first", "action is missing" }, Row { "server third stop", "there is no server \"third\"" },
        Row { "server dance now", "there is no server \"dance\"" },
        Row { "server first dance", "a server can stop, start, fault or clear, not \"dance\"" },
        Row { "server stop now", "\"now\" is not understood here" },
        Row { "server first start now", "\"now\" is not understood here" },
        Row { "server clear all", "\"all\" is not understood here" }, Row { "server fault", "KIND is missing" },
        Row { "deliver all", "\"all\" is not understood here" },
        Row { "crash hard", "\"hard\" is not understood here" }));

TEST_P(Sight, TellsTheReason)
{
    EXPECT_EQ(play(QString::fromUtf8(GetParam().line)), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Looks, Sight,
    testing::Values(
        Row { "sell 1", "unknown verb \"sell\"; \"help\" lists all" },
        Row { "Open sale", "unknown verb \"Open\"; \"help\" lists all" },
        Row { "\"\"", "unknown verb \"\"; \"help\" lists all" }, Row { "show", "what is missing" },
        Row { "show chek", "\"chek\" cannot be shown" }, Row { "show queue 1", "\"1\" is not understood here" },
        Row { "show cheque", "no cheque is open" }, Row { "expect", "what is missing" },
        Row { "expect luck", "\"luck\" cannot be expected" }, Row { "expect ok now", "\"now\" is not understood here" },
        Row { "expect failed now", "\"now\" is not understood here" }, Row { "expect refused", "TEXT is missing" },
        Row { "expect refused \"\"", "TEXT is empty" }, Row { "expect refused a b", "\"b\" is not understood here" },
        Row { "expect shown", "TEXT is missing" }, Row { "expect shown \"\"", "TEXT is empty" },
        Row { "expect shown a b", "\"b\" is not understood here" }, Row { "expect printed", "TEXT is missing" },
        Row { "expect no", "where is missing" },
        Row { "expect no show a", "one expects no shown or no printed, not \"show\"" },
        Row { "expect no shown", "TEXT is missing" }, Row { "expect no printed \"\"", "TEXT is empty" },
        Row { "expect no shown a b", "\"b\" is not understood here" }, Row { "expect sum 1", "no cheque is open" },
        Row { "expect due 1", "no cheque is open" }, Row { "expect discount 1", "no cheque is open" },
        Row { "expect points 1", "no cheque is open" }, Row { "expect queue", "COUNT is missing" },
        Row { "expect queue some", "COUNT must be a whole number, not \"some\"" },
        Row { "expect queue 0 pendng", "a message is pending, held, refused or damaged, not \"pendng\"" },
        Row { "expect queue 0 \"\"", "a message is pending, held, refused or damaged, not \"\"" },
        Row { "expect queue 0 pending now", "\"now\" is not understood here" },
        Row { "expect balance", "CARD is missing" }, Row { "expect books", "books can agree, nothing else" },
        Row { "expect books differ", "books can agree, nothing else" },
        Row { "expect books agree now", "\"now\" is not understood here" }));

TEST_F(ScriptTill, AmountsOfExpectationsAreRead)
{
    playWell({ u"open sale 1"_s });
    for (const QString& what : { u"sum"_s, u"due"_s, u"discount"_s, u"points"_s }) {
        EXPECT_EQ(play(u"expect "_s + what), "AMOUNT is missing");
        EXPECT_EQ(play(u"expect %1 ten"_s.arg(what)), "AMOUNT must be a number with at most 2 decimals, not \"ten\"");
        EXPECT_EQ(play(u"expect %1 0 0"_s.arg(what)), "\"0\" is not understood here");
    }
}

namespace {

class WithoutService : public ScriptTill {
protected:
    WithoutService()
        : ScriptTill(false)
    {
        startPlayer(false, false);
    }
};

} // namespace

TEST_F(WithoutService, VerbsThatNeedOneSaySo)
{
    EXPECT_THAT(play(u"server stop"_s), testing::StartsWith("there is no sandbox service to control"));
    EXPECT_THAT(play(u"expect balance 9 1"_s), testing::StartsWith("there is no sandbox service to control"));
    EXPECT_THAT(play(u"expect books agree"_s), testing::StartsWith("there is no sandbox service to control"));
    EXPECT_THAT(play(u"show books"_s), testing::StartsWith("there is no sandbox service to control"));
}

TEST_F(WithoutService, CrashNeedsSomebodyToStartTheTillAgain)
{
    EXPECT_EQ(play(u"crash"_s), "nobody would start the till again here (usage: crash)");
}
