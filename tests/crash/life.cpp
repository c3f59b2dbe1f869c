#include "tests/crash/life.h"

#include "host/facilities/config.h"
#include "host/facilities/exceptions.h"
#include "till/desk/cashier.h"

#include <QCoreApplication>
#include <QHashSeed>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <stdexcept>

namespace crash {

namespace {

constexpr unsigned patience = 180; // seconds

/// Says nothing, and knows the code that the customer has been sent.
[[nodiscard]] till::Cashier cashierOfStory()
{
    return { [](const QString&) {}, [](const QString&) { return QStringLiteral("1234"); }, [](const QString&) {} };
}

[[nodiscard]] Watch watchOf(const Place& place, const Assignment& assignment, Board& board)
{
    Watch watch;
    watch.trace = &board.trace;
    watch.folder = place.places.dataFolder().toStdString() + '/';
    for (const till::ControlledServer& server : place.servers) {
        watch.services.emplace_back(server.service.port(), server.name.toStdString());
    }
    watch.grain = place.grain;
    watch.kill = assignment.kill;
    return watch;
}

[[nodiscard]] till::Delivery::Settings deliverySettings(const Place& place)
{
    till::Delivery::Settings settings;
    for (const till::ControlledServer& server : place.servers) {
        settings.servers.append(server.service);
    }
    settings.timeout = 30;
    return settings;
}

void goThrough(const Place& place, const Assignment& assignment, Board& board)
{
    int argc = 1;
    char name[] = "crash_till";
    char* argv[] = { name, nullptr };
    const QCoreApplication application(argc, argv);
    QHashSeed::resetRandomGlobalSeed(); // a till that starts again writes attributes in another order

    const till::OpenTill till(place.places);
    const PlantedTill planted(place.defect, assignment.isRestart);
    const till::ServiceControl service(place.servers);
    if (assignment.isRestart) { // points that the plug-in alone has written down are not on the cheque yet
        static_cast<void>(requireBooks(service, board.disagreement));
    }
    till::setCashier(cashierOfStory());
    const till::LoadedPlugin plugin(place.places.pluginFile());
    till::Checkout checkout;
    till::Delivery delivery(deliverySettings(place));
    static_cast<void>(checkout.restore());
    board.restored = board.trace.count(Lane::cheque);
    if (assignment.isRestart) {
        board.doubtAtStart += requireBooks(service, board.disagreement); // what was undone must not have come back
    }

    const Desk desk { checkout, delivery, service, assignment.base };
    for (int step = board.step; step < assignment.story->steps.size(); ++step) {
        board.step = step;
        assignment.story->steps.at(step)(desk);
    }
    board.step = static_cast<int>(assignment.story->steps.size());
    checkout.idle(std::chrono::seconds(30));
    board.doubtAtEnd = requireBooks(service, board.disagreement);
    requireEndings(*assignment.story, assignment.base);
}

[[noreturn]] void liveAndExit(const Place& place, const Assignment& assignment, Board& board)
{
    const auto fail = [&board](const std::string& text) {
        std::snprintf(board.fault.data(), board.fault.size(), "step %d: %s", board.step + 1, text.c_str());
        ::_exit(EXIT_FAILURE);
    };
    ::alarm(patience);
    try {
        arm(watchOf(place, assignment, board));
        goThrough(place, assignment, board);
    } catch (const BasicException& failure) {
        fail(failure.tr().ru().toStdString());
    } catch (const std::exception& failure) {
        fail(failure.what());
    }
    ::_exit(EXIT_SUCCESS); // what the parent has made is the parent's to end
}

} // namespace

void Board::beginRun()
{
    trace.clear();
    step = 0;
    restored = 0;
    fault[0] = '\0';
    doubtAtStart = 0;
    doubtAtEnd = 0;
    disagreement = {};
}

LifeEnd live(const Place& place, const Assignment& assignment, Board& board)
{
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("the system gives no process");
    }
    if (child == 0) {
        liveAndExit(place, assignment, board);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) { }
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL && assignment.kill.number > 0) {
        return LifeEnd::killed;
    }
    if (WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) {
        return LifeEnd::finished;
    }
    if (board.fault[0] == '\0') {
        std::snprintf(board.fault.data(), board.fault.size(), "step %d: the till has ended by %s %d", board.step + 1,
                      WIFSIGNALED(status) ? "signal" : "itself with status",
                      WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status));
    }
    return LifeEnd::failed;
}

} // namespace crash
