#pragma once

#include "tests/crash/life.h"
#include "till/program/sandbox_process.h"

#include <QString>
#include <QTemporaryDir>

#include <array>
#include <string>
#include <vector>

namespace crash {

/// What the drill works with. A plain value.
struct Tools {
    QString sandbox; // the program
    QString plugin;
    QString rules; // of the service
    QString logLevel = QStringLiteral("error"); // of the till
    QString folder; // for stores and states; made anew where there is none
    bool keep = false; // the folders of runs that have failed
    Grain grain = Grain::steps;
    Defect defect = Defect::none;
};

/// What has become of one run: a story with its kills, up to its end.
struct RunResult {
    int kills = 0; // that the till came to; the next one was not reached
    std::string fault; // empty when all has gone well
    Disagreement disagreement; // of the books, where that is the fault
    bool isDoubtful = false; // points were in doubt when the till started again
    std::string restart; // what the first start behind the last kill has gone through, up to the end of its restoring
    std::string lastPoint; // where the last kill was
    int points = 0; // of the cheque thread in the last life
    std::string passed; // their names, each on a line
};

/// Some runs of one story on one store and one service of two ends, so that each run is seen by the books of those
/// behind it too, and none has to wait for long books. The calling process must have one thread.
class Batch {
public:
    Batch(const Tools& tools, const Story& story, Board& board);
    ~Batch();
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

    /// The till is killed at the points, one life after the other, and then lives on to the end of the story.
    [[nodiscard]] RunResult run(const std::vector<KillPoint>& kills);

    [[nodiscard]] bool isFull() const;

private:
    void makeReady() const;
    [[nodiscard]] bool explainsDoubt(const KillPoint& kill) const;

    const Tools& tools;
    const Story& story;
    Board& board;
    QTemporaryDir folder;
    std::array<till::SandboxProcess, 2> ends;
    Place place;
    int runs = 0;
};

} // namespace crash
