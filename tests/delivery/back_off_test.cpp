#include "tests/delivery/delivery_till.h"
#include "tests/support/scripted_rest_client.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using till::Delivery;

// How long a message waits that nobody has answered. Times are those of a scripted clock.

namespace {

class BackOff : public DeliveryTill {
protected:
    BackOff()
    {
        enqueue(u"a"_s);
    }

    [[nodiscard]] static Delivery::Settings settings(double random)
    {
        Delivery::Settings settings;
        settings.random = [random] { return random; };
        return settings;
    }

    /// So many posts that nobody answers, each as soon as it is due; what each leaves to wait, in milliseconds.
    [[nodiscard]] std::vector<qint64> failures(Delivery& delivery, int count)
    {
        std::vector<qint64> waiting;
        for (int i = 0; i < count; ++i) {
            rest.next(RestOutcome::connectionError(u"нет ответа"_s));
            (void)delivery.run();
            waiting.push_back(waits(clock.getCurrentTime()));
            clock.advance(std::chrono::milliseconds(waiting.back()));
        }
        return waiting;
    }

    [[nodiscard]] qsizetype postsOf(Delivery& delivery, bool force = false)
    {
        const qsizetype before = rest.posts().size();
        (void)delivery.run(force);
        return rest.posts().size() - before;
    }

    ScriptedRestClient rest;
    ScriptedTime clock;
};

} // namespace

TEST_F(BackOff, DoublesUpToTheLongest)
{
    Delivery delivery(settings(0.0));
    EXPECT_EQ(failures(delivery, 10),
              (std::vector<qint64> { 2000, 4000, 8000, 16000, 32000, 64000, 128000, 256000, 300000, 300000 }));
}

TEST_F(BackOff, IsCutByTheRandomPartOfAHalf)
{
    Delivery half(settings(0.5));
    EXPECT_EQ(failures(half, 3), (std::vector<qint64> { 1500, 3000, 6000 }));
}

TEST_F(BackOff, IsNeverCutByMoreThanAHalf)
{
    Delivery delivery(settings(0.999999));
    EXPECT_EQ(failures(delivery, 9),
              (std::vector<qint64> { 1001, 2001, 4001, 8001, 16001, 32001, 64001, 128001, 150001 }));
}

TEST_F(BackOff, OfTheSystemsRandomStaysWithinItsBounds)
{
    Delivery delivery({});
    const std::vector<qint64> waiting = failures(delivery, 5);
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        EXPECT_LE(waiting[i], 2000LL << i);
        EXPECT_GE(waiting[i], 1000LL << i);
    }
}

TEST_F(BackOff, SettingsAreKept)
{
    Delivery::Settings quick = settings(0.0);
    quick.firstWait = 10ms;
    quick.longestWait = 35ms;
    Delivery delivery(quick);
    EXPECT_EQ(failures(delivery, 4), (std::vector<qint64> { 10, 20, 35, 35 }));
}

TEST_F(BackOff, FailuresBeyondAllDoublingsAreTheLongestWaitStill)
{
    Delivery delivery(settings(0.0));
    EXPECT_EQ(failures(delivery, 70).back(), 300000);
}

TEST_F(BackOff, WrongAnswerWaitsLikeNone)
{
    Delivery delivery(settings(0.0));
    rest.next(RestOutcome::http(200, "<html/>"));
    EXPECT_EQ(postsOf(delivery), 1);
    EXPECT_EQ(waits(clock.getCurrentTime()), 2000);
}

TEST_F(BackOff, NothingIsPostedBeforeItsTime)
{
    Delivery delivery(settings(0.0));
    (void)failures(delivery, 1);
    clock.advance(-1ms);
    EXPECT_EQ(postsOf(delivery), 0);
    EXPECT_EQ(delivery.run().next->toUTC().toString(Qt::ISODateWithMs).toStdString(), "2026-11-21T12:00:02.000Z");
    clock.advance(1ms);
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_EQ(postsOf(delivery), 1);
}

TEST_F(BackOff, OutlivesTheProcess)
{
    Delivery before(settings(0.0));
    (void)failures(before, 4);
    clock.advance(-1s);
    Delivery after(settings(0.0));
    EXPECT_EQ(postsOf(after), 0) << "it is the message that waits";
    clock.advance(1s);
    EXPECT_EQ(failures(after, 1), (std::vector<qint64> { 2000 })) << "a new process begins anew";
}

TEST_F(BackOff, ForceLeavesItOut)
{
    Delivery delivery(settings(0.0));
    (void)failures(delivery, 1);
    clock.advance(-2s);
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_EQ(postsOf(delivery, true), 1);
    EXPECT_EQ(queue(), "");
}

TEST_F(BackOff, DeliveryEndsTheRow)
{
    Delivery delivery(settings(0.0));
    (void)failures(delivery, 5);
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_EQ(postsOf(delivery), 1);
    enqueue(u"b"_s);
    EXPECT_EQ(failures(delivery, 1), (std::vector<qint64> { 2000 }));
}

TEST_F(BackOff, RefusalEndsTheRow)
{
    Delivery delivery(settings(0.0));
    (void)failures(delivery, 5);
    rest.next(RestOutcome::http(500, faultReply("Отказ")));
    EXPECT_EQ(postsOf(delivery), 1);
    enqueue(u"b"_s);
    EXPECT_EQ(failures(delivery, 1), (std::vector<qint64> { 2000 }));
}

TEST_F(BackOff, ClockThatIsSetFarBackDoesNotFreezeTheQueue)
{
    Delivery delivery(settings(0.0));
    (void)failures(delivery, 3);
    clock.advance(-24h);
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_EQ(postsOf(delivery), 1);
}

TEST_F(BackOff, ClockThatIsSetBackALittleWaitsNoLongerThanTheLongest)
{
    Delivery delivery(settings(0.0));
    (void)failures(delivery, 3); // the last one waits for eight seconds
    clock.advance(-5min);
    EXPECT_EQ(postsOf(delivery), 0) << "due in exactly the longest time";
    clock.advance(-1ms);
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_EQ(postsOf(delivery), 1) << "due later than we would ever say";
}

TEST_F(BackOff, ClockThatIsSetAheadTriesAtOnce)
{
    Delivery delivery(settings(0.0));
    (void)failures(delivery, 6);
    clock.advance(8760h);
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_EQ(postsOf(delivery), 1);
}

TEST_F(BackOff, DamagedTimeIsNone)
{
    QSqlQuery query = till::store::prepare(u"UPDATE queue SET not_before = 'tomorrow'"_s);
    till::store::execute(query);
    Delivery delivery(settings(0.0));
    rest.next(RestOutcome::http(200, goodReply));
    EXPECT_EQ(postsOf(delivery), 1);
}
