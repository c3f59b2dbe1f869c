#pragma once

#include "host/export.h"
#include "host/facilities/tr.h"

#include <QList>
#include <QMap>
#include <QMetaType>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

#include <functional>

/// What a task has found. Made by the task, handed to the result handlers; whoever wants more derives from it.
class VANTIRO_HOST_API TaskResult {
public:
    TaskResult();
    virtual ~TaskResult();

    /// The result in words, for the log and the cashier; the empty text here.
    [[nodiscard]] virtual QString toString() const;

    int code = 0;
    QMap<QString, QVariant> data;
    tr::Tr error;

private:
    Q_DISABLE_COPY(TaskResult)
};

/// A deferred piece of work, run by the host. Handlers are added before the task is handed over; then the host calls
/// `run` once, on any thread, and `deliver` once with its result, on the thread of cheque operations.
class VANTIRO_HOST_API BasicTask {
public:
    using ResultHandler = std::function<void(const QSharedPointer<TaskResult>&)>;

    BasicTask();
    virtual ~BasicTask();

    /// Does the work. It may take long and must not throw. [any-thread] [blocks: for as long as the work takes]
    [[nodiscard]] virtual QSharedPointer<TaskResult> run() = 0;

    /// Registers what runs with the result; handlers run in the order of their adding. [cheque-thread]
    void addTaskResultHandler(const ResultHandler& handler);

    /// Calls the handlers with the result. For the host. [cheque-thread]
    void deliver(const QSharedPointer<TaskResult>& result) const;

private:
    Q_DISABLE_COPY(BasicTask)

    QList<ResultHandler> handlers;
};

/// A task that is a function.
class VANTIRO_HOST_API CustomTask : public BasicTask {
public:
    explicit CustomTask(std::function<QSharedPointer<TaskResult>()> function);
    ~CustomTask() override;

    [[nodiscard]] QSharedPointer<TaskResult> run() override;

private:
    std::function<QSharedPointer<TaskResult>()> function;
};

Q_DECLARE_METATYPE(QSharedPointer<BasicTask>)
