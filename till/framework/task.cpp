#include "host/framework/task.h"

#include <utility>

TaskResult::TaskResult() = default;
TaskResult::~TaskResult() = default;

QString TaskResult::toString() const
{
    return {};
}

BasicTask::BasicTask() = default;
BasicTask::~BasicTask() = default;

void BasicTask::addTaskResultHandler(const ResultHandler& handler)
{
    handlers.append(handler);
}

void BasicTask::deliver(const QSharedPointer<TaskResult>& result) const
{
    // A handler may add handlers, or let go of the task.
    const QList<ResultHandler> registered = handlers;
    for (const ResultHandler& handler : registered) {
        handler(result);
    }
}

CustomTask::CustomTask(std::function<QSharedPointer<TaskResult>()> work)
    : function(std::move(work))
{
}

CustomTask::~CustomTask() = default;

QSharedPointer<TaskResult> CustomTask::run()
{
    return function();
}
