#pragma once

#include "tests/crash/kill_points.h"
#include "tests/crash/planted_till.h"
#include "tests/crash/story.h"
#include "tests/crash/verdict.h"
#include "till/program/surroundings.h"
#include "till/script/service_control.h"

#include <QList>

#include <array>
#include <string>

namespace crash {

/// What a life of the till leaves for those behind it, and for whoever watches. Lives in memory that they share.
struct Board {
    Trace trace;
    std::atomic<int> step = 0; // the one that is being done
    std::atomic<int> restored = 0; // points of the cheque thread until the till was ready again
    std::array<char, 4096> fault {}; // why the life is a failure; empty when it is none

    /// Points that were in doubt: when the till had started again, all times together, and at the end.
    std::atomic<till::Kopecks> doubtAtStart = 0;
    std::atomic<till::Kopecks> doubtAtEnd = 0;
    Disagreement disagreement; // of the books

    void beginRun();
};

/// Where the lives of one batch of runs take place.
struct Place {
    till::Places places;
    QList<till::ControlledServer> servers;
    Grain grain = Grain::steps;
    Defect defect = Defect::none;
};

struct Assignment {
    const Story* story = nullptr;
    int base = 0;
    bool isRestart = false;
    KillPoint kill;
};

enum class LifeEnd : std::uint8_t { finished, killed, failed };

/// Lets the till live once, in a child process: starts it, takes the books when it starts again, goes through the story
/// from the step that the board tells, and looks at how everything has ended. The calling process must have one thread.
/// [blocks: until the child has ended, three minutes at the longest]
[[nodiscard]] LifeEnd live(const Place& place, const Assignment& assignment, Board& board);

} // namespace crash
