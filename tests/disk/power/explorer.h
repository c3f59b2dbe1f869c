#pragma once

#include "tests/disk/power/judge.h"
#include "tests/disk/power/planted_store.h"
#include "tests/disk/power/power_losses.h"
#include "tests/disk/power/story.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>

/// What has come of the losses of power in one story. A plain value.
struct Losses {
    std::size_t operations = 0; // on the disk
    std::size_t states = 0; // that differ, each opened by the till's store
    std::size_t restarts = 0; // of the till after a loss of power, during which power was lost again
    std::size_t wrong = 0; // of these
    std::string firstFault;
};

/// Lets a child live a story, then opens the store in every state of the disk that a loss of power can have left at any
/// moment of it. A state that was seen before is not opened again. [cheque-thread]
class Explorer {
public:
    struct Settings {
        QString child; // the program
        QString place; // a folder in memory, this object's alone
        int length = 1; // of the stories
        unsigned int seed = 0;
        Thoroughness thoroughness;
        bool stopsAtFault = false;
        /// Of so many states with an unfinished transaction, the till is started in one with a record of its own, and
        /// power is lost again at every moment of that. 0: in none.
        std::size_t statesPerRestart = 200;
    };

    explicit Explorer(const Settings& settings);

    /// With the till's store, or with one that has this defect. Throws `std::runtime_error` when the child fails, and
    /// when its record does not account for every byte that is on the disk in the end.
    [[nodiscard]] Losses explore(const Story& story, const std::optional<Defect>& defect);

    [[nodiscard]] bool stopsAtFault() const;

private:
    /// On the files that stand in the folder of lives.
    [[nodiscard]] std::vector<Operation> live(const Story& story, const QString& manner) const;
    [[nodiscard]] std::vector<DiskImage> exploreMoment(const RecordedDisk& disk, const Story& story,
                                                       const Expected& expected, Losses& losses);
    void exploreRestart(const DiskImage& image, const Story& story, const Expected& expected, Losses& losses);
    [[nodiscard]] bool isEnough(const Losses& losses) const;

    Settings settings;
    std::mt19937 dice;
    std::unordered_set<std::uint64_t> seen;
    std::size_t unfinished = 0; // states, so far
};
