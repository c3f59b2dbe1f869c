#pragma once

#include "till/log_events.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <mutex>

/// Keeps every event of the log for as long as it lives. Thread-safe.
class LogRecorder {
public:
    LogRecorder();

    /// All events in order: "info vantiro: text", or "info taskmanager/vantiroping: text" where there is a second name.
    [[nodiscard]] QStringList lines() const;
    /// The events of one logger, given as "vantiro" or "taskmanager/vantiroping": "info: text".
    [[nodiscard]] QStringList of(const QString& logger) const;
    void clear();

private:
    mutable std::mutex mutex;
    QList<till::LogEvent> events;
    till::LogSubscription subscription;
};
