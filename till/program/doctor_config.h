#pragma once

#include "till/program/doctor_finding.h"
#include "till/program/doctor_settings.h"

#include <QString>

namespace till::diagnosis {

/// The file itself and the names in it. A file that was `named` must be there; without one, the defaults hold.
/// [any-thread] [blocks: the disk]
[[nodiscard]] Findings checkConfigFile(const QString& file, bool named);

/// The values that `Config` has read, other than the servers: those that fall back to defaults. [cheque-thread]
[[nodiscard]] Findings checkValues(const ServiceSettings& settings);

/// The entries of `hosts`, without asking them. [any-thread]
[[nodiscard]] Findings checkAddresses(const ServiceSettings& settings);

} // namespace till::diagnosis
