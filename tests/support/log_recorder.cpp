#include "tests/support/log_recorder.h"

namespace {

    [[nodiscard]] QString levelName(till::LogLevel level)
    {
        switch (level) {
        case till::LogLevel::trace:
            return QStringLiteral("trace");
        case till::LogLevel::debug:
            return QStringLiteral("debug");
        case till::LogLevel::info:
            return QStringLiteral("info");
        case till::LogLevel::warn:
            return QStringLiteral("warn");
        case till::LogLevel::error:
            break;
        }
        return QStringLiteral("error");
    }

    [[nodiscard]] QString loggerName(const till::LogEvent& event)
    {
        return event.second.isEmpty() ? event.logger : event.logger + u'/' + event.second;
    }

} // namespace

LogRecorder::LogRecorder()
    : subscription(till::observeLog([this](const till::LogEvent& event) {
        const std::lock_guard lock(mutex);
        events.append(event);
    }))
{
}

QStringList LogRecorder::lines() const
{
    const std::lock_guard lock(mutex);
    QStringList result;
    for (const till::LogEvent& event : events) {
        result.append(levelName(event.level) + u' ' + loggerName(event) + QStringLiteral(": ") + event.text);
    }
    return result;
}

QStringList LogRecorder::of(const QString& logger) const
{
    const std::lock_guard lock(mutex);
    QStringList result;
    for (const till::LogEvent& event : events) {
        if (loggerName(event) == logger) {
            result.append(levelName(event.level) + QStringLiteral(": ") + event.text);
        }
    }
    return result;
}

void LogRecorder::clear()
{
    const std::lock_guard lock(mutex);
    events.clear();
}
