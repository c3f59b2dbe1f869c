#include "tests/support/loopback_server.h"
#include "tests/till/rest_client_support.h"

#include <QCoreApplication>
#include <QTimer>

#include <gmock/gmock.h>
#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <future>
#include <limits>
#include <thread>
#include <vector>

using namespace std::chrono_literals;
using namespace vantiro_test;
using testing::HasSubstr;

namespace {

using Clock = std::chrono::steady_clock;

struct Waited {
    std::string ending;
    std::string errorText;
    Clock::duration time {};
};

Waited timedPost(const QUrl& url, int timeout, const QByteArray& body = "body")
{
    RestClient client;
    client.setTimeout(timeout);
    const auto start = Clock::now();
    client.post(url, body, {});
    return { ending(client), errorText(client), Clock::now() - start };
}

void expectTimeout(const Waited& waited, std::chrono::seconds timeout)
{
    EXPECT_EQ(waited.ending, "no reply 0");
    EXPECT_THAT(waited.errorText, HasSubstr("ответ не пришёл целиком за " + std::to_string(timeout.count()) + " с"));
    EXPECT_GE(waited.time, timeout - 50ms);
    EXPECT_LT(waited.time, timeout + 500ms);
}

TEST(RestClientTime, SilentServerEndsWithTheTimeout)
{
    const LoopbackServer server(Answer::silence());
    expectTimeout(timedPost(server.url(), 1), 1s);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST(RestClientTime, ServerThatTakesNothingEndsWithTheTimeout)
{
    const DeafPort port;
    expectTimeout(timedPost(port.url(), 1, QByteArray(32 * 1024 * 1024, 'x')), 1s);
}

TEST(RestClientTime, TimeoutInTheMiddleOfTheBodyIsNoReply)
{
    const LoopbackServer server(Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nabc").keepSilent());
    expectTimeout(timedPost(server.url(), 1), 1s);
}

TEST(RestClientTime, TimeoutInTheMiddleOfTheHeadIsNoReply)
{
    const LoopbackServer server(Answer::raw("HTTP/1.1 200 OK\r\nContent-Le").keepSilent());
    expectTimeout(timedPost(server.url(), 1), 1s);
}

TEST(RestClientTime, DrippingBodyDoesNotStretchTheTimeout)
{
    const LoopbackServer server(
        Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n").drip(QByteArray(1000, 'x'), 1, 50ms));
    expectTimeout(timedPost(server.url(), 1), 1s);
}

TEST(RestClientTime, DrippingHeadDoesNotStretchTheTimeout)
{
    const LoopbackServer server(Answer::nothing().drip("HTTP/1.1 200 OK\r\n" + QByteArray(1000, 'x'), 1, 50ms));
    expectTimeout(timedPost(server.url(), 1), 1s);
}

TEST(RestClientTime, InterimRepliesDoNotStretchTheTimeout)
{
    Answer answer = Answer::nothing();
    for (int count = 0; count < 100; ++count) {
        answer.send("HTTP/1.1 100 Continue\r\n\r\n").pause(50ms);
    }
    const LoopbackServer server(answer);
    expectTimeout(timedPost(server.url(), 1), 1s);
}

TEST(RestClientTime, SlowReplyWithinTheTimeoutIsAReply)
{
    const LoopbackServer server(Answer::nothing().pause(700ms).send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"));
    EXPECT_EQ(timedPost(server.url(), 2).ending, "success 200");
}

TEST(RestClientTime, TimeoutBelowOneIsFiveSeconds)
{
    const LoopbackServer server(Answer::silence());
    std::vector<std::future<Waited>> posts;
    for (const int timeout : { 0, -1, std::numeric_limits<int>::min() }) {
        posts.push_back(
            std::async(std::launch::async, [&server, timeout] { return timedPost(server.url(), timeout); }));
    }
    posts.push_back(std::async(std::launch::async, [&server] {
        RestClient client;
        const auto start = Clock::now();
        client.post(server.url(), "body", {});
        return Waited { ending(client), errorText(client), Clock::now() - start };
    }));
    for (std::future<Waited>& post : posts) {
        expectTimeout(post.get(), 5s);
    }
}

TEST(RestClientTime, LongestTimeoutIsATimeout)
{
    const LoopbackServer server(Answer::reply(200));
    EXPECT_EQ(timedPost(server.url(), std::numeric_limits<int>::max()).ending, "success 200");
}

TEST(RestClientTime, TimeoutHoldsForEachLaterPost)
{
    const LoopbackServer server(Answer::silence());
    RestClient client;
    client.setTimeout(1);
    for (int count = 0; count < 2; ++count) {
        const auto start = Clock::now();
        client.post(server.url(), "body", {});
        EXPECT_EQ(ending(client), "no reply 0");
        EXPECT_LT(Clock::now() - start, 1500ms);
    }
}

TEST(RestClientTime, NothingElseOfTheThreadRunsMeanwhile)
{
    const LoopbackServer server(Answer::nothing().pause(300ms).send("HTTP/1.1 204 No Content\r\n\r\n"));
    QTimer timer;
    bool ran = false;
    QObject::connect(&timer, &QTimer::timeout, [&ran] { ran = true; });
    timer.start(0);
    EXPECT_EQ(timedPost(server.url(), 2).ending, "success 204");
    EXPECT_FALSE(ran);
    QCoreApplication::processEvents();
    EXPECT_TRUE(ran);
}

std::atomic<int> signalsSeen = 0;

/// Interrupts the system calls of the thread that makes this object, again and again.
class Interruptions {
public:
    Interruptions()
        : target(pthread_self())
    {
        struct sigaction action { };
        action.sa_handler = [](int) { ++signalsSeen; };
        sigaction(SIGUSR1, &action, &former);
        sender = std::thread([this] {
            while (!done) {
                pthread_kill(target, SIGUSR1);
                std::this_thread::sleep_for(5ms);
            }
        });
    }

    ~Interruptions()
    {
        done = true;
        sender.join();
        sigaction(SIGUSR1, &former, nullptr);
    }

    Q_DISABLE_COPY_MOVE(Interruptions)

private:
    pthread_t target;
    struct sigaction former { };
    std::atomic<bool> done = false;
    std::thread sender;
};

TEST(RestClientTime, SignalsNeitherStretchNorShortenTheTimeout)
{
    const LoopbackServer server(Answer::silence());
    signalsSeen = 0;
    const Interruptions interruptions;
    expectTimeout(timedPost(server.url(), 1), 1s);
    EXPECT_GT(signalsSeen, 10);
}

TEST(RestClientTime, SignalsDoNotDamageAReply)
{
    const QByteArray body(2 * 1024 * 1024, 'x');
    const LoopbackServer server(
        Answer::nothing().pause(200ms).send("HTTP/1.1 200 OK\r\nContent-Length: 2097152\r\n\r\n" + body));
    signalsSeen = 0;
    const Interruptions interruptions;
    RestClient client;
    client.post(server.url(), body, {});
    EXPECT_TRUE(client.getResponseBody() == body);
    EXPECT_TRUE(server.requests().at(0).body == body);
    EXPECT_GT(signalsSeen, 10);
}

}
