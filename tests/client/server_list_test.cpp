#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

#include <limits>

// Server lists that a shop may get wrong, and indexes that nobody has checked. They must cost the till nothing but its
// connection.

namespace {

const QString first = QStringLiteral("http://first/");
const QString second = QStringLiteral("http://second/");
const QString third = QStringLiteral("http://third/");

const RestOutcome down = RestOutcome::connectionError(QStringLiteral("соединение отклонено"));

RestOutcome good()
{
    return RestOutcome::http(200, soap::reply("<Answer/>"));
}

/// The posts that went to a server at all.
QStringList reached(const ScriptedRestClient& servers)
{
    QStringList urls = servers.asked();
    urls.removeAll(QString());
    return urls;
}

}

TEST(ServerList, EmptyListIsNoConnection)
{
    const ScriptedRestClient servers;
    ClientUnderTest client({});
    const LogRecorder log;

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::noConnection);

    EXPECT_EQ(readable(reached(servers)), "");
    EXPECT_EQ(client.currentServerIndex, 0);
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().constFirst().startsWith(u"error vantiro: Произошла ошибка при выполнении запроса"))
        << readable(log.lines());
}

TEST(ServerList, EmptyListWithAnyIndexIsNoConnection)
{
    for (const int index : { 1, -2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() }) {
        const ScriptedRestClient servers;
        ClientUnderTest client({});
        client.changeServer(index);

        EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::noConnection);

        EXPECT_EQ(client.currentServerIndex, index);
    }
}

TEST(ServerList, IndexBeyondTheListWalksItFromTheTop)
{
    for (const int index : { 7, 3, -2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() }) {
        ScriptedRestClient servers;
        servers.at(first, down);
        servers.at(second, down);
        servers.at(third, down);
        ClientUnderTest client({ first, second, third });
        client.changeServer(index);

        EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::noConnection);

        EXPECT_EQ(readable(reached(servers)), "http://first/\nhttp://second/\nhttp://third/") << "index " << index;
        EXPECT_EQ(client.currentServerIndex, index);
    }
}

TEST(ServerList, IndexBeyondTheListFindsAServer)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, good());
    ClientUnderTest client({ first, second, third });
    client.changeServer(7);

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(reached(servers)), "http://first/\nhttp://second/");
    EXPECT_EQ(client.currentServerIndex, 1);
}

TEST(ServerList, IndexBeyondAListOfOneIsNoConnectionWhenThatOneIsDown)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    ClientUnderTest client({ first });
    client.changeServer(7);

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::noConnection);

    EXPECT_EQ(readable(reached(servers)), "http://first/");
    EXPECT_EQ(client.currentServerIndex, 7);
}

TEST(ServerList, UnparsableAddressIsNoConnection)
{
    for (const QString& url : { QStringLiteral("http://[::1"), QStringLiteral("::"), QString(),
                                QStringLiteral("http://a:99999/"), QStringLiteral(" http://first/") }) {
        const ScriptedRestClient servers;
        ClientUnderTest client({ url });

        EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), failure::noConnection) << readable(url);
    }
}

TEST(ServerList, UnparsableAddressIsWalkedPast)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(third, good());
    ClientUnderTest client({ first, QStringLiteral("http://[::1"), third });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(servers.asked()), "http://first/\n\nhttp://third/");
    EXPECT_EQ(client.currentServerIndex, 2);
}

TEST(ServerList, EmptyPlaceInUseStartsTheWalk)
{
    ScriptedRestClient servers;
    servers.at(second, good());
    ClientUnderTest client({ QString(), second });

    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");

    EXPECT_EQ(readable(servers.asked()), "\nhttp://second/");
    EXPECT_EQ(client.currentServerIndex, 1);
}
