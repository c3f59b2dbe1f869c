#include "host/facilities/rest_client.h"
#include "host/framework/activity_notifier.h"
#include "tests/support/client_under_test.h"
#include "tests/support/loopback_server.h"
#include "till/framework/task_runner.h"

#include <gtest/gtest.h>

#include <atomic>

// The one piece of work that leaves the thread of cheque operations, with the real parts of the till: connections over
// loopback, the thread pool, the notifier. The thread sanitizer watches.

namespace {

using vantiro_test::Answer;
using vantiro_test::HttpRequest;
using vantiro_test::LoopbackServer;

/// A server that can be taken down: then it hangs up without a word.
class Switched {
public:
    Switched()
        : server([this](const HttpRequest&) { return down ? Answer(Answer::nothing().hangUp()) : Answer::reply(200, "<a/>"); })
    {
    }

    std::atomic<bool> down = false;
    LoopbackServer server;
};

constexpr std::chrono::seconds patience { 20 };

} // namespace

TEST(PingInFlight, BringsTheBestServerBackWhenItAnswersAgain)
{
    Switched first;
    Switched second;
    till::TaskRunner runner;
    ClientUnderTest client({ first.server.url().toString(), second.server.url().toString() });
    client.setTimeout(5);

    first.down = true;
    (void)client.exchange();
    EXPECT_EQ(client.currentServerIndex, 1);

    client.actualizeServer(); // still down
    ASSERT_TRUE(runner.waitForIdle(patience));
    EXPECT_EQ(client.currentServerIndex, 1);

    first.down = false;
    client.actualizeServer();
    EXPECT_EQ(client.currentServerIndex, 1) << "nothing moves before the result is delivered";
    ASSERT_TRUE(runner.waitForIdle(patience));
    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(PingInFlight, RunsBesideRequestsAgainAndAgain)
{
    Switched first;
    Switched second;
    till::TaskRunner runner;
    ClientUnderTest client({ first.server.url().toString(), second.server.url().toString() });
    client.setTimeout(5);

    int moved = 0;
    for (int round = 0; round < 40; ++round) {
        first.down = true;
        (void)client.exchange(); // fails over
        ASSERT_EQ(client.currentServerIndex, 1);
        first.down = false;
        client.actualizeServer(); // the ping is under way from here on
        for (int request = 0; request < 5; ++request) {
            (void)client.exchange();
            ASSERT_EQ(client.currentServerIndex, 1) << "only the delivery of the result moves the index";
        }
        ASSERT_TRUE(runner.waitForIdle(patience));
        moved += client.currentServerIndex == 0 ? 1 : 0;
    }
    EXPECT_EQ(moved, 40);
}
