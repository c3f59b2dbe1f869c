#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"
#include "tests/support/scripted_config.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

/// Notes which setters are called, and sets nothing.
class SettersNoted : public ClientUnderTest {
public:
    SettersNoted()
        : ClientUnderTest({})
    {
    }

    void setHosts(const QList<QUrl>& servers) override
    {
        QStringList urls;
        for (const QUrl& server : servers) {
            urls.append(server.toString());
        }
        calls.append(QStringLiteral("setHosts ") + urls.join(QStringLiteral(" | ")));
    }

    void setTimeout(int seconds) override
    {
        calls.append(QStringLiteral("setTimeout %1").arg(seconds));
    }

    void setAuthorizationHeader(const QString& value) override
    {
        calls.append(QStringLiteral("setAuthorizationHeader ") + value);
    }

    void setCheckData(const QJsonObject&) override
    {
        calls.append(QStringLiteral("setCheckData"));
    }

    QStringList calls;
};

/// The addresses that `hosts` yields, one a line; an empty line for an empty address.
std::string hostsOf(const QString& hosts)
{
    ScriptedConfig config;
    config.set(QStringLiteral("Vantiro:hosts"), hosts);
    ClientUnderTest client({});
    client.initialize();
    QByteArrayList urls;
    for (const QUrl& url : client.hosts) {
        urls.append(url.toEncoded());
    }
    return readable(urls.join('\n'));
}

}

TEST(Initialize, AsksForItsKeysInOrder)
{
    ScriptedConfig config;
    ClientUnderTest client({});

    client.initialize();

    EXPECT_EQ(readable(config.questions()),
              "string Vantiro:hosts, else 'http://127.0.0.1/'\n"
              "int Vantiro:timeout, else 5\n"
              "int Vantiro:noBonusForMinprice, else 0\n"
              "string Vantiro:user, else ''\n"
              "string Vantiro:password, else ''\n"
              "bool Vantiro:forbidDiscountForDiscountedPosition, else false");
}

TEST(Initialize, TakesDefaultsWhenNothingIsConfigured)
{
    const ScriptedConfig config;
    ClientUnderTest client({});

    client.initialize();

    ASSERT_EQ(client.hosts.size(), 1);
    EXPECT_EQ(readable(client.hosts.constFirst().toString()), "http://127.0.0.1/");
    EXPECT_EQ(client.timeout, 5);
    EXPECT_EQ(client.noBonusForMinprice, 0);
    EXPECT_EQ(readable(client.authorizationHeader), "Basic Og==");
    EXPECT_FALSE(client.forbidDiscountForDiscountedPosition);
}

TEST(Initialize, CallsTheSettersThroughVirtualDispatch)
{
    ScriptedConfig config;
    config.set(QStringLiteral("Vantiro:hosts"), QStringLiteral("http://a/,http://b/"));
    config.set(QStringLiteral("Vantiro:timeout"), 9);
    SettersNoted client;

    client.initialize();

    EXPECT_EQ(readable(client.calls),
              "setHosts http://a/ | http://b/\n"
              "setTimeout 9\n"
              "setAuthorizationHeader Basic Og==");
    EXPECT_TRUE(client.hosts.isEmpty());
    EXPECT_EQ(client.timeout, 0);
    EXPECT_TRUE(client.authorizationHeader.isEmpty());
}

TEST(Initialize, ReadsTheFlag)
{
    ScriptedConfig config;
    config.set(QStringLiteral("Vantiro:forbidDiscountForDiscountedPosition"), true);
    ClientUnderTest client({});

    client.initialize();

    EXPECT_TRUE(client.forbidDiscountForDiscountedPosition);
}

TEST(Initialize, TwoCommasHoldAnEmptyPlace)
{
    EXPECT_EQ(hostsOf(QStringLiteral("http://a/,,http://b/")), "http://a/\n\nhttp://b/");
}

TEST(Initialize, TrailingCommaHoldsAnEmptyPlace)
{
    EXPECT_EQ(hostsOf(QStringLiteral("http://a/,")), "http://a/\n");
}

TEST(Initialize, EmptyHostsAreOneEmptyServer)
{
    ScriptedConfig config;
    config.set(QStringLiteral("Vantiro:hosts"), QString());
    ClientUnderTest client({});

    client.initialize();

    EXPECT_EQ(client.hosts, QList<QUrl> { QUrl() });
}

TEST(Initialize, LeadingBlankIsNotTrimmed)
{
    ScriptedConfig config;
    config.set(QStringLiteral("Vantiro:hosts"), QStringLiteral("http://a/, http://b/"));
    ClientUnderTest client({});

    client.initialize();

    // An address cannot begin with a blank, so the second server stays one that cannot be asked.
    ASSERT_EQ(client.hosts.size(), 2);
    EXPECT_EQ(client.hosts.at(0), QUrl(QStringLiteral("http://a/")));
    EXPECT_NE(client.hosts.at(1), QUrl(QStringLiteral("http://b/")));
    EXPECT_FALSE(client.hosts.at(1).isValid());
}

TEST(Initialize, HostsAreParsedTolerantly)
{
    EXPECT_EQ(hostsOf(QStringLiteral("http://a/some path,http://b/100%")), "http://a/some%20path\nhttp://b/100%25");
}

TEST(Initialize, HostsKeepPortPathAndQuery)
{
    EXPECT_EQ(hostsOf(QStringLiteral("https://a:8443/loyalty/service.svc?till=3,http://127.0.0.1:90")),
              "https://a:8443/loyalty/service.svc?till=3\nhttp://127.0.0.1:90");
}

TEST(Initialize, UnparsableHostHoldsItsPlace)
{
    ScriptedConfig config;
    config.set(QStringLiteral("Vantiro:hosts"), QStringLiteral("http://[::1,http://b/"));
    ClientUnderTest client({});

    EXPECT_NO_THROW(client.initialize());

    ASSERT_EQ(client.hosts.size(), 2);
    EXPECT_FALSE(client.hosts.at(0).isValid());
    EXPECT_EQ(client.hosts.at(1), QUrl(QStringLiteral("http://b/")));
}

TEST(Initialize, TimeoutIsNotBounded)
{
    for (const int seconds : { 0, -7, 1, 86400, std::numeric_limits<int>::max(), std::numeric_limits<int>::min() }) {
        ScriptedConfig config;
        config.set(QStringLiteral("Vantiro:timeout"), seconds);
        ClientUnderTest client({});

        client.initialize();

        EXPECT_EQ(client.timeout, seconds);
    }
}

TEST(Initialize, ModeForMinimumPriceOutOfRangeIsNone)
{
    struct Row {
        int configured;
        int expected;
    };
    for (const Row row : { Row { 0, 0 }, Row { 1, 1 }, Row { 2, 2 }, Row { 3, 3 }, Row { 4, 0 }, Row { -1, 0 },
                           Row { std::numeric_limits<int>::max(), 0 }, Row { std::numeric_limits<int>::min(), 0 } }) {
        ScriptedConfig config;
        config.set(QStringLiteral("Vantiro:noBonusForMinprice"), row.configured);
        ClientUnderTest client({});
        client.noBonusForMinprice = 2;

        client.initialize();

        EXPECT_EQ(client.noBonusForMinprice, row.expected) << "configured as " << row.configured;
    }
}

TEST(Initialize, SecondTimeReadsEverythingAgain)
{
    ScriptedConfig config;
    config.set(QStringLiteral("Vantiro:hosts"), QStringLiteral("http://a/,http://b/"));
    config.set(QStringLiteral("Vantiro:timeout"), 1);
    config.set(QStringLiteral("Vantiro:noBonusForMinprice"), 1);
    config.set(QStringLiteral("Vantiro:user"), QStringLiteral("till"));
    config.set(QStringLiteral("Vantiro:forbidDiscountForDiscountedPosition"), true);
    ClientUnderTest client({});
    client.initialize();

    config.set(QStringLiteral("Vantiro:hosts"), QStringLiteral("http://c/"));
    config.set(QStringLiteral("Vantiro:timeout"), 2);
    config.set(QStringLiteral("Vantiro:noBonusForMinprice"), 3);
    config.set(QStringLiteral("Vantiro:user"), QString());
    config.set(QStringLiteral("Vantiro:forbidDiscountForDiscountedPosition"), false);
    client.initialize();

    EXPECT_EQ(client.hosts, QList<QUrl> { QUrl(QStringLiteral("http://c/")) });
    EXPECT_EQ(client.timeout, 2);
    EXPECT_EQ(client.noBonusForMinprice, 3);
    EXPECT_EQ(readable(client.authorizationHeader), "Basic Og==");
    EXPECT_FALSE(client.forbidDiscountForDiscountedPosition);
    EXPECT_EQ(config.questions().size(), 12);
}

TEST(Initialize, LeavesServerInUseAndCheckData)
{
    const ScriptedConfig config;
    ClientUnderTest client({});
    const QJsonObject checkData { { QStringLiteral("chequeNo"), QStringLiteral("7") } };
    client.setCheckData(checkData);
    client.changeServer(2);

    client.initialize();

    EXPECT_EQ(client.currentServerIndex, 2);
    EXPECT_EQ(client.checkData, checkData);
}

TEST(Initialize, LogsNothingAndAsksNoServer)
{
    ScriptedConfig config;
    config.set(QStringLiteral("Vantiro:hosts"), QStringLiteral("::,http://[::1"));
    config.set(QStringLiteral("Vantiro:noBonusForMinprice"), -1);
    const ScriptedRestClient server;
    const LogRecorder log;
    ClientUnderTest client({});

    client.initialize();

    EXPECT_EQ(readable(log.lines()), "");
    EXPECT_EQ(readable(server.calls()), "");
}
