#include "client/ping_task_result.h"

QString PingTaskResult::toString() const
{
    return QStringLiteral("сервер доступен - %1").arg(available ? QStringLiteral("true") : QStringLiteral("false"));
}
