#pragma once

#include <string>
#include <vector>

namespace crash {

/// How a drill has ended. A plain value.
struct DrillRun {
    int status = -1; // -1: it did not end by itself
    std::string output;
};

/// Runs the drill with these options besides those that say where everything is. [blocks: ten minutes at the longest]
[[nodiscard]] DrillRun runDrill(const std::vector<std::string>& options);

} // namespace crash
