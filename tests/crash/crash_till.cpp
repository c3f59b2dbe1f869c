#include "tests/crash/drill.h"
#include "tests/crash/results.h"

#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QPluginLoader>

#include <CLI/CLI.hpp>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <new>

// The crash drill: the till is killed at the points of ten stories, is started again, goes on, and its books must agree
// with the service's. The processes are forked from one that has one thread; those that kill tills work side by side,
// each with one story at a time.

namespace {

using namespace crash;

/// What was asked for on the command line. A plain value.
struct Options {
    std::string sandbox;
    std::string plugin;
    std::string rules;
    std::string story;
    std::string point;
    std::string defect = "none";
    std::string log = "error";
    int stride = 0; // 0: that of the extent
    int jobs = 2;
    bool isFull = false;
    bool isDeep = false;
    bool isList = false;
    bool keepsFolders = false;
};

/// What is done. A plain value.
struct Plan {
    Tools tools;
    Extent extent;
    std::vector<const Story*> stories;
    std::vector<KillPoint> kills; // one run alone, when there are any
    bool isList = false;
    int jobs = 2;
    std::string command; // of this program, for this plan
};

template <class T>
[[nodiscard]] T& shared()
{
    void* const memory = ::mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::runtime_error("the system gives no memory");
    }
    return *new (memory) T; // for the life of the process
}

void addOptions(CLI::App& app, Options& options)
{
    app.add_option("--sandbox", options.sandbox, "The program of the sandbox service")->required();
    app.add_option("--plugin", options.plugin, "The plug-in")->required();
    app.add_option("--rules", options.rules, "The rule file of the service")->required();
    app.add_flag("--full", options.isFull,
                 "Every point; without it every fifth one. VANTIRO_FAULTS=full in the environment means the same");
    app.add_flag("--deep", options.isDeep,
                 "Points are the single writes, too, and what starts again is killed up to the end of the story");
    app.add_option("--every", options.stride, "Every so-many-th point")->check(CLI::PositiveNumber);
    app.add_option("--story", options.story, "This story alone");
    app.add_option("--point", options.point, "One run alone, killed as it was printed: c12- c12+ p3- c12-,c3+");
    app.add_flag("--list", options.isList, "Print the points, and kill nothing");
    app.add_option("--plant", options.defect, "Plant a defect, which the drill must find");
    app.add_option("--jobs", options.jobs, "Stories at a time")->capture_default_str()->check(CLI::PositiveNumber);
    app.add_option("--log", options.log, "Log level of the till")->capture_default_str();
    app.add_flag("--keep", options.keepsFolders, "Keep the folders of failed runs");
}

[[nodiscard]] QString absolute(const std::string& path)
{
    const QFileInfo file(QString::fromStdString(path));
    if (!file.isFile()) {
        throw std::runtime_error("there is no file " + path);
    }
    return file.absoluteFilePath();
}

/// What a killed process has written outlives it in memory too, where it does not wait for a disk.
[[nodiscard]] QString placeForFolders()
{
    const QString inMemory = QStringLiteral("/dev/shm");
    return (QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath()) + QStringLiteral("/vantiro-crash-XXXXXX");
}

[[nodiscard]] std::string commandOf(const std::string& program, const Tools& tools)
{
    return absolute(program).toStdString() + " --sandbox " + tools.sandbox.toStdString() + " --plugin "
        + tools.plugin.toStdString() + " --rules " + tools.rules.toStdString()
        + (tools.grain == Grain::calls ? " --deep" : "")
        + (tools.defect == Defect::none ? "" : " --plant " + nameOf(tools.defect).toStdString());
}

[[nodiscard]] Plan planOf(const Options& options, const std::string& program)
{
    constexpr int quickStride = 5;
    const bool isFull = options.isFull || options.isDeep || qEnvironmentVariable("VANTIRO_FAULTS") == u"full";
    const std::optional<Defect> defect = defectOf(QString::fromStdString(options.defect));
    if (!defect) {
        throw std::runtime_error("there is no defect " + options.defect);
    }
    Plan plan;
    plan.tools.sandbox = absolute(options.sandbox);
    plan.tools.plugin = absolute(options.plugin);
    plan.tools.rules = absolute(options.rules);
    plan.tools.logLevel = QString::fromStdString(options.log);
    plan.tools.keep = options.keepsFolders;
    plan.tools.grain = options.isDeep ? Grain::calls : Grain::steps;
    plan.tools.defect = *defect;
    plan.extent.stride = options.stride > 0 ? options.stride : isFull ? 1 : quickStride;
    plan.extent.isDeep = options.isDeep;
    for (const Story& story : stories()) {
        if (options.story.empty() || story.name.toStdString() == options.story) {
            plan.stories.push_back(&story);
        }
    }
    if (plan.stories.empty()) {
        throw std::runtime_error("there is no story " + options.story);
    }
    plan.kills = killsOf(options.point);
    if (!options.point.empty() && (plan.kills.empty() || plan.stories.size() != 1)) {
        throw std::runtime_error("points are named as they were printed, with their story: --story sale --point c12-");
    }
    plan.isList = options.isList;
    plan.jobs = options.jobs;
    plan.command = commandOf(program, plan.tools);
    return plan;
}

/// Loaded once for all tills, which find it in their memory.
void loadLibraries(const Tools& tools)
{
    const QString driver = QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/sqldrivers/libqsqlite.so");
    for (const QString& file : { tools.plugin, driver }) {
        QPluginLoader loader(file);
        if (!loader.load()) {
            throw std::runtime_error(loader.errorString().toStdString());
        }
    }
}

[[nodiscard]] StoryReport drill(const Plan& plan, const Story& story, Board& board)
{
    Drill drill(plan.tools, story, plan.extent, board);
    if (plan.isList) {
        drill.list();
        return {};
    }
    return plan.kills.empty() ? drill.run() : drill.repeat(plan.kills);
}

[[noreturn]] void work(const Plan& plan, Results& results)
{
    int status = EXIT_SUCCESS;
    try {
        Board& board = shared<Board>();
        for (std::size_t index = results.next++; index < plan.stories.size(); index = results.next++) {
            results.reports[index] = drill(plan, *plan.stories[index], board);
            results.isDone[index] = true;
        }
    } catch (const std::exception& failure) {
        std::printf("FAILED: %s\n", failure.what());
        status = EXIT_FAILURE;
    }
    std::fflush(stdout);
    ::_exit(status);
}

void letWork(const Plan& plan, Results& results)
{
    std::fflush(stdout);
    for (int job = 0; job < plan.jobs; ++job) {
        if (::fork() == 0) {
            work(plan, results);
        }
    }
    while (::wait(nullptr) > 0) { }
}

} // namespace

int main(int argc, char** argv)
try {
    CLI::App app("Kills the till at the points of ten stories, starts it again, and compares the books.");
    Options options;
    addOptions(app, options);
    CLI11_PARSE(app, argc, argv);

    // Whatever ends this process ends the tills and the services with it.
    ::pthread_atfork(nullptr, nullptr, [] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });

    Plan plan = planOf(options, argv[0]);
    QTemporaryDir folder(placeForFolders());
    folder.setAutoRemove(!options.keepsFolders);
    plan.tools.folder = folder.path();
    Results& results = shared<Results>();
    loadLibraries(plan.tools);
    letWork(plan, results);
    if (plan.isList) {
        return EXIT_SUCCESS;
    }
    return tell(plan.stories, results, plan.command) ? EXIT_SUCCESS : EXIT_FAILURE;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "crash_till: %s\n", failure.what());
    return EXIT_FAILURE;
}
