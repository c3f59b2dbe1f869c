#pragma once

#include "host/export.h"

#include <QString>

#include <functional>
#include <memory>

namespace till {

enum class LogLevel { trace, debug, info, warn, error };

/// One event of the log. The text is filled in and redacted; its line feeds are not yet escaped.
struct LogEvent {
    LogLevel level = LogLevel::info;
    QString logger;
    QString second; // the second name of the logger, often empty
    QString text;
};

/// Must not throw; what it throws all the same is dropped. What it logs itself reaches the log but no observer.
using LogObserver = std::function<void(const LogEvent&)>;

/// Keeps an observer of the log for as long as it lives. When the destructor returns, the observer runs on no other
/// thread and is not called again, so it may refer to what goes next. [any-thread] [blocks: one call of the observer]
class VANTIRO_HOST_API LogSubscription {
public:
    struct Entry;

    explicit LogSubscription(std::shared_ptr<Entry> entry);
    ~LogSubscription();
    LogSubscription(LogSubscription&& other) noexcept;
    LogSubscription& operator=(LogSubscription&& other) noexcept;
    LogSubscription(const LogSubscription&) = delete;
    LogSubscription& operator=(const LogSubscription&) = delete;

private:
    void end() noexcept;

    std::shared_ptr<Entry> entry;
};

/// Calls the observer for every event, whatever the threshold of the log, on the thread that logs and before the log
/// call returns. One observer is never called by two threads at once. [any-thread]
[[nodiscard]] VANTIRO_HOST_API LogSubscription observeLog(LogObserver observer);

} // namespace till
