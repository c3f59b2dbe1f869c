#include "bench/cheque_forms.h"
#include "bench/common/bench_main.h"
#include "bench/peak_memory.h"
#include "bench/peers.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <exception>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

const LongCheque& chequeOf(int lineCount)
{
    static std::map<int, LongCheque> made; // making one takes longer than all that is timed
    return made.try_emplace(lineCount, lineCount).first->second;
}

/// Never inlined: scripts/bench-linear counts what runs within.
[[gnu::noinline]] QString timedText(const TextMaker& maker)
{
    return maker();
}

/// What makes the text, and what came of it once: preparing a peer takes longer than all that is timed.
struct Prepared {
    TextMaker maker;
    qsizetype characters = 0;
    double mebibytes = 0.0;
};

/// Throws `std::runtime_error` when the text does not tell every line: its time would be that of something else.
const Prepared& prepared(const ChequeForm& form, int lineCount)
{
    static std::map<std::pair<std::string, int>, Prepared> made;
    const auto found = made.find({ form.name, lineCount });
    if (found != made.end()) {
        return found->second;
    }
    Prepared one { form.prepare(chequeOf(lineCount)) };
    const QString whole = timedText(one.maker);
    if (whole.count(QLatin1String("<ChequeLine ")) != lineCount) {
        throw std::runtime_error("the text does not hold every line");
    }
    one.characters = whole.size();
    one.mebibytes = peakMemory([&one] { static_cast<void>(timedText(one.maker)); });
    return made.emplace(std::pair(form.name, lineCount), std::move(one)).first->second;
}

void measure(benchmark::State& state, const ChequeForm& form)
{
    try {
        const Prepared& one = prepared(form, static_cast<int>(state.range(0)));
        for ([[maybe_unused]] const auto iteration : state) {
            benchmark::DoNotOptimize(timedText(one.maker));
        }
        state.counters["characters"] = static_cast<double>(one.characters);
        state.counters["MiB"] = one.mebibytes;
    } catch (const std::exception& error) {
        refuse(state, error.what());
    }
}

void registerForms(const std::vector<ChequeForm>& forms)
{
    for (const ChequeForm& form : forms) {
        benchmark::RegisterBenchmark(form.name.c_str(), [&form](benchmark::State& state) { measure(state, form); })
            ->Arg(1)
            ->Arg(20)
            ->Arg(100)
            ->Arg(1000)
            ->Arg(10000)
            ->Unit(benchmark::kMillisecond);
    }
}

} // namespace

int main(int argc, char** argv)
{
    fixHashSeed();
    const QCoreApplication application(argc, argv);

    registerForms(chequeForms());
    registerForms(writerPeers());
    registerForms(domPeers()); // last: scripts/bench-linear compares a form with the last of its peers
    return runBenchmarks(argc, argv);
}
