#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"
#include "tests/support/loopback_server.h"

#include <gtest/gtest.h>

#include <thread>

// Pings over a real connection.

namespace {

using vantiro_test::Answer;
using vantiro_test::ClosedPort;
using vantiro_test::LoopbackServer;

int indexOf(const QSharedPointer<TaskResult>& result)
{
    return result->data.value(QStringLiteral("serverIndex")).toInt();
}

}

TEST(LoopbackPing, PassesServersThatDoNotAnswerWithSuccess)
{
    const ClosedPort refused;
    const LoopbackServer faulty(Answer::reply(500, soap::reply(soap::fault("отказ"))));
    const LoopbackServer silent(Answer::silence());
    const LoopbackServer other(Answer::raw("HTTP/1.1 204 No Content\r\n\r\n"));
    ClientUnderTest client(
        { refused.url().toString(), faulty.url().toString(), silent.url().toString(), other.url().toString() });
    client.setTimeout(1);

    EXPECT_EQ(indexOf(client.ping()), 3);

    EXPECT_EQ(faulty.requests().size(), 1);
    EXPECT_EQ(silent.requests().size(), 1);
    ASSERT_EQ(other.requests().size(), 1);
    EXPECT_EQ(readable(other.requests().constFirst().header("SOAPAction")), "http://tempuri.org/IVantiroService/Ping");
    EXPECT_EQ(readable(other.requests().constFirst().body), readable(soap::request("  <tem:Ping/>\n")));
}

TEST(LoopbackPing, NoServerIsMinusOne)
{
    const ClosedPort refused;
    ClientUnderTest client({ refused.url().toString(), QString(), QStringLiteral("http://[::1") });
    client.setTimeout(1);

    EXPECT_EQ(indexOf(client.ping()), -1);
}

TEST(LoopbackPing, TrafficGoesToTheLogOfTheTasks)
{
    const LoopbackServer faulty(Answer::reply(500, "x"));
    const LoopbackServer other(Answer::reply(200, "pong"));
    ClientUnderTest client({ faulty.url().toString(), other.url().toString() });
    client.setTimeout(5);
    const LogRecorder log;

    EXPECT_EQ(indexOf(client.ping()), 1);

    EXPECT_EQ(log.of(QStringLiteral("taskmanager/vantiroping")).size(), 2) << readable(log.lines());
    EXPECT_EQ(log.lines().size(), 2) << readable(log.lines());
}

TEST(LoopbackPing, HasAClientOfItsOwnBesideAnExchange)
{
    const LoopbackServer faulty(Answer::reply(500, soap::reply(soap::fault("отказ"))));
    const LoopbackServer other(Answer::reply(200, soap::reply("<Answer/>")));
    ClientUnderTest client({ faulty.url().toString(), other.url().toString() });
    client.setTimeout(5);

    QList<int> found;
    std::thread pinging([&client, &found] {
        for (int round = 0; round < 20; ++round) {
            found.append(indexOf(client.ping()));
        }
    });
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::fault("отказ"));
    }
    pinging.join();

    EXPECT_EQ(found, QList<int>(20, 1));
}
