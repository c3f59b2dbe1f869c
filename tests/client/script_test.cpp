#include "tests/support/client_under_test.h"
#include "tests/support/scripted_config.h"

#include "host/facilities/exceptions.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <memory>

// The substitutes that the other tests rely on must refuse what no script has foreseen.

namespace {

const QUrl server(QStringLiteral("http://server/"));

}

TEST(ScriptedRestClient, PostBeyondTheScriptFailsTheTest)
{
    ScriptedRestClient client;

    EXPECT_NONFATAL_FAILURE(client.post(server, {}, {}), "a post beyond the script, to http://server/");

    EXPECT_TRUE(client.hasConnectionError());
}

TEST(ScriptedRestClient, OutcomeThatNobodyAskedForFailsTheTest)
{
    auto client = std::make_unique<ScriptedRestClient>();
    client->next(RestOutcome::http(200, ""));

    EXPECT_NONFATAL_FAILURE(client.reset(), "1 outcomes of the script were never asked for");

    EXPECT_EQ(MockFactory<RestClient>::mocked, nullptr);
}

TEST(ScriptedRestClient, IsWhatTheFactoryGivesOutWhileItLives)
{
    {
        ScriptedRestClient client;
        EXPECT_EQ(MockFactory<RestClient>::create().data(), &client);
    }
    EXPECT_TRUE(MockFactory<RestClient>::create().dynamicCast<ScriptedRestClient>().isNull());
}

TEST(ScriptedRestClient, TellsOfNoPostBeforeTheFirst)
{
    ScriptedRestClient client;

    EXPECT_FALSE(client.isSuccess());
    EXPECT_FALSE(client.hasConnectionError());
    EXPECT_FALSE(client.hasHttpError());
    EXPECT_EQ(client.getHttpStatus(), 0);
}

TEST(ScriptedRestClient, TellsOfTheLastPostInOneWayOnly)
{
    ScriptedRestClient client;
    client.next(RestOutcome::connectionError(QStringLiteral("обрыв")));
    client.next(RestOutcome::http(299, "a"));
    client.next(RestOutcome::http(300, "b"));

    client.post(server, {}, {});
    EXPECT_TRUE(client.hasConnectionError() && !client.isSuccess() && !client.hasHttpError());
    EXPECT_EQ(readable(client.getErrorText().ru()), "обрыв");
    client.post(server, {}, {});
    EXPECT_TRUE(!client.hasConnectionError() && client.isSuccess() && !client.hasHttpError());
    EXPECT_EQ(readable(client.getResponseBody()), "a");
    client.post(server, {}, {});
    EXPECT_TRUE(!client.hasConnectionError() && !client.isSuccess() && client.hasHttpError());
    EXPECT_EQ(client.getHttpStatus(), 300);
    EXPECT_EQ(readable(client.getResponseBody()), "b");
}

TEST(ScriptedService, OtherRequestThanExpectedFailsTheTest)
{
    ScriptedService service;
    ClientUnderTest client({ ScriptedService::address });
    service.answer("<IsCardValidResult>true</IsCardValidResult>");
    EXPECT_TRUE(client.isCardValid(QStringLiteral("7")));

    EXPECT_NONFATAL_FAILURE(service.expect("IsCardValid", "   <tem:discountCardNumber>8</tem:discountCardNumber>\n"),
                            "-   <tem:discountCardNumber>7</tem:discountCardNumber>");
}

TEST(ScriptedService, RequestThatNobodyLookedAtFailsTheTest)
{
    auto service = std::make_unique<ScriptedService>();
    ClientUnderTest client({ ScriptedService::address });
    service->answer("<IsCardValidResult>true</IsCardValidResult>");
    EXPECT_TRUE(client.isCardValid(QStringLiteral("7")));

    EXPECT_NONFATAL_FAILURE(service.reset(), "requests that nobody has looked at");
}

TEST(ScriptedConfig, GivesTheDefaultForAnotherType)
{
    ScriptedConfig config;
    config.set(QStringLiteral("a"), QStringLiteral("7"));
    config.set(QStringLiteral("b"), 7);

    EXPECT_EQ(config.getInt(QStringLiteral("a"), 3), 3);
    EXPECT_EQ(readable(config.getString(QStringLiteral("a"), {})), "7");
    EXPECT_TRUE(config.getBool(QStringLiteral("b"), true));
    EXPECT_EQ(config.getInt(QStringLiteral("b"), 3), 7);
}

TEST(ScriptedConfig, PutsTheFormerOneBack)
{
    Config* const former = Singleton<Config>::instance;
    {
        const ScriptedConfig config;
        EXPECT_EQ(Singleton<Config>::instance, &config);
    }
    EXPECT_EQ(Singleton<Config>::instance, former);
}

TEST(FailureOf, NamesTheExactClass)
{
    EXPECT_EQ(failureOf([] {}), "nothing");
    EXPECT_NE(failureOf([] { throw BasicException(tr::Tr(QStringLiteral("k"), QStringLiteral("t"))); }),
              "VantiroException k: t");
}
