#include "tests/script/script_till.h"
#include "till/script/script_line.h"
#include "till/store/store.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

// Every expectation, when it holds and when it does not.

namespace {

class Expectation : public ScriptTill {
protected:
    /// A paid sale with the card, a discount of 10.00 and 30 points.
    void sell()
    {
        playWell({ u"open sale 1042"_s, u"scan 461 x2 @89.90"_s, u"card 9000000001"_s, u"points 30"_s });
    }
};

} // namespace

TEST_F(Expectation, OkAndFailedAreOfTheLastStep)
{
    EXPECT_EQ(play(u"expect ok"_s), "");
    EXPECT_EQ(play(u"expect failed"_s), "the last step went well");
    playWell({ u"open sale"_s, u"scan 461 @1"_s });
    results["IsCardValid"] = "false";
    EXPECT_EQ(play(u"card 5"_s), "");
    EXPECT_EQ(play(u"expect ok"_s), "the last step has failed");
    EXPECT_EQ(play(u"expect failed"_s), "");
    playWell({ u"show cheque"_s });
    EXPECT_EQ(play(u"expect failed"_s), "") << "a look is no step";
    playWell({ u"say next"_s });
    EXPECT_EQ(play(u"expect ok"_s), "");
}

TEST_F(Expectation, StepThatTheStoreEndsIsNoGoodOne)
{
    playWell({ u"open sale"_s });
    till::store::close();
    EXPECT_EQ(play(u"scan 461 @1"_s).substr(0, 7), "store: ");
    EXPECT_EQ(play(u"expect ok"_s), "the last step has failed");
}

TEST_F(Expectation, RefusedIsOfTheLastStep)
{
    EXPECT_EQ(play(u"expect refused x"_s), "the till has refused nothing");
    playWell({ u"close"_s });
    EXPECT_EQ(play(u"expect refused \"no cheque\""_s), "");
    EXPECT_EQ(play(u"expect refused \"no cheque\""_s), "the till has refused nothing") << "it is told once";
    EXPECT_EQ(play(u"expect failed"_s), "");
    playWell({ u"close"_s });
    EXPECT_EQ(play(u"expect refused \"no lines\""_s), "the till has refused it with \"no cheque is open\"");
}

TEST_F(Expectation, RefusalThatNobodyExpectsIsAnErrorOfTheNextLine)
{
    for (const QString& next : { u"open sale 1"_s, u"show queue"_s, u"expect ok"_s, u"expect failed"_s, u"say x"_s }) {
        playWell({ u"close"_s });
        EXPECT_EQ(play(next), "no cheque is open") << next.toStdString();
        EXPECT_FALSE(checkout->isOpen()) << "the line was not carried out";
    }
    playWell({ u"close"_s });
    EXPECT_THROW(player->end(), till::ScriptError);
    player->end(); // told once
}

TEST_F(Expectation, ShownAndItsContrary)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s });
    EXPECT_EQ(play(u"expect shown Приходите"_s), "\"Приходите\" was not shown; that was: \"\"");
    playWell({ u"request"_s });
    EXPECT_EQ(play(u"expect shown \"Покупателю: Приходите\""_s), "");
    EXPECT_EQ(play(u"expect shown Уходите"_s), "\"Уходите\" was not shown; that was: \"Покупателю: Приходите ещё\"");
    EXPECT_EQ(play(u"expect no shown Уходите"_s), "");
    EXPECT_EQ(play(u"expect no shown ещё"_s), "\"ещё\" was shown");
    EXPECT_EQ(play(u"expect no printed ещё"_s), "");
    playWell({ u"pay cash"_s });
    EXPECT_EQ(play(u"expect no shown ещё"_s), "") << "of the last step alone";
}

TEST_F(Expectation, PrintedAndItsContrary)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s });
    EXPECT_EQ(play(u"expect printed Спасибо"_s), "");
    EXPECT_THAT(play(u"expect printed До"_s), testing::StartsWith("\"До\" was not printed; that was: \""));
    EXPECT_EQ(play(u"expect no printed До"_s), "");
    EXPECT_EQ(play(u"expect no printed Спасибо"_s), "\"Спасибо\" was printed");
    EXPECT_EQ(play(u"expect no shown Спасибо"_s), "");
}

TEST_F(Expectation, SumsAreToTheKopeck)
{
    sell();
    EXPECT_EQ(play(u"expect sum 139.80"_s), "");
    EXPECT_EQ(play(u"expect sum 139.8"_s), "");
    EXPECT_EQ(play(u"expect sum 139.81"_s), "sum is 139.80, not 139.81");
    EXPECT_EQ(play(u"expect discount 10"_s), "");
    EXPECT_EQ(play(u"expect discount 9.99"_s), "discount is 10.00, not 9.99");
    EXPECT_EQ(play(u"expect points 30"_s), "");
    EXPECT_EQ(play(u"expect points 0"_s), "points is 30.00, not 0.00");
    playWell({ u"pay cash 100"_s });
    EXPECT_EQ(play(u"expect due 39.80"_s), "");
    EXPECT_EQ(play(u"expect due 139.80"_s), "due is 39.80, not 139.80");
}

TEST_F(Expectation, QueueIsCountedByState)
{
    EXPECT_EQ(play(u"expect queue 0"_s), "");
    EXPECT_EQ(play(u"expect queue 1"_s), "the queue holds 0, not 1");
    down = true;
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s });
    EXPECT_EQ(play(u"expect queue 1"_s), "");
    EXPECT_EQ(play(u"expect queue 1 pending"_s), "");
    EXPECT_EQ(play(u"expect queue 0 pending"_s), "the queue holds 1, not 0");
    EXPECT_EQ(play(u"expect queue 0 held"_s), "");
    EXPECT_EQ(play(u"expect queue 1 refused"_s), "the queue holds 0, not 1");
    EXPECT_EQ(play(u"expect queue 0 damaged"_s), "");
}

TEST_F(Expectation, WireIsThatOfTheLastStep)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s });
    EXPECT_EQ(play(u"expect wire"_s), "");
    EXPECT_EQ(play(u"expect wire Accrual"_s), "the exchanges were \"\", not \"Accrual\"");
    playWell({ u"card 9000000001"_s });
    EXPECT_EQ(play(u"expect wire IsCardValid GetCardBalance"_s), "");
    EXPECT_EQ(play(u"expect wire IsCardValid@first GetCardBalance"_s), "");
    EXPECT_EQ(play(u"expect wire IsCardValid@second GetCardBalance"_s),
              "the exchanges were \"IsCardValid@first GetCardBalance\", not \"IsCardValid@second GetCardBalance\"");
    EXPECT_EQ(play(u"expect wire GetCardBalance IsCardValid"_s),
              "the exchanges were \"IsCardValid GetCardBalance\", not \"GetCardBalance IsCardValid\"");
    EXPECT_EQ(play(u"expect wire IsCardValid"_s),
              "the exchanges were \"IsCardValid GetCardBalance\", not \"IsCardValid\"");
    EXPECT_EQ(play(u"expect wire"_s), "the exchanges were \"IsCardValid GetCardBalance\", not \"\"");
    playWell({ u"say x"_s });
    EXPECT_EQ(play(u"expect wire"_s), "");
}

TEST_F(Expectation, BalanceIsTheServices)
{
    books = R"({"cheques":[],"cards":[{"number":"9000000001","balance":"970.50"}]})";
    EXPECT_EQ(play(u"expect balance 9000000001 970.50"_s), "");
    EXPECT_EQ(play(u"expect balance 9000000001 970.51"_s), "balance is 970.50, not 970.51");
    EXPECT_EQ(play(u"expect balance 9000000002 1"_s), "the service has no card 9000000002");
}

TEST_F(Expectation, BooksAgreeOrDifferWithTheReason)
{
    EXPECT_EQ(play(u"expect books agree"_s), "");
    playWell({ u"open sale 7"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s });
    EXPECT_EQ(play(u"expect books agree"_s), "the books differ at cheque 7 sale: the service does not have it");
}
