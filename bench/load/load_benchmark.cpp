#include "bench/common/bench_main.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QProcess>
#include <QStringList>

namespace {

constexpr int starts = 20; // of a process for each repetition: most of its time is not what is measured

/// Each start in a process of its own: whatever was loaded once is found faster the second time.
void start(benchmark::State& state, const QString& library, const QByteArray& outcome)
{
    for ([[maybe_unused]] const auto iteration : state) {
        QProcess probe;
        probe.start(QStringLiteral(VANTIRO_LOAD_PROBE), { library });
        const bool ended
            = probe.waitForFinished() && probe.exitStatus() == QProcess::NormalExit && probe.exitCode() == 0;
        const QList<QByteArray> told = probe.readAllStandardOutput().trimmed().split(' ');
        if (!ended || told.size() != 2 || told[0] != outcome) {
            refuse(state, "the probe has failed: " + probe.readAllStandardError().toStdString());
            return;
        }
        constexpr double nanosecond = 1e-9;
        state.SetIterationTime(told[1].toDouble() * nanosecond);
    }
}

void add(const char* name, const char* library, const char* outcome)
{
    benchmark::RegisterBenchmark(
        name, [library, outcome](benchmark::State& state) { start(state, QString::fromLocal8Bit(library), outcome); })
        ->Iterations(starts)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    add("load", VANTIRO_PLUGIN_FILE, "initialized");
    add("load:empty", VANTIRO_EMPTY_PLUGIN, "loaded");
    add("load:empty_linked", VANTIRO_EMPTY_LINKED_PLUGIN, "loaded"); // with the libraries of the plug-in
    return runBenchmarks(argc, argv);
}
