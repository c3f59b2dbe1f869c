#pragma once

#include "tests/crash/drill.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace crash {

/// What the processes of a drill share: who takes which story, and what has come of it.
struct Results {
    static constexpr std::size_t most = 16;

    std::atomic<std::size_t> next = 0;
    std::array<StoryReport, most> reports {};
    std::array<std::atomic<bool>, most> isDone {};
};

/// Prints a line for each story, their sum, and how the first failure is repeated, with `command` in front. True when
/// every story has been drilled to its end and none has failed.
[[nodiscard]] bool tell(const std::vector<const Story*>& stories, const Results& results, const std::string& command);

} // namespace crash
