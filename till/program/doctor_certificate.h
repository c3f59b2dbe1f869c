#pragma once

#include "till/program/doctor_exchange.h"
#include "till/program/doctor_finding.h"

#include <QDateTime>
#include <QString>

namespace till::diagnosis {

/// A certificate that is trusted: the days that it has left. `title` begins the sentence. [any-thread]
[[nodiscard]] Finding judgeTrusted(const QString& title, const Certificate& certificate, const QDateTime& now);

/// A TLS connection that failed. `look` is the same connection without verification: it tells the reasons, each with a
/// finding of its own. [any-thread]
[[nodiscard]] Findings judgeUntrusted(const QString& title, const QString& host, const Exchange& failure,
                                      const Exchange& look, const QDateTime& now);

} // namespace till::diagnosis
