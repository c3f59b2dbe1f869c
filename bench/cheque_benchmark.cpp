#include "bench/cheque_forms.h"
#include "bench/peak_memory.h"
#include "bench/peers.h"

#include <QCoreApplication>
#include <QHashFunctions>

#include <benchmark/benchmark.h>

#include <exception>
#include <map>
#include <string>
#include <utility>

namespace {

const LongCheque& chequeOf(int lineCount)
{
    static std::map<int, LongCheque> made; // making one takes longer than all that is timed
    return made.try_emplace(lineCount, lineCount).first->second;
}

/// Set when a form did not tell every line: its time would be that of something else.
bool incomplete = false;

/// Never inlined: scripts/bench-linear counts what runs within.
[[gnu::noinline]] QString timedText(const TextMaker& maker)
{
    return maker();
}

/// MiB, measured once for each form and length: a benchmark is called many times.
double memoryOf(const ChequeForm& form, int lineCount, const TextMaker& maker)
{
    static std::map<std::pair<std::string, int>, double> measured;
    const auto [found, isNew] = measured.try_emplace({ form.name, lineCount }, 0.0);
    if (isNew) {
        found->second = peakMemory([&maker] { static_cast<void>(timedText(maker)); });
    }
    return found->second;
}

void refuse(benchmark::State& state, const char* reason)
{
    incomplete = true;
    state.SkipWithError(reason);
}

void measure(benchmark::State& state, const ChequeForm& form)
{
    const int lineCount = static_cast<int>(state.range(0));
    TextMaker maker;
    try {
        maker = form.prepare(chequeOf(lineCount));
    } catch (const std::exception& error) {
        refuse(state, error.what());
        return;
    }
    const QString whole = timedText(maker);
    if (whole.count(QLatin1String("<ChequeLine ")) != lineCount) {
        refuse(state, "the text does not hold every line");
        return;
    }
    const double memory = memoryOf(form, lineCount, maker);
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(timedText(maker));
    }
    state.counters["characters"] = static_cast<double>(whole.size());
    state.counters["MiB"] = memory;
}

void registerForms(const std::vector<ChequeForm>& forms)
{
    for (const ChequeForm& form : forms) {
        benchmark::RegisterBenchmark(form.name.c_str(), [&form](benchmark::State& state) { measure(state, form); })
            ->RangeMultiplier(10)
            ->Range(100, 10000)
            ->Unit(benchmark::kMillisecond);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QHashSeed::setDeterministicGlobalSeed(); // else each run has its own order of attributes, and its own times
    const QCoreApplication application(argc, argv);

    registerForms(chequeForms());
    registerForms(domPeers());
    benchmark::AddCustomContext("qt", qVersion());
    benchmark::AddCustomContext("compiler", VANTIRO_COMPILER);
    benchmark::AddCustomContext("build_type", VANTIRO_BUILD_TYPE);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const bool ran = benchmark::RunSpecifiedBenchmarks() > 0;
    return ran && !incomplete ? 0 : 1;
}
