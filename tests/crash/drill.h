#pragma once

#include "tests/crash/batch.h"

#include <array>
#include <optional>
#include <set>

namespace crash {

/// What the drill of one story has come to. A plain value, for memory that processes share.
struct StoryReport {
    int points = 0; // of the story itself
    int restartPoints = 0; // of the starts that look different from each other
    int kills = 0;
    int runs = 0;
    int doubts = 0; // runs in which points were in doubt
    int failures = 0; // runs
    Disagreement disagreement; // in all of them
    std::array<char, 128> repeat {}; // the first run that has failed: its points
    double seconds = 0.0;
};

/// How much of a story is drilled. A plain value.
struct Extent {
    int stride = 1; // each so-many-th point is taken, with both of its sides
    bool isDeep = false; // the starts behind the kills are killed up to the end of the story
};

/// Kills the till at the points of the story, before and after. The starts behind these kills are told apart by what
/// they go through until the till is ready again; each that looks different is killed at its points as well, up to
/// there or to the end of the story. Runs that fail are printed; after ten of them the drill of the story ends.
/// [blocks]
class Drill {
public:
    Drill(const Tools& tools, const Story& story, const Extent& extent, Board& board);

    [[nodiscard]] StoryReport run();

    /// One run alone, as it was printed.
    [[nodiscard]] StoryReport repeat(const std::vector<KillPoint>& kills);

    /// Prints the points of the cheque thread, killing nothing.
    void list();

private:
    bool runOnce(const std::vector<KillPoint>& kills);
    void noteFailure(const std::vector<KillPoint>& kills, const RunResult& result);
    [[nodiscard]] bool isHopeless() const;
    void killStory(Lane lane);
    void killRestarts();

    const Tools& tools;
    const Story& story;
    const Extent extent;
    Board& board;
    std::optional<Batch> batch;
    StoryReport report;
    std::set<std::string> restarts; // by their looks
    std::vector<std::pair<KillPoint, int>> restartsToKill; // the kill before, and the points
};

[[nodiscard]] std::string textOf(const std::vector<KillPoint>& kills);
/// Empty when the text is no list of points.
[[nodiscard]] std::vector<KillPoint> killsOf(const std::string& text);

} // namespace crash
