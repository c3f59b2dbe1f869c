#include "client/ping_task_result.h"
#include "host/framework/activity_notifier.h"
#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <QMetaObject>
#include <QMetaType>

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace {

const QString first = QStringLiteral("http://first/");
const QString second = QStringLiteral("http://second/");
const QString third = QStringLiteral("http://third/");
const QStringList threeServers { first, second, third };

const RestOutcome down = RestOutcome::connectionError(QStringLiteral("соединение отклонено"));
const RestOutcome good = RestOutcome::http(200, "");

/// A till that takes the events and does nothing of its own with them.
class WaitingTill : public BaseActivityListener {
public:
    WaitingTill()
        : BaseActivityListener(nullptr)
        , former(std::exchange(Singleton<ActivityNotifier>::instance, &notifier))
    {
        notifier.subscribe(this);
    }

    ~WaitingTill() override
    {
        Singleton<ActivityNotifier>::instance = former;
    }

    void handleEvent(const Event& event) override
    {
        events.append(event);
    }

    /// The task of the only event that has come so far.
    [[nodiscard]] QSharedPointer<BasicTask> onlyTask() const
    {
        EXPECT_EQ(events.size(), 1);
        return events.isEmpty()
            ? QSharedPointer<BasicTask>()
            : events.constFirst().value(QStringLiteral("task"), {}).value<QSharedPointer<BasicTask>>();
    }

    QList<Event> events;

private:
    ActivityNotifier notifier;
    ActivityNotifier* former;
};

/// What any task may have found.
QSharedPointer<TaskResult> resultWith(const QVariant& index)
{
    const auto result = QSharedPointer<TaskResult>::create();
    result->data.insert(QStringLiteral("serverIndex"), index);
    return result;
}

/// The server in use after a till of that many servers, the third being in use, has delivered the result.
int serverAfter(const QSharedPointer<TaskResult>& result)
{
    const ScriptedRestClient servers;
    const WaitingTill till;
    ClientUnderTest client(threeServers);
    client.changeServer(2);
    client.actualizeServer();
    till.onlyTask()->deliver(result);
    return client.currentServerIndex;
}

}

TEST(ActualizeServer, MostWantedServerNeedsNoPing)
{
    const ScriptedRestClient servers;
    const WaitingTill till;
    ClientUnderTest client(threeServers);
    const LogRecorder log;

    client.actualizeServer();

    EXPECT_EQ(readable(log.lines()),
              "info vantiro: Пинг серверов\n"
              "info vantiro: Пинг не требуется - уже выбран самый приоритетный сервер");
    EXPECT_TRUE(till.events.isEmpty());
    EXPECT_EQ(readable(servers.calls()), "");
    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(ActualizeServer, HandsTheTillOneTaskAndAsksNothingItself)
{
    const ScriptedRestClient servers;
    const WaitingTill till;
    ClientUnderTest client(threeServers);
    client.changeServer(2);
    const LogRecorder log;

    client.actualizeServer();

    EXPECT_EQ(readable(log.lines()), "info vantiro: Пинг серверов");
    EXPECT_EQ(readable(servers.calls()), "");
    EXPECT_EQ(client.currentServerIndex, 2);
    ASSERT_EQ(till.events.size(), 1);
    const Event& event = till.events.constFirst();
    EXPECT_EQ(static_cast<int>(event.getCode()), 245);
    const QVariant task = event.value(QStringLiteral("task"), {});
    EXPECT_EQ(task.metaType(), QMetaType::fromType<QSharedPointer<BasicTask>>());
    EXPECT_FALSE(till.onlyTask().dynamicCast<CustomTask>().isNull());
    // "task" is the only argument
    EXPECT_TRUE(event == Event(EActivityListener::runTask, { { QStringLiteral("task"), task } }));
}

TEST(ActualizeServer, EveryIndexButTheFirstNeedsAPing)
{
    for (const int index : { 1, 7, -2, std::numeric_limits<int>::min() }) {
        const WaitingTill till;
        ClientUnderTest client(threeServers);
        client.changeServer(index);

        client.actualizeServer();

        EXPECT_EQ(till.events.size(), 1) << "index " << index;
    }
}

TEST(ActualizeServer, EachCallMakesATaskOfItsOwn)
{
    const WaitingTill till;
    ClientUnderTest client(threeServers);
    client.changeServer(1);

    client.actualizeServer();
    client.actualizeServer();

    ASSERT_EQ(till.events.size(), 2);
    EXPECT_FALSE(till.events.at(0) == till.events.at(1));
}

TEST(ActualizeServer, ServerChangesWhenTheResultIsDelivered)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, good);
    const WaitingTill till;
    ClientUnderTest client(threeServers);
    client.changeServer(2);
    client.actualizeServer();
    const QSharedPointer<BasicTask> task = till.onlyTask();
    ASSERT_FALSE(task.isNull());

    const QSharedPointer<TaskResult> result = task->run();

    EXPECT_EQ(result->data.value(QStringLiteral("serverIndex")), QVariant(1));
    EXPECT_EQ(readable(servers.asked()), "http://first/\nhttp://second/");
    EXPECT_EQ(client.currentServerIndex, 2);

    task->deliver(result);

    EXPECT_EQ(client.currentServerIndex, 1);
    EXPECT_EQ(till.events.size(), 1);
}

TEST(ActualizeServer, NoAnswerGoesBackToTheTop)
{
    ScriptedRestClient servers;
    for (const QString& server : threeServers) {
        servers.at(server, down);
    }
    const WaitingTill till;
    ClientUnderTest client(threeServers);
    client.changeServer(2);
    client.actualizeServer();
    const QSharedPointer<BasicTask> task = till.onlyTask();
    ASSERT_FALSE(task.isNull());

    const QSharedPointer<TaskResult> result = task->run();
    task->deliver(result);

    EXPECT_EQ(result->data.value(QStringLiteral("serverIndex")), QVariant(-1));
    ASSERT_FALSE(result.dynamicCast<PingTaskResult>().isNull());
    EXPECT_FALSE(result.dynamicCast<PingTaskResult>()->available);
    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(ActualizeServer, MostWantedServerIsTakenAgainWhenItAnswers)
{
    ScriptedRestClient servers;
    servers.at(first, good);
    const WaitingTill till;
    ClientUnderTest client(threeServers);
    client.changeServer(1);
    client.actualizeServer();
    const QSharedPointer<BasicTask> task = till.onlyTask();
    ASSERT_FALSE(task.isNull());

    task->deliver(task->run());

    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(ActualizeServer, ServerThatHasDiedSinceIsNotKept)
{
    ScriptedRestClient servers;
    servers.at(first, down);
    servers.at(second, good);
    const WaitingTill till;
    ClientUnderTest client({ first, second });
    client.changeServer(1);
    client.actualizeServer();
    const QSharedPointer<BasicTask> task = till.onlyTask();
    ASSERT_FALSE(task.isNull());

    servers.at(second, RestOutcome::http(503, ""));
    task->deliver(task->run());

    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(ActualizeServer, ResultIsTakenAsItStands)
{
    EXPECT_EQ(serverAfter(resultWith(0)), 0);
    EXPECT_EQ(serverAfter(resultWith(1)), 1);
    EXPECT_EQ(serverAfter(resultWith(7)), 7);
    EXPECT_EQ(serverAfter(resultWith(-1)), 0);
    EXPECT_EQ(serverAfter(resultWith(-2)), -2);
    EXPECT_EQ(serverAfter(resultWith(QStringLiteral("1"))), 1);
}

TEST(ActualizeServer, ResultWithoutAnIndexGoesBackToTheTop)
{
    EXPECT_EQ(serverAfter(resultWith(QVariant())), 0);
    EXPECT_EQ(serverAfter(resultWith(QStringLiteral("нет"))), 0);
    EXPECT_EQ(serverAfter(QSharedPointer<TaskResult>::create()), 0);
}

TEST(ChangeServer, TakesTheIndexUnchecked)
{
    ClientUnderTest client(threeServers);

    for (const int index : { 1, 7, 0, -2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min() }) {
        client.changeServer(index);
        EXPECT_EQ(client.currentServerIndex, index);
    }
}

TEST(ChangeServer, MinusOneIsTheFirst)
{
    ClientUnderTest client(threeServers);
    client.changeServer(2);

    client.changeServer(-1);

    EXPECT_EQ(client.currentServerIndex, 0);
}

TEST(ChangeServer, CanBeCalledByName)
{
    ClientUnderTest client(threeServers);

    EXPECT_TRUE(QMetaObject::invokeMethod(&client, "changeServer", Q_ARG(int, 2)));

    EXPECT_EQ(client.currentServerIndex, 2);
}
