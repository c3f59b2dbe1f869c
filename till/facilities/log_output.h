#pragma once

#include "till/log_events.h"

namespace till {

/// Whether anybody takes events of the level: there is nothing to format otherwise. [any-thread]
[[nodiscard]] bool isLogged(LogLevel level);

/// Redacts the event, writes it out as one line, and shows it to the observers. Throws only when there is no memory for
/// the text. [any-thread]
void writeLog(LogEvent event);

} // namespace till
