#include "tests/crash/batch.h"

#include <QFile>

#include <stdexcept>

namespace crash {

namespace {

constexpr int most = 6; // the books are taken twice in each run, and their cost grows with the runs before

const QString first = QStringLiteral("first");
const QString second = QStringLiteral("second");

[[nodiscard]] QStringList argumentsOf(const Tools& tools, const QTemporaryDir& folder, const QString& name)
{
    const QString state = tools.defect == Defect::twoBooks ? name : QStringLiteral("service");
    return { QStringLiteral("--rules"), tools.rules,
             QStringLiteral("--state"), folder.filePath(state + QStringLiteral(".sqlite")),
             QStringLiteral("--name"),  name,
             QStringLiteral("--quiet") };
}

/// A till that is started and ended. It has a store then, whose making is a story of its own.
[[nodiscard]] const Story& nothing()
{
    static const Story story;
    return story;
}

[[nodiscard]] till::SandboxProcess end(const Tools& tools, const QTemporaryDir& folder, const QString& name)
{
    return till::SandboxProcess(tools.sandbox, argumentsOf(tools, folder, name), name,
                                folder.filePath(name + QStringLiteral(".log")));
}

void writeConfiguration(const QString& name, const QList<till::ControlledServer>& servers)
{
    QFile file(name);
    const QString text = QStringLiteral("[Vantiro]\nhosts=%1,%2\ntimeout=30\nuser=till\npassword=secret\n"
                                        "checkCouponPrefix=vantiro-\npositionCouponPrefix=line-\n")
                             .arg(servers.at(0).service.toString(), servers.at(1).service.toString());
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(text.toUtf8()) < 0) {
        throw std::runtime_error("the configuration cannot be written");
    }
}

} // namespace

Batch::Batch(const Tools& givenTools, const Story& givenStory, Board& givenBoard)
    : tools(givenTools)
    , story(givenStory)
    , board(givenBoard)
    , folder(tools.folder + QStringLiteral("/batch-XXXXXX"))
    , ends { end(tools, folder, first), end(tools, folder, second) }
{
    place.servers = { ends[0].server(), ends[1].server() };
    place.grain = tools.grain;
    place.defect = tools.defect;
    place.places.config = folder.filePath(QStringLiteral("till.ini"));
    place.places.data = folder.filePath(QStringLiteral("till"));
    place.places.plugin = tools.plugin;
    place.places.logLevel = tools.logLevel;
    writeConfiguration(place.places.config, place.servers);
    if (!story.isFirstStart && live(place, { &nothing(), 0, false, {} }, board) != LifeEnd::finished) {
        throw std::runtime_error(board.fault.data());
    }
}

Batch::~Batch() = default;

bool Batch::isFull() const
{
    return runs >= (story.isFirstStart ? 1 : most);
}

/// A kill leaves the service as it was at that moment.
void Batch::makeReady() const
{
    const till::ServiceControl service(place.servers);
    for (const till::ControlledServer& server : place.servers) {
        service.start(server);
        service.clearFaults(server);
    }
}

/// The last exchange before the kill was one about points, and the till had not written its end down yet.
bool Batch::explainsDoubt(const KillPoint& kill) const
{
    const std::string operation = board.trace.unsavedOperationAt(kill);
    return operation == "SubtractBonus45" || operation == "CancelSubtractBonus";
}

RunResult Batch::run(const std::vector<KillPoint>& kills)
{
    makeReady();
    board.beginRun();
    Assignment assignment { &story, runs * documentsOfRun, false, {} };
    ++runs;

    RunResult result;
    bool isExplained = story.losesSpendings;
    for (;;) {
        const bool isLast = result.kills == static_cast<int>(kills.size());
        assignment.kill = isLast ? KillPoint() : kills[static_cast<std::size_t>(result.kills)];
        const LifeEnd end = live(place, assignment, board);
        if (assignment.isRestart) {
            result.restart = board.trace.names(board.restored);
        }
        result.points = board.trace.count(Lane::cheque);
        result.passed = board.trace.names(result.points);
        if (end != LifeEnd::killed) {
            result.fault = end == LifeEnd::failed ? board.fault.data() : "";
            break;
        }
        ++result.kills;
        result.lastPoint = board.trace.name(assignment.kill.lane, assignment.kill.number);
        isExplained = isExplained || explainsDoubt(assignment.kill);
        assignment.isRestart = true;
    }
    result.disagreement = board.disagreement;
    result.isDoubtful = board.doubtAtStart != 0;
    if (result.fault.empty() && result.isDoubtful && !isExplained) {
        result.fault = "points are in doubt, and no kill and no lost reply explains it";
    }
    if (result.fault.empty() && board.doubtAtEnd != 0) {
        result.fault = "points are still in doubt at the end, which the close has to settle";
    }
    folder.setAutoRemove(folder.autoRemove() && (result.fault.empty() || !tools.keep));
    return result;
}

} // namespace crash
