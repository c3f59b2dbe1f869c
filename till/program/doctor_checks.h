#pragma once

#include "till/program/doctor_finding.h"
#include "till/program/surroundings.h"

#include <functional>

namespace till::diagnosis {

/// Checks configuration, data folder, each server and the plug-in, in this order, and goes on whatever fails. Each
/// finding is told as soon as it is there. True when none has failed. `Config` answers from the file of the places
/// afterwards. [cheque-thread] [blocks: five times the timeout for each server at the longest, and for the disk]
[[nodiscard]] bool examine(const Places& places, const std::function<void(const Finding&)>& tell);

} // namespace till::diagnosis
