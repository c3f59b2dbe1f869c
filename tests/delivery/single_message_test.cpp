#include "host/facilities/exceptions.h"
#include "tests/delivery/delivery_till.h"
#include "tests/support/scripted_rest_client.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using till::Delivery;
using till::store::RecordState;

// A person at the queue: one message is held, released or sent, beside the delivery.

namespace {

class SingleMessage : public DeliveryTill {
protected:
    SingleMessage()
    {
        enqueue(u"a"_s);
        enqueue(u"b"_s);
        enqueue(u"c"_s);
    }

    [[nodiscard]] bool send(qint64 id)
    {
        return Delivery({}).send(*till::store::queueRecord(id));
    }

    [[nodiscard]] std::string latestBody() const
    {
        return rest.posts().isEmpty() ? "" : rest.posts().constLast().body.toStdString();
    }

    ScriptedRestClient rest;
    ScriptedTime clock;
};

} // namespace

TEST_F(SingleMessage, IsSentOutOfItsTurn)
{
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_TRUE(send(2));
    EXPECT_EQ(latestBody(), "<e>b</e>");
    EXPECT_EQ(queue(), "1 pending\n3 pending");
}

TEST_F(SingleMessage, IsSentWhateverItsTimeOfWaiting)
{
    till::store::postpone(1, 0, u"нет ответа"_s, clock.getCurrentTime().addSecs(60));
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_TRUE(send(1));
}

TEST_F(SingleMessage, ThatIsHeldIsSentAllTheSame)
{
    till::store::setAside(2, RecordState::held, 0, u"проверить"_s);
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_TRUE(send(2));
    EXPECT_EQ(queue(), "1 pending\n3 pending");
}

TEST_F(SingleMessage, ThatIsHeldStaysSoWhenNobodyAnswers)
{
    till::store::setAside(2, RecordState::held, 0, u"проверить"_s);
    rest.next(RestOutcome::connectionError(u"нет ответа"_s));
    EXPECT_FALSE(send(2));
    EXPECT_EQ(queue(), "1 pending\n2 held: нет ответа\n3 pending");
}

TEST_F(SingleMessage, ThatWasRefusedStaysSoWhenItIsAnsweredWrongly)
{
    till::store::setAside(2, RecordState::refused, 1, u"Отказ"_s);
    rest.next(RestOutcome::http(200, "<html/>"));
    EXPECT_FALSE(send(2));
    EXPECT_EQ(queue(), "1 pending\n2 refused, 2 wrong: the reply is no answer of the service\n3 pending");
}

TEST_F(SingleMessage, ThatIsRefusedStepsAside)
{
    rest.next(RestOutcome::http(500, faultReply("Отказ")));
    EXPECT_FALSE(send(1));
    EXPECT_EQ(queue(), "1 refused, 1 wrong: Отказ\n2 pending\n3 pending");
}

TEST_F(SingleMessage, ThatIsDamagedIsNotPosted)
{
    enqueueRaw(u"{"_s);
    EXPECT_FALSE(send(4));
    EXPECT_EQ(rest.posts().size(), 0);
}

TEST_F(SingleMessage, ThatAPersonHoldsDuringItsPostStaysHeld)
{
    rest.next(RestOutcome::connectionError(u"нет ответа"_s));
    rest.whilePosting([] { till::store::setAside(1, RecordState::held, 0, u"проверить"_s); });
    const Delivery::Outcome outcome = Delivery({}).run();
    EXPECT_TRUE(outcome.next.has_value());
    EXPECT_EQ(queue(), "1 held: нет ответа\n2 pending\n3 pending");
}

TEST_F(SingleMessage, ThatIsHeldBlocksNobody)
{
    till::store::setAside(1, RecordState::held, 0, u"проверить"_s);
    rest.next(RestOutcome::http(200, goodReply));
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_EQ(Delivery({}).run().delivered, 2);
    EXPECT_EQ(queue(), "1 held: проверить");
}

TEST_F(SingleMessage, ThatIsReleasedTakesItsPlaceAsIfNeverTried)
{
    till::store::setAside(1, RecordState::refused, 9, u"Отказ"_s);
    till::store::release(1);
    EXPECT_EQ(queue(), "1 pending\n2 pending\n3 pending");
    rest.next(RestOutcome::connectionError(u"нет ответа"_s));
    (void)Delivery({}).run();
    EXPECT_EQ(latestBody(), "<e>a</e>");
}

TEST_F(SingleMessage, ThatIsReleasedWaitsNoLonger)
{
    till::store::postpone(1, 2, u"нет ответа"_s, clock.getCurrentTime().addSecs(60));
    till::store::release(1);
    EXPECT_FALSE(till::store::queueRecord(1)->notBefore.isValid());
}

TEST_F(SingleMessage, OfAnUnknownStateIsLeftAlone)
{
    QSqlQuery statement = till::store::prepare(u"UPDATE queue SET state = 'sent' WHERE id = 1"_s);
    till::store::execute(statement);
    EXPECT_EQ(queue(), "1 damaged\n2 pending\n3 pending");
    EXPECT_EQ(till::store::firstPending()->id, 2);
}

TEST_F(SingleMessage, ThatIsGoneIsFoundNoMore)
{
    till::store::removeDelivered(2);
    EXPECT_FALSE(till::store::queueRecord(2).has_value());
    EXPECT_EQ(queue(), "1 pending\n3 pending");
    enqueue(u"d"_s);
    EXPECT_EQ(queue(), "1 pending\n3 pending\n4 pending") << "no number is used twice";
}

TEST_F(SingleMessage, TellsWhatWasQueued)
{
    const auto record = till::store::queueRecord(1);
    EXPECT_EQ(record->queue.toStdString(), "vantiro");
    EXPECT_TRUE(record->message.contains("<e>a</e>"));
    EXPECT_EQ(record->attempts, 0);
    EXPECT_TRUE(record->queuedAt.isValid());
    EXPECT_FALSE(record->notBefore.isValid());
}

TEST_F(SingleMessage, TimeOfWaitingSurvivesTheStoreToTheMillisecond)
{
    const QDateTime time = clock.getCurrentTime().addMSecs(1234);
    till::store::postpone(1, 0, QString(), time);
    reopen();
    EXPECT_EQ(till::store::queueRecord(1)->notBefore, time);
}

TEST_F(SingleMessage, EveryQuestionFailsWithoutAStore)
{
    closeStore();
    EXPECT_THROW((void)till::store::queueRecords(), BasicException);
    EXPECT_THROW((void)till::store::queueRecord(1), BasicException);
    EXPECT_THROW((void)till::store::firstPending(), BasicException);
    EXPECT_THROW(till::store::removeDelivered(1), BasicException);
    EXPECT_THROW(till::store::postpone(1, 0, {}, {}), BasicException);
    EXPECT_THROW(till::store::setAside(1, RecordState::held, 0, {}), BasicException);
    EXPECT_THROW(till::store::release(1), BasicException);
}
