#pragma once

#include "host/export.h"
#include "till/log_events.h"

#include <QString>

#include <cstddef>

namespace till {

struct LogSettings {
    /// Path of the current file; empty for none. Its folder is made when it is missing. When the file is full, it
    /// becomes `name.1.log`, what that was becomes `name.2.log`, and a new one is begun.
    QString file = {};
    std::size_t maximumFileSize = 10 * 1024 * 1024; // bytes
    std::size_t maximumFiles = 5; // older files that are kept beside the current one
    bool console = true; // standard error
    LogLevel threshold = LogLevel::info; // events below it are not written
};

/// Sends the log where the settings say; until it is called, warnings and errors go to standard error. It may be called
/// again. The files are for their owner's eyes only, as they name customers, and an event is in its file when the log
/// call returns. Never throws: a file that cannot be written is told on standard error, and the log goes there instead.
/// One process per file. [any-thread]
VANTIRO_HOST_API void setUpLogging(const LogSettings& settings);

} // namespace till
