#include "tests/delivery/delivery_till.h"
#include "tests/support/loopback_server.h"
#include "till/delivery/delivery_worker.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using till::Delivery;
using till::DeliveryWorker;
using vantiro_test::Answer;
using vantiro_test::HttpRequest;
using vantiro_test::LoopbackServer;

// The delivery on a thread of its own, with the real client, real connections over loopback and the real store. The
// thread sanitizer watches.

namespace {

constexpr auto patience = 30s;

/// A gate at which the server's answers wait. Closed at first.
class Gate {
public:
    ~Gate()
    {
        open();
    }

    void open()
    {
        {
            const std::lock_guard lock(mutex);
            isOpen = true;
        }
        changed.notify_all();
    }

    void pass()
    {
        std::unique_lock lock(mutex);
        ++arrived;
        changed.notify_all();
        changed.wait_for(lock, patience, [this] { return isOpen; });
    }

    [[nodiscard]] bool waitForArrival()
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, patience, [this] { return arrived > 0; });
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    bool isOpen = false;
    int arrived = 0;
};

class Worker : public DeliveryTill {
protected:
    [[nodiscard]] static Delivery::Settings settings()
    {
        Delivery::Settings settings;
        settings.timeout = 10;
        settings.firstWait = 1h;
        settings.longestWait = 2h;
        return settings;
    }

    /// With one that tries again at once.
    [[nodiscard]] static Delivery::Settings hasty()
    {
        Delivery::Settings hasty = settings();
        hasty.firstWait = 1ms;
        return hasty;
    }

    [[nodiscard]] static std::string bodies(const LoopbackServer& server)
    {
        QByteArray all;
        const QList<HttpRequest> requests = server.requests();
        for (const HttpRequest& request : requests) {
            all += request.body;
        }
        return all.toStdString();
    }

    [[nodiscard]] static QString address(const LoopbackServer& server)
    {
        return server.url().toString();
    }
};

} // namespace

TEST_F(Worker, DeliversWhatStandsInTheQueueWhenItBegins)
{
    const LoopbackServer server(Answer::reply(200, goodReply));
    enqueue(u"a"_s, address(server));
    enqueue(u"b"_s, address(server));
    DeliveryWorker worker(settings());
    ASSERT_TRUE(worker.waitUntilIdle(patience));
    EXPECT_EQ(queue(), "");
    EXPECT_EQ(bodies(server), "<e>a</e><e>b</e>");
}

TEST_F(Worker, IsIdleWithAnEmptyQueue)
{
    DeliveryWorker worker(settings());
    EXPECT_TRUE(worker.waitUntilIdle(patience));
}

TEST_F(Worker, IsWokenForWhatIsQueuedLater)
{
    const LoopbackServer server(Answer::reply(200, goodReply));
    DeliveryWorker worker(settings());
    ASSERT_TRUE(worker.waitUntilIdle(patience));
    for (const QString& text : { u"a"_s, u"b"_s, u"c"_s }) {
        enqueue(text, address(server));
        worker.wake();
        ASSERT_TRUE(worker.waitUntilIdle(patience));
        ASSERT_EQ(queue(), "");
    }
    EXPECT_EQ(bodies(server), "<e>a</e><e>b</e><e>c</e>");
}

TEST_F(Worker, TriesAgainByItselfWhenItIsTime)
{
    std::atomic<int> asked = 0;
    const LoopbackServer server([&asked](const HttpRequest&) {
        return ++asked < 3 ? Answer(Answer::nothing().hangUp()) : Answer::reply(200, goodReply);
    });
    enqueue(u"a"_s, address(server));
    Delivery::Settings quick = settings();
    quick.firstWait = 20ms;
    const DeliveryWorker worker(quick);
    QElapsedTimer timer;
    for (timer.start(); !queue().empty() && timer.elapsed() < 30'000;) {
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_EQ(queue(), "");
    EXPECT_EQ(bodies(server), "<e>a</e><e>a</e><e>a</e>");
}

TEST_F(Worker, SleepsWhileItsMessageWaits)
{
    const LoopbackServer server(Answer::nothing().hangUp());
    enqueue(u"a"_s, address(server));
    DeliveryWorker worker(settings());
    ASSERT_TRUE(worker.waitUntilIdle(patience));
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(bodies(server), "<e>a</e>") << "the next one is due in half an hour at the earliest";
}

TEST_F(Worker, WakingKeepsTimesOfWaiting)
{
    const LoopbackServer server(Answer::nothing().hangUp());
    enqueue(u"a"_s, address(server));
    DeliveryWorker worker(settings());
    ASSERT_TRUE(worker.waitUntilIdle(patience));
    for (int i = 0; i < 3; ++i) {
        worker.wake(); // as each line of a long outage does
        ASSERT_TRUE(worker.waitUntilIdle(patience));
    }
    EXPECT_THAT(queue(), testing::StartsWith("1 pending: "));
    EXPECT_EQ(bodies(server), "<e>a</e>");
}

TEST_F(Worker, IsNotIdleWithAPostInFlight)
{
    Gate gate;
    const LoopbackServer server([&gate](const HttpRequest&) {
        gate.pass();
        return Answer::reply(200, goodReply);
    });
    enqueue(u"a"_s, address(server));
    DeliveryWorker worker(settings());
    ASSERT_TRUE(gate.waitForArrival());
    EXPECT_FALSE(worker.waitUntilIdle(100ms));
    EXPECT_EQ(queue(), "1 pending");
    gate.open();
    EXPECT_TRUE(worker.waitUntilIdle(patience));
    EXPECT_EQ(queue(), "");
}

TEST_F(Worker, WakingDuringARoundWaitsForTheRoundThatFollows)
{
    Gate gate;
    std::atomic<int> asked = 0;
    const LoopbackServer server([&](const HttpRequest&) {
        if (++asked == 1) {
            gate.pass();
            return Answer(Answer::nothing().hangUp()); // a round that delivers nothing
        }
        std::this_thread::sleep_for(300ms);
        return Answer::reply(200, goodReply);
    });
    enqueue(u"a"_s, address(server));
    DeliveryWorker worker(hasty());
    ASSERT_TRUE(gate.waitForArrival());
    worker.wake();
    gate.open();
    std::this_thread::sleep_for(100ms); // the second round has begun
    EXPECT_TRUE(worker.waitUntilIdle(patience));
    EXPECT_EQ(queue(), "") << "idle was told of the first round";
}

TEST_F(Worker, EndsAfterThePostInFlight)
{
    Gate gate;
    const LoopbackServer server([&gate](const HttpRequest&) {
        gate.pass();
        return Answer::reply(200, goodReply);
    });
    enqueue(u"a"_s, address(server));
    enqueue(u"b"_s, address(server));
    std::thread opener;
    {
        const DeliveryWorker worker(settings());
        ASSERT_TRUE(gate.waitForArrival());
        opener = std::thread([&gate] {
            std::this_thread::sleep_for(100ms);
            gate.open();
        });
    }
    opener.join();
    EXPECT_EQ(bodies(server), "<e>a</e>") << "no further post is begun";
    EXPECT_EQ(queue(), "2 pending") << "what was answered is out of the queue";
}

TEST_F(Worker, EndsWithinTheTimeoutOfASilentServer)
{
    const LoopbackServer server(Answer::silence());
    enqueue(u"a"_s, address(server));
    Delivery::Settings impatient = settings();
    impatient.timeout = 1;
    QElapsedTimer timer;
    {
        const DeliveryWorker worker(impatient);
        for (timer.start(); server.connections() == 0 && timer.elapsed() < 30'000;) {
            std::this_thread::sleep_for(5ms);
        }
        timer.restart();
    }
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_THAT(queue(), testing::StartsWith("1 pending: "));
}

TEST_F(Worker, StoreThatIsClosedMeanwhileIsLoggedAndTriedAgain)
{
    const LoopbackServer server(Answer::reply(200, goodReply));
    DeliveryWorker worker(settings());
    ASSERT_TRUE(worker.waitUntilIdle(patience));
    closeStore();
    worker.wake();
    EXPECT_FALSE(worker.waitUntilIdle(200ms)) << "it has not looked at anything";
    EXPECT_THAT(log.of(u"till/delivery"_s).join(u'\n').toStdString(),
                testing::HasSubstr("error: Ошибка базы данных кассы: no store is open"));
    reopen();
    enqueue(u"a"_s, address(server));
    worker.wake();
    ASSERT_TRUE(worker.waitUntilIdle(patience));
    EXPECT_EQ(queue(), "");
}

TEST_F(Worker, StoreThatIsClosedDuringAPostDeliversItAgainLater)
{
    Gate gate;
    const LoopbackServer server([&gate](const HttpRequest&) {
        gate.pass();
        return Answer::reply(200, goodReply);
    });
    enqueue(u"a"_s, address(server));
    DeliveryWorker worker(settings());
    ASSERT_TRUE(gate.waitForArrival());
    closeStore();
    gate.open();
    EXPECT_FALSE(worker.waitUntilIdle(300ms));
    reopen();
    EXPECT_EQ(queue(), "1 pending");
    worker.wake();
    ASSERT_TRUE(worker.waitUntilIdle(patience));
    EXPECT_EQ(queue(), "");
    EXPECT_EQ(bodies(server), "<e>a</e><e>a</e>");
}

TEST_F(Worker, WorksBesideTheThreadThatQueues)
{
    std::atomic<int> asked = 0;
    const LoopbackServer server([&asked](const HttpRequest&) {
        return ++asked % 7 == 0 ? Answer(Answer::nothing().hangUp()) : Answer::reply(200, goodReply);
    });
    std::string expected;
    {
        DeliveryWorker worker(hasty());
        for (int i = 0; i < 40; ++i) {
            enqueue(QString::number(i), address(server));
            worker.wake();
            expected += "<e>" + std::to_string(i) + "</e>";
        }
        QElapsedTimer timer;
        for (timer.start(); !queue().empty() && timer.elapsed() < 30'000;) {
            std::this_thread::sleep_for(10ms);
        }
    }
    EXPECT_EQ(queue(), "");
    std::string delivered; // each body once: a post that was hung up on is made again at once
    std::string former;
    for (const HttpRequest& request : server.requests()) {
        if (request.body.toStdString() != former) {
            former = request.body.toStdString();
            delivered += former;
        }
    }
    EXPECT_EQ(delivered, expected) << "in order, and none is lost";
}

TEST_F(Worker, BeginsAndEndsManyTimes)
{
    const LoopbackServer server(Answer::reply(200, goodReply));
    for (int i = 0; i < 20; ++i) {
        enqueue(QString::number(i), address(server));
        DeliveryWorker worker(settings());
        if (i % 2 == 0) {
            ASSERT_TRUE(worker.waitUntilIdle(patience));
        }
    }
    DeliveryWorker last(settings());
    ASSERT_TRUE(last.waitUntilIdle(patience));
    EXPECT_EQ(queue(), "");
}
