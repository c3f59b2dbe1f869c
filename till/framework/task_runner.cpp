#include "till/framework/task_runner.h"

#include "host/facilities/log_manager.h"
#include "host/framework/activity_notifier.h"
#include "till/framework/contract.h"
#include "till/framework/current_exception.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QRunnable>

#include <mutex>

namespace till {

namespace {

// Tasks wait for the network far more than they compute.
constexpr int threads = 4;

// Jobs, results and wake-ups pass from thread to thread through Qt, whose own synchronisation a thread sanitizer does
// not see. So each of them is made on one side before this mutex is released, and first touched on the other after it
// was taken. It is no member of the runner, since a job has to take it before it may read even its own fields.
std::mutex handOver;

QEvent::Type wakeUp()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

const Log4Qt::Logger& logger()
{
    return *Log4Qt::LogManager::logger(QStringLiteral("taskmanager"), QString());
}

QSharedPointer<TaskResult> resultOf(BasicTask& task)
{
    try {
        QSharedPointer<TaskResult> result = task.run();
        if (result.isNull()) {
            logger().error("Задача не вернула результат");
        }
        return result;
    } catch (...) {
        logger().error("Ошибка выполнения задачи: %1", currentExceptionText());
        return nullptr;
    }
}

}

class TaskRunner::Job : public QRunnable {
public:
    Job(TaskRunner& owner, BasicTask& work)
        : runner(owner)
        , task(work)
    {
    }

    void run() override
    {
        {
            const std::lock_guard lock(handOver);
            if (runner.stopping) {
                return;
            }
        }
        QSharedPointer<TaskResult> result = resultOf(task);

        const std::lock_guard lock(handOver);
        runner.finished.push_back({ &task, std::move(result) });
        runner.somethingFinished.notify_all();
        QCoreApplication::postEvent(&runner, new QEvent(wakeUp()));
    }

private:
    TaskRunner& runner;
    BasicTask& task;
};

TaskRunner::TaskRunner(QObject* parent)
    : BaseActivityListener(parent)
{
    Singleton<ActivityNotifier>::get()->subscribe(this);
    pool.setMaxThreadCount(threads);
}

TaskRunner::~TaskRunner()
{
    {
        const std::lock_guard lock(handOver);
        stopping = true;
    }
    pool.waitForDone();
    // For the sanitizer: what the jobs have done comes before what the destructor does from here on.
    const std::lock_guard lock(handOver);
}

void TaskRunner::handleEvent(const Event& event)
{
    if (event.getCode() == EActivityListener::runTask) {
        run(event.value(QStringLiteral("task"), QVariant()).value<QSharedPointer<BasicTask>>());
    }
}

void TaskRunner::run(const QSharedPointer<BasicTask>& task)
{
    requireChequeThread(Side::plugin, "TaskRunner::run");
    if (task.isNull() || tasks.contains(task.data())) {
        throw ContractBreach(Side::plugin, task.isNull() ? "there is no task to run" : "a task is handed over twice");
    }
    tasks.insert(task.data(), task);
    Job* job = nullptr;
    {
        const std::lock_guard lock(handOver);
        job = new Job(*this, *task);
    }
    pool.start(job);
}

bool TaskRunner::waitForIdle(std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    const QPointer<TaskRunner> self(this);
    for (;;) {
        deliverFinished();
        if (self.isNull() || tasks.isEmpty()) {
            return true;
        }
        std::unique_lock lock(handOver);
        if (!somethingFinished.wait_until(lock, deadline, [this] { return !finished.empty(); })) {
            return false;
        }
    }
}

bool TaskRunner::event(QEvent* event)
{
    {
        // The event itself comes from another thread: see the hand-over.
        const std::lock_guard lock(handOver);
    }
    if (event->type() == wakeUp()) {
        deliverFinished();
        return true;
    }
    return BaseActivityListener::event(event);
}

void TaskRunner::deliverFinished()
{
    // A handler may wait for other tasks, and may even end the runner.
    const QPointer<TaskRunner> self(this);
    Finished next;
    while (!self.isNull() && takeFinished(next)) {
        const QSharedPointer<BasicTask> task = tasks.take(next.task);
        if (!next.result.isNull()) {
            deliver(task, next.result);
        }
    }
}

void TaskRunner::deliver(const QSharedPointer<BasicTask>& task, const QSharedPointer<TaskResult>& result) const
{
    try {
        task->deliver(result);
    } catch (...) {
        logger().error("Ошибка обработки результата задачи: %1", currentExceptionText());
    }
}

bool TaskRunner::takeFinished(Finished& next)
{
    const std::lock_guard lock(handOver);
    if (finished.empty()) {
        return false;
    }
    next = std::move(finished.front());
    finished.pop_front();
    return true;
}

}
