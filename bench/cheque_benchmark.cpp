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
#include <string_view>
#include <utility>

namespace {

const LongCheque& chequeOf(int lineCount)
{
    static std::map<int, LongCheque> made; // making one takes longer than all that is timed
    return made.try_emplace(lineCount, lineCount).first->second;
}

/// Never inlined: scripts/bench-linear counts the instructions within.
[[gnu::noinline]] QString timedText(const TextMaker& maker)
{
    return maker();
}

/// What makes the text: preparing a peer takes longer than all that is timed.
const TextMaker& prepared(const ChequeForm& form, int lineCount)
{
    static std::map<std::pair<std::string, int>, TextMaker> made;
    const auto found = made.find({ form.name, lineCount });
    if (found != made.end()) {
        return found->second;
    }
    return made.emplace(std::pair(form.name, lineCount), form.prepare(chequeOf(lineCount))).first->second;
}

/// In MiB, of one text.
double memoryOf(const ChequeForm& form, int lineCount)
{
    static std::map<std::pair<std::string, int>, double> known;
    const auto found = known.find({ form.name, lineCount });
    if (found != known.end()) {
        return found->second;
    }
    const TextMaker& maker = prepared(form, lineCount);
    const double mebibytes = peakMemory([&maker] { static_cast<void>(timedText(maker)); });
    return known.emplace(std::pair(form.name, lineCount), mebibytes).first->second;
}

/// Nothing is made before what is timed: the heap of a till has never held a cheque of ten thousand lines, and once it
/// has, the next one is laid out in what the first has left.
void measure(benchmark::State& state, const ChequeForm& form, bool withMemory)
{
    try {
        const auto lineCount = static_cast<int>(state.range(0));
        const TextMaker& maker = prepared(form, lineCount);
        QString text;
        for ([[maybe_unused]] const auto iteration : state) {
            text = timedText(maker);
        }
        if (text.count(QLatin1String("<ChequeLine ")) != lineCount) {
            throw std::runtime_error("the text does not hold every line"); // its time would be that of something else
        }
        state.counters["characters"] = static_cast<double>(text.size());
        if (withMemory) {
            state.counters["MiB"] = memoryOf(form, lineCount);
        }
    } catch (const std::exception& error) {
        refuse(state, error.what());
    }
}

void registerForms(const std::vector<ChequeForm>& forms, bool withMemory)
{
    for (const ChequeForm& form : forms) {
        benchmark::RegisterBenchmark(form.name.c_str(),
                                     [&form, withMemory](benchmark::State& state) { measure(state, form, withMemory); })
            ->Arg(1)
            ->Arg(20)
            ->Arg(100)
            ->Arg(1000)
            ->Arg(10000)
            ->Unit(benchmark::kMillisecond);
    }
}

} // namespace

/// With `--growth` ours alone, and their times alone: what scripts/bench-linear needs.
int main(int argc, char** argv)
{
    fixHashSeed();
    const QCoreApplication application(argc, argv);

    const bool growth = argc > 1 && std::string_view(argv[1]) == "--growth";
    registerForms(chequeForms(), !growth);
    if (!growth) {
        registerForms(writerPeers(), true);
        registerForms(domPeers(), true);
        return runBenchmarks(argc, argv);
    }
    argv[1] = argv[0];
    return runBenchmarks(argc - 1, argv + 1);
}
