#include "till/program/doctor_plugin.h"

#include "host/framework/action.h"
#include "host/framework/task.h"
#include "till/framework/action_dispatcher.h"
#include "till/framework/task_runner.h"

#include <exception>

namespace till::diagnosis {

namespace {

[[nodiscard]] Finding judge(const TaskResult& result)
{
    const int server = result.data.value(QStringLiteral("serverIndex"), -1).toInt();
    return server < 0
        ? failed(QStringLiteral("The plug-in reaches no server (%1); see what the servers' own lines say.")
                     .arg(result.toString()))
        : ok(QStringLiteral("The plug-in reaches server %1 (%2).").arg(QString::number(server + 1), result.toString()));
}

/// All that the plug-in has made is gone when this returns, so that the plug-in can be stopped.
[[nodiscard]] Finding checkPing(std::chrono::seconds longest)
{
    constexpr std::chrono::seconds grace(5);
    control::Action action;
    action.appendArgument(QStringLiteral("Vantiro"), QStringLiteral("pluginName"));
    const bool carriedOut = Singleton<ActionDispatcher>::get()->carryOut(
        EContext::any, control::checkConnection, action, [](const control::Action&) { return true; });
    const auto task = action.value(QStringLiteral("pingTask"), QVariant()).value<QSharedPointer<BasicTask>>();
    if (!carriedOut || task.isNull()) {
        return failed(QStringLiteral(
            "The plug-in gives no task for the check of its connection; install the plug-in of this till."));
    }

    QSharedPointer<TaskResult> result;
    task->addTaskResultHandler([&result](const QSharedPointer<TaskResult>& found) { result = found; });
    TaskRunner runner;
    runner.run(task);
    const bool ended = runner.waitForIdle(longest + grace);
    if (!ended || result.isNull()) {
        return failed(QStringLiteral("The plug-in's check of its connection gives no result; see the till's log."));
    }
    return judge(*result);
}

} // namespace

Findings checkPlugin(const Places& places, std::chrono::seconds longest)
{
    Findings findings;
    try {
        const QString file = places.pluginFile();
        const LoadedPlugin plugin(file);
        findings.append(ok(QStringLiteral("The plug-in %1 is loaded and started.").arg(file)));
        findings.append(checkPing(longest));
    } catch (const std::exception& failure) {
        findings.append(
            failed(QStringLiteral("The plug-in does not work: %1.").arg(QString::fromUtf8(failure.what()))));
    }
    return findings;
}

} // namespace till::diagnosis
