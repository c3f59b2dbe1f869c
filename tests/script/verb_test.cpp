#include "tests/script/script_till.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

// What each verb does, and what it shows.

namespace {

class Verb : public ScriptTill { };

} // namespace

TEST_F(Verb, LineIsShownAsItWasWritten)
{
    playWell({ u"open  sale 1   # first"_s });
    EXPECT_EQ(output(), "> open  sale 1   # first");
}

TEST_F(Verb, SayWritesAHeadlineAlone)
{
    playWell({ u"say The  story \"of a\" sale"_s });
    EXPECT_EQ(output(), "\n== The story of a sale ==");
}

TEST_F(Verb, OpenTakesANumberOrTheNext)
{
    playWell({ u"open sale 7"_s, u"cancel"_s, u"open return"_s });
    EXPECT_EQ(checkout->document()->getChequeNumber(), 8);
    EXPECT_EQ(checkout->document()->getDocumentType(), 2);
}

TEST_F(Verb, ScanReadsItsArgumentsInAnyOrder)
{
    playWell({ u"open sale"_s, u"scan 461 code 77 no-points min 60.50 @89.90 no-earn x2.5 no-discount"_s });
    const auto line = checkout->contents().liveLines().constFirst();
    EXPECT_EQ(line->getBcode().toStdString(), "461");
    EXPECT_EQ(line->getCode().toStdString(), "77");
    EXPECT_EQ(line->getPrice(), 89.90);
    EXPECT_EQ(line->getMinPrice(), 60.50);
    EXPECT_EQ(line->getQuantity(), 2.5);
    EXPECT_FALSE(line->isAllowDiscount());
    EXPECT_FALSE(line->isAllowBonusSpend());
    EXPECT_FALSE(line->isAllowBonusEarn());
}

TEST_F(Verb, ScanHasDefaults)
{
    playWell({ u"open sale"_s, u"scan 461 @5"_s });
    const auto line = checkout->contents().liveLines().constFirst();
    EXPECT_EQ(line->getCode().toStdString(), "461");
    EXPECT_EQ(line->getMinPrice(), 0.0);
    EXPECT_EQ(line->getQuantity(), 1.0);
    EXPECT_TRUE(line->isAllowDiscount() && line->isAllowBonusSpend() && line->isAllowBonusEarn());
}

TEST_F(Verb, PhoneIsAnsweredWithItsCode)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"phone +79990000001 code 1234"_s });
    EXPECT_EQ(play(u"expect ok"_s), "");
    EXPECT_THAT(output(), HasSubstr("    Введите код подтверждения: 1234\n    Карта 9000000001, баллов: 1000.00"));
}

TEST_F(Verb, PhoneWithAWrongCodeFails)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"phone +79990000001 code 4321"_s });
    EXPECT_EQ(play(u"expect failed"_s), "");
    EXPECT_EQ(play(u"expect shown \"Неверный код\""_s), "");
}

TEST_F(Verb, CodeThatNobodyAskedForIsNotKept)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s });
    results["GetVerifyCode"] = "";
    playWell({ u"phone +79990000001 code 1234"_s });
    EXPECT_EQ(play(u"expect failed"_s), "");
    results["GetVerifyCode"] = "1234:9000000001";
    playWell({ u"phone +79990000001"_s });
    EXPECT_EQ(play(u"expect failed"_s), "") << "nobody has answered this time";
}

TEST_F(Verb, CodeOfARefusedStepIsNotKept)
{
    playWell({ u"phone +79990000001 code 1234"_s });
    EXPECT_EQ(play(u"expect refused \"no cheque is open\""_s), "");
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"phone +79990000001"_s });
    EXPECT_EQ(play(u"expect failed"_s), "");
}

TEST_F(Verb, WholeSale)
{
    playWell({ u"open sale 1042"_s,
               u"scan 461 x2 @89.90"_s,
               u"scan 462 @450.00"_s,
               u"remove 2"_s,
               u"scan 463 @20"_s,
               u"position 1"_s,
               u"card 9000000001"_s,
               u"expect ok"_s,
               u"coupon c-1"_s,
               u"expect ok"_s,
               u"coupon c-2"_s,
               u"coupon delete c-2"_s,
               u"expect ok"_s,
               u"request"_s,
               u"expect ok"_s,
               u"points"_s,
               u"expect ok"_s,
               u"expect points 50"_s,
               u"rollback"_s,
               u"expect ok"_s,
               u"points 30"_s,
               u"pay certificate 70001 50"_s,
               u"pay cash 9.80"_s,
               u"pay cash"_s,
               u"close"_s,
               u"expect ok"_s,
               u"expect printed Спасибо"_s });
    EXPECT_FALSE(checkout->isOpen());
}

TEST_F(Verb, SetAsideReturnAndCancel)
{
    playWell({ u"open sale 5"_s,    u"scan 461 @50"_s,  u"putout"_s,        u"reveal 5 6"_s,
               u"pay cash"_s,       u"close"_s,         u"expect ok"_s,     u"open return-of 6 9"_s,
               u"take 1"_s,         u"expect sum 40"_s, u"close"_s,         u"expect ok"_s,
               u"open sale 10"_s,   u"scan 461 @50"_s,  u"cancel"_s,        u"expect ok"_s,
               u"open return 11"_s, u"scan 461 @50"_s,  u"cancel anyway"_s, u"expect ok"_s });
}

TEST_F(Verb, DeliverEmptiesTheQueueAndTellsTheCount)
{
    down = true;
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s, u"expect queue 1 pending"_s });
    EXPECT_THAT(output(), EndsWith("    in the queue, waiting for delivery: 1"));
    playWell({ u"deliver"_s, u"expect failed"_s });
    EXPECT_THAT(output(), HasSubstr("delivered 0, stepped aside 0"));
    down = false;
    playWell({ u"deliver"_s, u"expect ok"_s, u"expect queue 0"_s, u"expect wire OfflineAccrual@first"_s });
    EXPECT_THAT(output(), HasSubstr("delivered 1, stepped aside 0"));
}

TEST_F(Verb, ClosingAndCancellingTellWhatWaits)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s });
    EXPECT_THAT(output(), Not(HasSubstr("in the queue")));
    down = true;
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s });
    EXPECT_THAT(output(), EndsWith("    in the queue, waiting for delivery: 1"));
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"cancel"_s });
    EXPECT_THAT(output(), HasSubstr("    in the queue, waiting for delivery: "));
    till::store::setAside(till::store::queueRecords().first().id, till::store::RecordState::refused, 1, u"-"_s);
    down = false;
    playWell({ u"deliver"_s, u"open sale"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s });
    EXPECT_THAT(output(), Not(HasSubstr("in the queue"))) << "what is refused does not wait";
}

TEST_F(Verb, QueueThatCannotBeReadDoesNotUndoTheClose)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"pay cash"_s });
    QSqlQuery hidden = till::store::prepare(u"ALTER TABLE queue RENAME TO hidden"_s);
    till::store::execute(hidden);
    playWell({ u"close"_s, u"expect ok"_s });
    EXPECT_THAT(output(), HasSubstr("    the queue cannot be read: "));
    EXPECT_FALSE(checkout->isOpen());
}

TEST_F(Verb, CrashIsWhatTheHostSays)
{
    playWell({ u"crash"_s });
    EXPECT_EQ(crashes, 1);
}

TEST_F(Verb, ServerReachesTheControlAddress)
{
    playWell({ u"server stop"_s, u"server first start"_s, u"server first clear"_s, u"server fault drop"_s,
               u"server first fault delay Accrual 2 =500"_s });
    EXPECT_EQ(controlCalls(),
              "POST /stop \nPOST /start \nDELETE /faults \nPOST /faults { \"kind\": \"drop\" }\n"
              "POST /faults { \"arg\": \"500\", \"kind\": \"delay\", \"operation\": \"Accrual\", \"times\": 2 }\n");
}

TEST_F(Verb, ServerTellsWhatTheSandboxObjectsTo)
{
    controlStatus = 400;
    controlBody = R"({"error":"there is no fault \"dance\""})";
    EXPECT_THAT(play(u"server fault dance"_s),
                testing::StartsWith("the sandbox says: there is no fault \"dance\" (usage: server"));
    controlBody = "";
    EXPECT_THAT(play(u"server stop"_s), testing::StartsWith("the sandbox says: HTTP status 400 (usage"));
}

TEST_F(Verb, ShowCheque)
{
    playWell({ u"open sale 7"_s, u"scan 461 x2 @89.90"_s, u"request"_s });
    static_cast<void>(output());
    playWell({ u"show cheque"_s });
    EXPECT_EQ(output(),
              "    cheque 7, type 1\n    1  461  89.90 x 2 = 169.80\n    discount 10.00, points 0.00, sum 169.80, due "
              "169.80");
}

TEST_F(Verb, ShowQueue)
{
    playWell({ u"show queue"_s });
    EXPECT_EQ(output(), "    the queue is empty");
    down = true;
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s });
    till::store::setAside(1, till::store::RecordState::refused, 1, u"Отказ"_s);
    static_cast<void>(output());
    playWell({ u"show queue"_s });
    const std::string shown = output();
    EXPECT_THAT(shown, testing::StartsWith("    1  "));
    EXPECT_THAT(shown, testing::EndsWith("  refused  Отказ"));
}

TEST_F(Verb, ShowWire)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"request"_s });
    static_cast<void>(output());
    playWell({ u"show wire"_s });
    EXPECT_EQ(output(), "    first GetDiscounts: 200\n    first GetMessages: 200");
}

TEST_F(Verb, ShowWireTellsWhyThereWasNoReply)
{
    playWell({ u"open sale"_s, u"scan 461 @50"_s });
    down = true;
    playWell({ u"request"_s });
    static_cast<void>(output());
    playWell({ u"show wire"_s });
    EXPECT_THAT(output(), testing::AllOf(testing::StartsWith("    first GetDiscounts: "), Not(HasSubstr(": 0"))));
}

TEST_F(Verb, ShowSlipIsTheLastOfAll)
{
    playWell({ u"show slip"_s });
    EXPECT_EQ(output(), "    | no slip was printed");
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s, u"say later"_s });
    static_cast<void>(output());
    playWell({ u"show slip"_s });
    EXPECT_THAT(output(), testing::AllOf(testing::StartsWith("    | "), HasSubstr("Спасибо")));
}

TEST_F(Verb, ShowBooks)
{
    playWell({ u"open sale 7"_s, u"scan 461 @50"_s, u"pay cash"_s, u"close"_s });
    static_cast<void>(output());
    playWell({ u"show books"_s });
    const std::string shown = output();
    EXPECT_THAT(shown, HasSubstr("7 sale"));
    EXPECT_THAT(shown, HasSubstr("the service does not have it"));
    EXPECT_THAT(shown, HasSubstr("The two books differ at 1 of 1 cheques."));
}

TEST_F(Verb, WireIsToldWithEachExchangeOnDemand)
{
    startPlayer(true, true);
    playWell({ u"open sale"_s, u"scan 461 @50"_s, u"request"_s });
    const std::string shown = output();
    EXPECT_THAT(shown,
                HasSubstr("    → " + service.url().toString().toStdString() + " GetDiscounts\n<soapenv:Envelope"));
    EXPECT_THAT(shown, HasSubstr("    ← 200, "));
    EXPECT_THAT(shown, HasSubstr("<GetDiscountsResponse"));
    down = true;
    playWell({ u"request"_s });
    EXPECT_THAT(output(), HasSubstr("    ← "));
}
