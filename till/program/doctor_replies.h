#pragma once

#include "till/program/doctor_exchange.h"
#include "till/program/doctor_finding.h"

#include <QString>

#include <chrono>

namespace till::diagnosis {

/// What came of a ping over a connection that was made. `title` begins the sentences. [any-thread]
[[nodiscard]] Finding judgePing(const QString& title, const Exchange& exchange, std::chrono::seconds timeout);

/// What came of an operation that needs the credentials. [any-thread]
[[nodiscard]] Finding judgeCredentials(const QString& title, const Exchange& exchange, bool hasCredentials);

/// Whether the reply is a fault that the plug-in would take for an answer. [any-thread]
[[nodiscard]] bool isForeignFault(const Exchange& exchange);

} // namespace till::diagnosis
