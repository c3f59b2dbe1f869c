#pragma once

#include <functional>

/// The most memory that the work holds at once beyond what the process holds already, in MiB. The work runs once, in a
/// child process, so that neither what ran before nor what runs after it counts. 0 when no child can be had. The
/// process must have one thread. [blocks: as long as the work]
[[nodiscard]] double peakMemory(const std::function<void()>& work);
