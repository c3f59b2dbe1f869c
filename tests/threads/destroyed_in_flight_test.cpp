#include "front/vantiro.h"
#include "host/facilities/rest_client.h"
#include "tests/support/scripted_config.h"
#include "till/framework/action_dispatcher.h"
#include "till/framework/task_runner.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;

// The plug-in goes while a connection check that it has handed out is under way. The check holds the client by a
// reference of its own; the sanitizers watch that nothing of the plug-in is touched afterwards.

namespace {

constexpr std::chrono::seconds patience { 30 };
constexpr int rounds = 10'000;

/// Where a ping stops in the middle of its post until the thread of the test lets it go on.
class Gate {
public:
    /// For the ping. Gives up by itself, so that a test that fails can end.
    void pass()
    {
        std::unique_lock lock(mutex);
        inFlight = true;
        changed.notify_all();
        changed.wait_for(lock, patience, [this] { return open; });
        inFlight = false;
        open = false;
    }

    [[nodiscard]] bool waitForPing()
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, patience, [this] { return inFlight; });
    }

    void letGo()
    {
        {
            const std::lock_guard lock(mutex);
            open = true;
        }
        changed.notify_all();
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    bool inFlight = false;
    bool open = false;
};

class DestroyedInFlight : public testing::Test {
protected:
    DestroyedInFlight()
    {
        config.set(u"Vantiro:hosts"_s, u"http://first/,http://second/"_s);
        config.set(u"Vantiro:user"_s, u"till"_s);
        config.set(u"Vantiro:password"_s, u"secret"_s);
    }

    [[nodiscard]] static std::unique_ptr<Vantiro> startedPlugin()
    {
        auto plugin = std::make_unique<Vantiro>();
        EXPECT_TRUE(plugin->init());
        return plugin;
    }

    /// The task of a connection check; it counts its results, and those that tell of the second server.
    [[nodiscard]] QSharedPointer<BasicTask> connectionCheck()
    {
        control::Action action;
        action.appendArgument(u"Vantiro"_s, u"pluginName"_s);
        EXPECT_TRUE(Singleton<till::ActionDispatcher>::get()->carryOut(EContext::any, control::checkConnection, action,
                                                                       [](const control::Action&) { return true; }));
        const auto task = action.value(u"pingTask"_s, QVariant()).value<QSharedPointer<BasicTask>>();
        EXPECT_FALSE(task.isNull());
        task->addTaskResultHandler([this](const QSharedPointer<TaskResult>& result) {
            ++delivered;
            good += result->data.value(u"serverIndex"_s).toInt() == 1 && result->toString() == u"сервер доступен - true"
                ? 1
                : 0;
        });
        return task;
    }

    ScriptedConfig config;
    int delivered = 0;
    int good = 0;
};

/// A client that answers for the second server alone, and keeps nothing of what it was asked.
class SecondServerAlone : public RestClient {
public:
    explicit SecondServerAlone(Gate* gateInThePost)
        : gate(gateInThePost)
    {
        MockFactory<RestClient>::mocked = this;
    }

    ~SecondServerAlone() override
    {
        MockFactory<RestClient>::mocked = nullptr;
    }

    void post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers) override
    {
        if (gate != nullptr && url.host() == u"first") {
            gate->pass();
        }
        // What came from the client that may have gone: all of it is read.
        success = url.host() == u"second" && body.contains("<tem:Ping/>")
            && headers.value(u"Authorization"_s) == u"Basic dGlsbDpzZWNyZXQ=";
    }

    [[nodiscard]] bool isSuccess() override
    {
        return success;
    }

    [[nodiscard]] bool hasConnectionError() override
    {
        return !success;
    }

    void setTimeout(int /*seconds*/) override { }

private:
    Gate* gate;
    bool success = false;
};

}

TEST_F(DestroyedInFlight, PingEndsWellWithoutThePlugin)
{
    Gate gate;
    const SecondServerAlone client(&gate);
    till::TaskRunner runner;
    for (int round = 0; round < rounds; ++round) {
        std::unique_ptr<Vantiro> plugin = startedPlugin();
        runner.run(connectionCheck());
        ASSERT_TRUE(gate.waitForPing());
        plugin.reset();
        gate.letGo();
        ASSERT_TRUE(runner.waitForIdle(patience));
        ASSERT_EQ(delivered, round + 1);
    }
    EXPECT_EQ(good, rounds);
}

// Without a gate the plug-in goes before the ping begins, while it runs, or after it has ended.
TEST_F(DestroyedInFlight, PingEndsWellWheneverThePluginGoes)
{
    const SecondServerAlone client(nullptr);
    till::TaskRunner runner;
    for (int round = 0; round < rounds; ++round) {
        std::unique_ptr<Vantiro> plugin = startedPlugin();
        runner.run(connectionCheck());
        for (int pause = 0; pause < round % 7; ++pause) {
            std::this_thread::yield();
        }
        plugin.reset();
        ASSERT_TRUE(runner.waitForIdle(patience));
        ASSERT_EQ(delivered, round + 1);
    }
    EXPECT_EQ(good, rounds);
}

TEST_F(DestroyedInFlight, TaskThatIsNeverRunOutlivesThePlugin)
{
    const SecondServerAlone client(nullptr);
    std::unique_ptr<Vantiro> plugin = startedPlugin();
    QSharedPointer<BasicTask> task = connectionCheck();
    plugin.reset();
    const QSharedPointer<TaskResult> result = task->run();
    EXPECT_EQ(result->data.value(u"serverIndex"_s).toInt(), 1);
    task.reset();
    EXPECT_EQ(delivered, 0) << "nobody has delivered the result";
}

TEST_F(DestroyedInFlight, RunnerThatGoesWithThePingWaitsForIt)
{
    Gate gate;
    const SecondServerAlone client(&gate);
    for (int round = 0; round < 200; ++round) {
        auto runner = std::make_unique<till::TaskRunner>();
        std::unique_ptr<Vantiro> plugin = startedPlugin();
        runner->run(connectionCheck());
        ASSERT_TRUE(gate.waitForPing());
        plugin.reset();
        gate.letGo();
        runner.reset();
    }
    EXPECT_EQ(delivered, 0) << "no handler runs when the runner has gone";
}
