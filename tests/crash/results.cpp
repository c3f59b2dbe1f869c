#include "tests/crash/results.h"

#include <cstdio>

namespace crash {

namespace {

void print(const std::string& name, const StoryReport& report, const std::string& result)
{
    std::printf("%-11s %6d %8d %6d %6d %5d %8d %8d %10d %9d %5.0f  %s\n", name.c_str(), report.points,
                report.restartPoints, report.runs, report.kills, report.disagreement.lost, report.disagreement.doubled,
                report.disagreement.phantom, report.disagreement.different, report.doubts, report.seconds,
                result.c_str());
}

[[nodiscard]] StoryReport sumOf(const std::vector<const Story*>& stories, const Results& results)
{
    StoryReport sum;
    for (std::size_t i = 0; i < stories.size(); ++i) {
        const StoryReport& one = results.reports[i];
        sum.points += one.points;
        sum.restartPoints += one.restartPoints;
        sum.runs += one.runs;
        sum.kills += one.kills;
        sum.doubts += one.doubts;
        sum.failures += one.failures;
        sum.disagreement += one.disagreement;
        sum.seconds += one.seconds;
    }
    return sum;
}

} // namespace

bool tell(const std::vector<const Story*>& stories, const Results& results, const std::string& command)
{
    std::printf("\n%-11s %6s %8s %6s %6s %5s %8s %8s %10s %9s %5s\n", "story", "points", "restarts", "runs", "kills",
                "lost", "doubled", "phantom", "different", "in doubt", "s");
    bool isGood = !stories.empty();
    std::string repeat;
    for (std::size_t i = 0; i < stories.size(); ++i) {
        const StoryReport& one = results.reports[i];
        const std::string name = stories[i]->name.toStdString();
        const bool isDone = results.isDone[i];
        print(name, one,
              !isDone                ? "NOT FINISHED"
                  : one.failures > 0 ? std::to_string(one.failures) + " runs FAILED"
                                     : "good");
        isGood = isGood && isDone && one.failures == 0;
        if (repeat.empty() && one.failures > 0) {
            repeat = command + " --story " + name + " --point " + one.repeat.data();
        }
    }
    print("all", sumOf(stories, results), isGood ? "all is accounted for" : "THE DRILL HAS FAILED");
    std::printf("\nPoints and restarts were each tried on both sides. In doubt: runs in which the service had taken "
                "points, and the\nreply was lost with the till or on its way; the close has settled each of them.\n");
    if (!repeat.empty()) {
        std::printf("\nTo repeat the first failure:\n%s\n", repeat.c_str());
    }
    std::fflush(stdout);
    return isGood;
}

} // namespace crash
