#pragma once

#include "till/program/doctor_finding.h"
#include "till/program/surroundings.h"

#include <chrono>

namespace till::diagnosis {

/// Finds and loads the plug-in, starts it, lets it ping its servers and stops it again. `longest` is the time that
/// such a ping takes when no server answers. [cheque-thread] [blocks: somewhat more than that time at the longest]
[[nodiscard]] Findings checkPlugin(const Places& places, std::chrono::seconds longest);

} // namespace till::diagnosis
