#include "tests/crash/drill.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <sstream>

namespace crash {

Drill::Drill(const Tools& givenTools, const Story& givenStory, const Extent& givenExtent, Board& givenBoard)
    : tools(givenTools)
    , story(givenStory)
    , extent(givenExtent)
    , board(givenBoard)
{
}

StoryReport Drill::run()
{
    const auto begin = std::chrono::steady_clock::now();
    killStory(Lane::cheque);
    killStory(Lane::beside);
    killRestarts();
    report.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return report;
}

StoryReport Drill::repeat(const std::vector<KillPoint>& kills)
{
    if (!runOnce(kills) && report.failures == 0) {
        ++report.failures;
        std::printf("FAILED %s: the till does not come to the point\n", qPrintable(story.name));
    }
    return report;
}

void Drill::list()
{
    const RunResult result = Batch(tools, story, board).run({});
    std::istringstream names(result.passed);
    int number = 0;
    for (std::string name; std::getline(names, name);) {
        std::printf("%s c%d %s\n", qPrintable(story.name), ++number, name.c_str());
    }
}

/// More failures tell nothing more.
bool Drill::isHopeless() const
{
    constexpr int enough = 10;
    return report.failures >= enough;
}

/// False when the till did not come to the last of the points.
bool Drill::runOnce(const std::vector<KillPoint>& kills)
{
    if (!batch || batch->isFull()) {
        batch.reset(); // the service ends before the next one begins
        batch.emplace(tools, story, board);
    }
    const RunResult result = batch->run(kills);
    ++report.runs;
    report.kills += result.kills;
    report.doubts += result.isDoubtful ? 1 : 0;
    if (!result.fault.empty()) {
        noteFailure(kills, result);
        batch.reset(); // what has gone wrong is in the books of all runs behind
    } else if (kills.size() == 1 && result.kills == 1 && restarts.insert(result.restart).second) {
        const auto restored = std::ranges::count(result.restart, '\n');
        restartsToKill.emplace_back(kills.front(), extent.isDeep ? result.points : static_cast<int>(restored));
    }
    return result.kills == static_cast<int>(kills.size());
}

void Drill::noteFailure(const std::vector<KillPoint>& kills, const RunResult& result)
{
    const std::string text = textOf(kills);
    if (++report.failures == 1) {
        std::snprintf(report.repeat.data(), report.repeat.size(), "%s", text.c_str());
    }
    report.disagreement += result.disagreement;
    std::printf("FAILED --story %s --point %s (%s): %s\n", qPrintable(story.name), text.c_str(),
                result.kills == 0 ? "not killed" : result.lastPoint.c_str(), result.fault.c_str());
    std::fflush(stdout);
}

/// The last run is one in which the till is not killed any more: it must go well, too.
void Drill::killStory(Lane lane)
{
    int number = 1;
    while (!isHopeless() && runOnce({ KillPoint { lane, number, Side::before } })) {
        ++report.points;
        static_cast<void>(runOnce({ KillPoint { lane, number, Side::after } }));
        number += extent.stride;
    }
}

void Drill::killRestarts()
{
    for (const auto& [kill, points] : restartsToKill) {
        for (int number = 1; number <= points && !isHopeless(); number += extent.stride) {
            static_cast<void>(runOnce({ kill, KillPoint { Lane::cheque, number, Side::before } }));
            static_cast<void>(runOnce({ kill, KillPoint { Lane::cheque, number, Side::after } }));
            ++report.restartPoints;
        }
    }
}

std::string textOf(const std::vector<KillPoint>& kills)
{
    std::string text;
    for (const KillPoint& kill : kills) {
        text += (text.empty() ? "" : ",") + std::string(kill.lane == Lane::cheque ? "c" : "p")
            + std::to_string(kill.number) + (kill.side == Side::before ? "-" : "+");
    }
    return text;
}

std::vector<KillPoint> killsOf(const std::string& text)
{
    std::vector<KillPoint> kills;
    std::istringstream stream(text);
    for (std::string word; std::getline(stream, word, ',');) {
        KillPoint kill;
        char lane = '\0';
        char side = '\0';
        if (std::sscanf(word.c_str(), "%c%d%c", &lane, &kill.number, &side) != 3 || (lane != 'c' && lane != 'p')
            || (side != '-' && side != '+') || kill.number < 1) {
            return {};
        }
        kill.lane = lane == 'c' ? Lane::cheque : Lane::beside;
        kill.side = side == '-' ? Side::before : Side::after;
        kills.push_back(kill);
    }
    return kills;
}

} // namespace crash
