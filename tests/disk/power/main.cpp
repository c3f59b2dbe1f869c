#include "tests/disk/power/explorer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>
#include <stdexcept>

// Searches what losses of power leave of the till's store, or proves that the search finds the losses of stores with a
// defect. The exit status is 0 when all is as it should be, 1 when not, 2 when the search itself fails.

namespace {

struct Sum {
    std::size_t states = 0;
    std::size_t wrong = 0;
};

Sum exploreAll(Explorer& explorer, const std::vector<Story>& all, const std::optional<Defect>& defect)
{
    Sum sum;
    for (const Story& story : all) {
        QElapsedTimer timer;
        timer.start();
        const Losses losses = explorer.explore(story, defect);
        sum.states += losses.states;
        sum.wrong += losses.wrong;
        std::printf("  %-10s %6zu operations %8zu states %4zu restarts %6zu wrong %7.1f s  %s\n",
                    qPrintable(story.name), losses.operations, losses.states, losses.restarts, losses.wrong,
                    static_cast<double>(timer.elapsed()) / 1000.0, losses.firstFault.c_str());
        std::fflush(stdout);
        if (explorer.stopsAtFault() && sum.wrong > 0) {
            break;
        }
    }
    return sum;
}

[[nodiscard]] int searchTill(const Explorer::Settings& settings, std::size_t least)
{
    Explorer explorer(settings);
    const Sum sum = exploreAll(explorer, stories(settings.length, settings.seed), std::nullopt);
    std::printf("%zu states of the disk, %zu wrong; at least %zu were asked for\n", sum.states, sum.wrong, least);
    return sum.wrong == 0 && sum.states >= least ? 0 : 1;
}

/// Each defect in turn, and first the same store without one. A defect is found when one state is wrong; to count them
/// all takes longer.
[[nodiscard]] int searchDefects(Explorer::Settings settings, bool countsAll)
{
    bool asExpected = true;
    for (const Defect& defect : defects()) {
        const bool isNone = &defect == &defects().front();
        settings.stopsAtFault = !isNone && !countsAll;
        Explorer explorer(settings);
        std::printf("defect: %s\n", qPrintable(defect.name));
        const Sum sum = exploreAll(explorer, stories(settings.length, settings.seed), defect);
        const bool right = (sum.wrong == 0) == isNone;
        asExpected = asExpected && right;
        std::printf("%s: %zu of %zu states wrong%s\n", qPrintable(defect.name), sum.wrong, sum.states,
                    right ? "" : "  <-- NOT AS EXPECTED");
    }
    return asExpected ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
try {
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption planted(QStringLiteral("defects"), QStringLiteral("Search stores with a defect instead."));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("Of the reorderings."),
                                  QStringLiteral("number"), QStringLiteral("20240305"));
    parser.addOptions({ planted, seed });
    parser.setApplicationDescription(
        QStringLiteral("With VANTIRO_FAULTS=full in the environment the stories are longer, "
                       "and there are more reorderings."));
    parser.addHelpOption();
    parser.process(application);

    const QTemporaryDir place(QStringLiteral("/dev/shm/vantiro-power-XXXXXX"));
    if (!place.isValid()) {
        throw std::runtime_error("there is no folder in memory");
    }
    Explorer::Settings settings;
    settings.child = QStringLiteral(VANTIRO_POWER_CHILD);
    settings.place = place.path();
    settings.seed = parser.value(seed).toUInt();
    std::printf("seed %u\n", settings.seed);
    const bool isFull = qEnvironmentVariable("VANTIRO_FAULTS") == u"full";
    if (parser.isSet(planted)) {
        settings.thoroughness.shuffles = 2;
        settings.statesPerRestart = 0; // that would be a start of the till's own store
        return searchDefects(settings, isFull);
    }
    if (isFull) {
        settings.length = 4;
        settings.thoroughness = { .shuffles = 20, .tornAlone = true };
        return searchTill(settings, 75'000);
    }
    settings.length = 2;
    return searchTill(settings, 20'000);
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 2;
}
