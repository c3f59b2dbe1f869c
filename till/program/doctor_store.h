#pragma once

#include "till/program/doctor_finding.h"

namespace till::diagnosis {

/// What waits in the open store: messages for the service and documents that have not come to their end. Throws
/// `BasicException` when the store cannot be read. [cheque-thread] [blocks: the disk]
[[nodiscard]] Findings checkStore();

} // namespace till::diagnosis
