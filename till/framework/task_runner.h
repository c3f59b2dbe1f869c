#pragma once

#include "host/export.h"
#include "host/framework/base_activity_listener.h"
#include "host/framework/task.h"

#include <QHash>
#include <QSharedPointer>
#include <QThreadPool>

#include <chrono>
#include <condition_variable>
#include <deque>

namespace till {

/// Runs the tasks of event 245, and those handed to it directly, on threads of its own, several at a time. The results
/// are delivered on the thread of cheque operations, where the runner is made and lives: by its event loop, or by
/// `waitForIdle`. A task that throws, or that gives no result, is logged by "taskmanager", and its handlers do not run;
/// an exception of a handler is logged likewise. A task is let go of on the thread of cheque operations only, so what
/// it and its handlers hold is never destroyed elsewhere. [cheque-thread]
class VANTIRO_HOST_API TaskRunner : public BaseActivityListener {
public:
    /// Subscribes to the `ActivityNotifier`.
    explicit TaskRunner(QObject* parent = nullptr);
    /// Tasks that run are waited for; tasks that do not run yet, and results that are not delivered, are dropped. No
    /// handler runs afterwards. [blocks: as long as the slowest task that runs]
    ~TaskRunner() override;

    void handleEvent(const Event& event) override;

    /// Takes the task over and returns at once. Throws `ContractBreach` for a null task, and for one that is under way.
    void run(const QSharedPointer<BasicTask>& task);

    /// Delivers results until every task has run, those too that handlers have started meanwhile. False when the time
    /// is up; the rest goes on. [blocks: until the time is up]
    [[nodiscard]] bool waitForIdle(std::chrono::milliseconds limit);

protected:
    bool event(QEvent* event) override;

private:
    class Job;

    struct Finished {
        BasicTask* task = nullptr;
        QSharedPointer<TaskResult> result;
    };

    void deliverFinished();
    void deliver(const QSharedPointer<BasicTask>& task, const QSharedPointer<TaskResult>& result) const;
    [[nodiscard]] bool takeFinished(Finished& next);

    QHash<BasicTask*, QSharedPointer<BasicTask>> tasks; // under way; on the thread of cheque operations only

    // What both sides touch is guarded by the one mutex of the hand-over, which the source defines.
    std::deque<Finished> finished;
    std::condition_variable somethingFinished;
    bool stopping = false;

    QThreadPool pool;
};

}
