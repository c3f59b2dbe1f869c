#include "host/facilities/exceptions.h"
#include "host/framework/activity_notifier.h"
#include "tests/support/log_recorder.h"
#include "till/framework/contract.h"
#include "till/framework/task_runner.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace {

using namespace std::chrono_literals;
using Result = QSharedPointer<TaskResult>;
using Task = QSharedPointer<BasicTask>;

Result resultOf(int code)
{
    auto result = Result::create();
    result->code = code;
    result->data.insert(QStringLiteral("serverIndex"), QVariant(code));
    return result;
}

template <class Function>
Task taskOf(Function function)
{
    return QSharedPointer<CustomTask>::create(function);
}

// Holds tasks up until it is opened.
class Gate {
public:
    void open()
    {
        const std::lock_guard lock(mutex);
        isOpen = true;
        changed.notify_all();
    }

    void pass()
    {
        std::unique_lock lock(mutex);
        ++arrived;
        changed.notify_all();
        changed.wait(lock, [this] { return isOpen; });
    }

    // False when they do not arrive in time.
    bool waitForArrival(int count)
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, 10s, [this, count] { return arrived >= count; });
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    int arrived = 0;
    bool isOpen = false;
};

// Tells on which thread it is destroyed.
class Witness {
public:
    explicit Witness(std::atomic<std::thread::id>& end)
        : endedOn(end)
    {
    }

    ~Witness()
    {
        endedOn = std::this_thread::get_id();
    }

private:
    std::atomic<std::thread::id>& endedOn;
};

bool runEventLoopUntil(const std::function<bool()>& done)
{
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < 10000) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    return done();
}

class TaskRunner : public ::testing::Test {
protected:
    std::unique_ptr<till::TaskRunner> runner = std::make_unique<till::TaskRunner>();
    QList<int> delivered;

    BasicTask::ResultHandler note()
    {
        return [this](const Result& result) { delivered.append(result->code); };
    }
};

TEST_F(TaskRunner, TaskRunsOffTheChequeThreadAndIsDeliveredOnIt)
{
    std::thread::id ranOn;
    std::thread::id deliveredOn;
    QVariant serverIndex;
    const Task task = taskOf([&ranOn] {
        ranOn = std::this_thread::get_id();
        return resultOf(2);
    });
    task->addTaskResultHandler([&](const Result& result) {
        deliveredOn = std::this_thread::get_id();
        serverIndex = result->data.value(QStringLiteral("serverIndex"));
    });
    runner->run(task);

    ASSERT_TRUE(runner->waitForIdle(10s));
    EXPECT_NE(ranOn, std::thread::id());
    EXPECT_NE(ranOn, std::this_thread::get_id());
    EXPECT_EQ(deliveredOn, std::this_thread::get_id());
    EXPECT_EQ(serverIndex, QVariant(2));
}

TEST_F(TaskRunner, TakesTheTaskOfTheEvent)
{
    const Task task = taskOf([] { return resultOf(1); });
    task->addTaskResultHandler(note());
    Singleton<ActivityNotifier>::get()->notify(
        Event(EActivityListener::runTask, { { QStringLiteral("task"), QVariant::fromValue(task) } }));

    ASSERT_TRUE(runner->waitForIdle(10s));
    EXPECT_EQ(delivered, QList<int> { 1 });
}

TEST_F(TaskRunner, IgnoresOtherEvents)
{
    const Task task = taskOf([] { return resultOf(1); });
    task->addTaskResultHandler(note());
    Singleton<ActivityNotifier>::get()->notify(
        Event(EActivityListener::processStarted, { { QStringLiteral("task"), QVariant::fromValue(task) } }));

    ASSERT_TRUE(runner->waitForIdle(0s));
    EXPECT_TRUE(delivered.isEmpty());
}

TEST_F(TaskRunner, SenderDoesNotWaitForTheTask)
{
    Gate gate;
    const Task task = taskOf([&gate] {
        gate.pass();
        return resultOf(1);
    });
    task->addTaskResultHandler(note());
    runner->run(task);
    EXPECT_TRUE(gate.waitForArrival(1));
    EXPECT_FALSE(runner->waitForIdle(0s));
    EXPECT_TRUE(delivered.isEmpty());

    gate.open();
    EXPECT_TRUE(runner->waitForIdle(10s));
    EXPECT_EQ(delivered, QList<int> { 1 });
}

TEST_F(TaskRunner, EventLoopDelivers)
{
    const Task task = taskOf([] { return resultOf(1); });
    task->addTaskResultHandler(note());
    runner->run(task);

    EXPECT_TRUE(runEventLoopUntil([this] { return !delivered.isEmpty(); }));
    EXPECT_EQ(delivered, QList<int> { 1 });
}

TEST_F(TaskRunner, ResultIsDeliveredOnce)
{
    const Task task = taskOf([] { return resultOf(1); });
    task->addTaskResultHandler(note());
    runner->run(task);
    ASSERT_TRUE(runner->waitForIdle(10s));
    QCoreApplication::processEvents();
    ASSERT_TRUE(runner->waitForIdle(10s));

    EXPECT_EQ(delivered, QList<int> { 1 });
}

TEST_F(TaskRunner, SeveralTasksRunAtOnce)
{
    Gate gate;
    for (int number = 0; number < 3; ++number) {
        const Task task = taskOf([&gate, number] {
            gate.pass();
            return resultOf(number);
        });
        task->addTaskResultHandler(note());
        runner->run(task);
    }
    EXPECT_TRUE(gate.waitForArrival(3));
    gate.open();

    ASSERT_TRUE(runner->waitForIdle(10s));
    std::sort(delivered.begin(), delivered.end());
    EXPECT_EQ(delivered, (QList<int> { 0, 1, 2 }));
}

TEST_F(TaskRunner, ManyTasksAllArrive)
{
    for (int number = 0; number < 200; ++number) {
        const Task task = taskOf([number] { return resultOf(number); });
        task->addTaskResultHandler(note());
        runner->run(task);
        QCoreApplication::processEvents();
    }

    ASSERT_TRUE(runner->waitForIdle(20s));
    std::sort(delivered.begin(), delivered.end());
    ASSERT_EQ(delivered.size(), 200);
    EXPECT_EQ(delivered.constFirst(), 0);
    EXPECT_EQ(delivered.constLast(), 199);
}

TEST_F(TaskRunner, HandlerMayStartAnotherTask)
{
    const Task second = taskOf([] { return resultOf(2); });
    second->addTaskResultHandler(note());
    const Task first = taskOf([] { return resultOf(1); });
    first->addTaskResultHandler(note());
    first->addTaskResultHandler([this, second](const Result&) { runner->run(second); });
    runner->run(first);

    ASSERT_TRUE(runner->waitForIdle(10s));
    EXPECT_EQ(delivered, (QList<int> { 1, 2 }));
}

TEST_F(TaskRunner, TaskThatThrowsIsLoggedAndNotDelivered)
{
    const LogRecorder log;
    const Task task = taskOf([]() -> Result { throw BasicException(tr::Tr(QStringLiteral("сбой"))); });
    task->addTaskResultHandler(note());
    runner->run(task);

    ASSERT_TRUE(runner->waitForIdle(10s));
    EXPECT_TRUE(delivered.isEmpty());
    EXPECT_EQ(log.of(QStringLiteral("taskmanager")),
              QStringList { QStringLiteral("error: Ошибка выполнения задачи: сбой") });
}

TEST_F(TaskRunner, TaskThatThrowsSomethingElseIsLogged)
{
    const LogRecorder log;
    runner->run(taskOf([]() -> Result { throw 5; }));

    ASSERT_TRUE(runner->waitForIdle(10s));
    EXPECT_EQ(log.of(QStringLiteral("taskmanager")),
              QStringList { QStringLiteral("error: Ошибка выполнения задачи: неизвестное исключение") });
}

TEST_F(TaskRunner, NullResultIsLoggedAndNotDelivered)
{
    const LogRecorder log;
    const Task task = taskOf([] { return Result(); });
    task->addTaskResultHandler([](const Result&) { ADD_FAILURE() << "a null result is delivered"; });
    runner->run(task);

    ASSERT_TRUE(runner->waitForIdle(10s));
    EXPECT_EQ(log.of(QStringLiteral("taskmanager")),
              QStringList { QStringLiteral("error: Задача не вернула результат") });
}

TEST_F(TaskRunner, HandlerThatThrowsIsLogged)
{
    const LogRecorder log;
    const Task broken = taskOf([] { return resultOf(1); });
    broken->addTaskResultHandler([](const Result&) { throw std::runtime_error("сбой"); });
    runner->run(broken);
    ASSERT_TRUE(runner->waitForIdle(10s));
    const Task next = taskOf([] { return resultOf(2); });
    next->addTaskResultHandler(note());
    runner->run(next);
    ASSERT_TRUE(runner->waitForIdle(10s));

    EXPECT_EQ(log.of(QStringLiteral("taskmanager")),
              QStringList { QStringLiteral("error: Ошибка обработки результата задачи: сбой") });
    EXPECT_EQ(delivered, QList<int> { 2 });
}

TEST_F(TaskRunner, TaskIsLetGoOfOnTheChequeThread)
{
    std::atomic<std::thread::id> taskEnd;
    std::atomic<std::thread::id> handlerEnd;
    {
        const Task task = taskOf([held = std::make_shared<Witness>(taskEnd)] { return resultOf(1); });
        task->addTaskResultHandler([held = std::make_shared<Witness>(handlerEnd)](const Result&) {});
        runner->run(task);
    }
    ASSERT_TRUE(runner->waitForIdle(10s));

    EXPECT_EQ(taskEnd.load(), std::this_thread::get_id());
    EXPECT_EQ(handlerEnd.load(), std::this_thread::get_id());
}

TEST_F(TaskRunner, EndWaitsForTasksThatRunAndDropsTheirResults)
{
    Gate gate;
    std::atomic<bool> finished = false;
    std::atomic<std::thread::id> taskEnd;
    {
        const Task task = taskOf([&gate, &finished, held = std::make_shared<Witness>(taskEnd)] {
            gate.pass();
            finished = true;
            return resultOf(1);
        });
        task->addTaskResultHandler(note());
        runner->run(task);
    }
    ASSERT_TRUE(gate.waitForArrival(1));
    std::thread opener([&gate] {
        std::this_thread::sleep_for(50ms);
        gate.open();
    });
    runner.reset();
    const bool finishedAtEnd = finished;
    opener.join();
    QCoreApplication::processEvents();

    EXPECT_TRUE(finishedAtEnd);
    EXPECT_TRUE(delivered.isEmpty());
    EXPECT_EQ(taskEnd.load(), std::this_thread::get_id());
}

TEST_F(TaskRunner, EndDropsTasksThatDoNotRunYet)
{
    Gate gate;
    std::atomic<int> runs = 0;
    for (int number = 0; number < 20; ++number) {
        runner->run(taskOf([&gate, &runs] {
            gate.pass();
            ++runs;
            return resultOf(1);
        }));
    }
    ASSERT_TRUE(gate.waitForArrival(4));
    std::thread opener([&gate] {
        std::this_thread::sleep_for(50ms);
        gate.open();
    });
    runner.reset();
    opener.join();

    EXPECT_EQ(runs, 4);
}

TEST_F(TaskRunner, EndDropsResultsThatWait)
{
    std::atomic<bool> finished = false;
    const Task task = taskOf([&finished] {
        finished = true;
        return resultOf(1);
    });
    task->addTaskResultHandler(note());
    runner->run(task);
    while (!finished) {
        std::this_thread::yield();
    }
    runner.reset();
    QCoreApplication::processEvents();

    EXPECT_TRUE(delivered.isEmpty());
}

TEST_F(TaskRunner, HandlerMayEndTheRunner)
{
    const Task task = taskOf([] { return resultOf(1); });
    task->addTaskResultHandler(note());
    task->addTaskResultHandler([this](const Result&) { runner.reset(); });
    runner->run(task);

    EXPECT_TRUE(runEventLoopUntil([this] { return runner == nullptr; }));
    EXPECT_EQ(delivered, QList<int> { 1 });
}

TEST_F(TaskRunner, HandlerMayEndTheRunnerThatIsWaitedFor)
{
    const Task task = taskOf([] { return resultOf(1); });
    task->addTaskResultHandler([this](const Result&) { runner.reset(); });
    task->addTaskResultHandler(note());
    runner->run(task);

    EXPECT_TRUE(runner->waitForIdle(10s));
    EXPECT_EQ(delivered, QList<int> { 1 });
    EXPECT_EQ(runner, nullptr);
}

TEST_F(TaskRunner, NullTaskIsABreachOfThePlugin)
{
    try {
        runner->run(nullptr);
        ADD_FAILURE() << "a null task is taken";
    } catch (const till::ContractBreach& breach) {
        EXPECT_EQ(breach.getSide(), till::Side::plugin);
    }
}

TEST_F(TaskRunner, TaskUnderWayIsNotTakenAgain)
{
    Gate gate;
    const Task task = taskOf([&gate] {
        gate.pass();
        return resultOf(1);
    });
    task->addTaskResultHandler(note());
    runner->run(task);
    EXPECT_THROW(runner->run(task), till::ContractBreach);
    gate.open();

    EXPECT_TRUE(runner->waitForIdle(10s));
    EXPECT_EQ(delivered, QList<int> { 1 });
}

TEST_F(TaskRunner, TaskHandedOverOffTheChequeThreadIsABreach)
{
    std::thread([this] { EXPECT_THROW(runner->run(taskOf([] { return resultOf(1); })), till::ContractBreach); }).join();

    EXPECT_TRUE(runner->waitForIdle(0s));
}

}
