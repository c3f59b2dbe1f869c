#include "client/ping_task_result.h"
#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <QMetaType>

#include <gtest/gtest.h>

#include <ostream>
#include <thread>

namespace {

const QString first = QStringLiteral("http://first/");
const QString second = QStringLiteral("http://second/");
const QString third = QStringLiteral("http://third/");

const RestOutcome down = RestOutcome::connectionError(QStringLiteral("соединение отклонено"));
const RestOutcome good = RestOutcome::http(200, "<PingResponse/>");

/// The index that a ping has found, after the parts that hold for every ping have been looked at.
int indexIn(const QSharedPointer<TaskResult>& result)
{
    const auto ping = result.dynamicCast<PingTaskResult>();
    EXPECT_FALSE(ping.isNull());
    EXPECT_EQ(result->data.size(), 1);
    const QVariant index = result->data.value(QStringLiteral("serverIndex"));
    EXPECT_EQ(index.metaType(), QMetaType::fromType<int>());
    EXPECT_EQ(result->code, 0);
    EXPECT_EQ(readable(result->error.ru()), "");
    EXPECT_EQ(readable(result->error.getKey()), "");
    if (ping) {
        EXPECT_FALSE(ping->interrupted);
        EXPECT_EQ(ping->available, index.toInt() != -1);
    }
    return index.toInt();
}

struct Reply {
    const char* rule;
    RestOutcome outcome;
    bool counts;
};

void PrintTo(const Reply& row, std::ostream* out)
{
    *out << row.rule;
}

class PingReply : public testing::TestWithParam<Reply> { };

}

INSTANTIATE_TEST_SUITE_P(
    Replies, PingReply,
    testing::Values(Reply { "Http200", RestOutcome::http(200, soap::reply("<PingResponse/>")), true },
                    Reply { "Http200Empty", RestOutcome::http(200, ""), true },
                    Reply { "Http200NotXml", RestOutcome::http(200, "pong"), true },
                    Reply { "Http200Fault", RestOutcome::http(200, soap::reply(soap::fault("отказ"))), true },
                    Reply { "Http204", RestOutcome::http(204, ""), true }, Reply { "ConnectionError", down, false },
                    Reply { "Http301", RestOutcome::http(301, ""), false },
                    Reply { "Http401", RestOutcome::http(401, ""), false },
                    Reply { "Http404", RestOutcome::http(404, ""), false },
                    Reply { "Http500Fault", RestOutcome::http(500, soap::reply(soap::fault("отказ"))), false },
                    Reply { "Http500Answer", RestOutcome::http(500, soap::reply("<PingResponse/>")), false },
                    Reply { "Http503", RestOutcome::http(503, ""), false }),
    [](const auto& row) { return std::string(row.param.rule) + (row.param.counts ? "Counts" : "DoesNotCount"); });

TEST_P(PingReply, CountsByItsStatus)
{
    ScriptedRestClient servers;
    servers.at(first, GetParam().outcome);
    servers.at(second, good);
    const ClientUnderTest client({ first, second });

    const int index = indexIn(client.ping());

    EXPECT_EQ(index, GetParam().counts ? 0 : 1);
    EXPECT_EQ(readable(servers.asked()), GetParam().counts ? "http://first/" : "http://first/\nhttp://second/");
}

TEST(Ping, TakesTheFirstServerThatAnswers)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, good);
    servers.at(third, good);
    const ClientUnderTest client({ first, second, third });

    EXPECT_EQ(indexIn(client.ping()), 1);

    EXPECT_EQ(readable(servers.asked()), "http://first/\nhttp://second/");
}

TEST(Ping, TakesTheLastServerWhenItAloneAnswers)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, RestOutcome::http(500, soap::reply(soap::fault("отказ"))));
    servers.at(third, good);
    const ClientUnderTest client({ first, second, third });

    EXPECT_EQ(indexIn(client.ping()), 2);

    EXPECT_EQ(readable(servers.asked()), "http://first/\nhttp://second/\nhttp://third/");
}

TEST(Ping, NoAnswerIsMinusOne)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, RestOutcome::http(404, ""));
    const ClientUnderTest client({ first, second });

    const QSharedPointer<TaskResult> result = client.ping();

    EXPECT_EQ(indexIn(result), -1);
    EXPECT_EQ(readable(result->toString()), "сервер доступен - false");
    EXPECT_EQ(readable(servers.asked()), "http://first/\nhttp://second/");
}

TEST(Ping, AnswerIsToldInWords)
{
    ScriptedRestClient servers;
    servers.at(first, good);
    const ClientUnderTest client({ first });

    EXPECT_EQ(readable(client.ping()->toString()), "сервер доступен - true");
}

TEST(Ping, EmptyListIsMinusOneWithoutAPost)
{
    const ScriptedRestClient servers;
    const ClientUnderTest client({});

    const QSharedPointer<TaskResult> result = client.ping();

    EXPECT_EQ(indexIn(result), -1);
    EXPECT_EQ(readable(result->toString()), "сервер доступен - false");
    EXPECT_TRUE(servers.posts().isEmpty());
}

TEST(Ping, EmptyPlaceIsPassed)
{
    ScriptedRestClient servers;
    servers.at(second, good);
    const ClientUnderTest client({ QString(), second });

    EXPECT_EQ(indexIn(client.ping()), 1);

    EXPECT_EQ(readable(servers.asked()), "\nhttp://second/");
}

TEST(Ping, BeginsAtTheTopWhateverServerIsInUseAndLeavesThatOne)
{
    for (const int inUse : { 0, 1, 2, 7, -2 }) {
        ScriptedRestClient servers;
        servers.at(first, down);
        servers.at(second, good);
        ClientUnderTest client({ first, second, third });
        client.changeServer(inUse);

        EXPECT_EQ(indexIn(client.ping()), 1);

        EXPECT_EQ(readable(servers.asked()), "http://first/\nhttp://second/");
        EXPECT_EQ(client.currentServerIndex, inUse);
    }
}

TEST(Ping, RequestIsTheSameForEveryServer)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, good);
    ClientUnderTest client({ first, second });
    client.setAuthorizationHeader(QStringLiteral("Basic Og=="));

    EXPECT_EQ(indexIn(client.ping()), 1);

    const QHash<QString, QString> headers {
        { QStringLiteral("Content-Type"), QStringLiteral("text/xml; charset=UTF-8") },
        { QStringLiteral("SOAPAction"), QStringLiteral("http://tempuri.org/IVantiroService/Ping") },
        { QStringLiteral("Authorization"), QStringLiteral("Basic Og==") },
    };
    ASSERT_EQ(servers.posts().size(), 2);
    for (const RestPost& post : servers.posts()) {
        EXPECT_EQ(
            readable(post.body),
            R"(<soapenv:Envelope xmlns:soapenv="http://schemas.xmlsoap.org/soap/envelope/" xmlns:tem="http://tempuri.org/">
 <soapenv:Body>
  <tem:Ping/>
 </soapenv:Body>
</soapenv:Envelope>
)");
        EXPECT_EQ(post.headers, headers);
    }
}

TEST(Ping, SetsTheTimeoutOnceForTheWholeWalk)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, good);
    ClientUnderTest client({ first, second });
    client.setTimeout(3);

    EXPECT_EQ(indexIn(client.ping()), 1);

    EXPECT_EQ(readable(servers.calls()), "timeout 3\npost http://first/\npost http://second/");
}

TEST(Ping, TakesItsHeadersFromTheVirtualOperation)
{
    class OwnHeaders : public ClientUnderTest {
    public:
        using ClientUnderTest::ClientUnderTest;

        QHash<QString, QString> createHttpHeaders(const QString& action) const override
        {
            return { { QStringLiteral("Till"), action } };
        }
    };
    ScriptedRestClient servers;
    servers.at(first, good);
    const OwnHeaders client({ first });

    EXPECT_EQ(indexIn(client.ping()), 0);

    const QHash<QString, QString> headers { { QStringLiteral("Till"), QStringLiteral("Ping") } };
    ASSERT_EQ(servers.posts().size(), 1);
    EXPECT_EQ(servers.posts().constFirst().headers, headers);
}

TEST(Ping, LogsNothingOfItsOwn)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, good);
    const ClientUnderTest client({ first, second });
    const LogRecorder log;

    EXPECT_EQ(indexIn(client.ping()), 1);

    EXPECT_EQ(readable(log.lines()), "");
}

TEST(Ping, RunsBesideAnExchange)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, RestOutcome::http(200, soap::reply("<Answer/>")));
    ClientUnderTest client({ first, second });
    client.changeServer(1);

    QList<int> found;
    std::thread pinging([&client, &found] {
        for (int round = 0; round < 50; ++round) {
            found.append(indexIn(client.ping()));
        }
    });
    for (int round = 0; round < 50; ++round) {
        EXPECT_EQ(failureOf([&] { (void)client.exchange(); }), "nothing");
    }
    pinging.join();

    EXPECT_EQ(found, QList<int>(50, 1));
    EXPECT_EQ(client.currentServerIndex, 1);
    EXPECT_EQ(servers.posts().size(), 50 + 2 * 50);
}

TEST(PingTaskResult, BeginsUnavailable)
{
    const PingTaskResult result;

    EXPECT_FALSE(result.interrupted);
    EXPECT_FALSE(result.available);
    EXPECT_TRUE(result.data.isEmpty());
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(readable(result.error.ru()), "");
    EXPECT_EQ(readable(result.toString()), "сервер доступен - false");
}

TEST(PingTaskResult, WordsFollowAvailabilityAlone)
{
    PingTaskResult result;

    result.interrupted = true;
    EXPECT_EQ(readable(result.toString()), "сервер доступен - false");
    result.available = true;
    EXPECT_EQ(readable(result.toString()), "сервер доступен - true");
}
