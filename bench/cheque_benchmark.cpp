#include "bench/cheque_forms.h"
#include "bench/common/bench_main.h"
#include "bench/peak_memory.h"
#include "bench/peers.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <ctime>
#include <exception>
#include <functional>
#include <future>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

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

[[nodiscard]] double secondsOfThisThread()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    constexpr double nanosecond = 1e-9;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * nanosecond;
}

/// Threads that stay until the end of the process, so that none gets the memory of a former one.
class Threads {
public:
    ~Threads()
    {
        end.set_value();
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    /// Does the work on a new thread and waits for it. Throws what it throws, and `std::runtime_error` when there would
    /// be so many threads that the C library gave them memory in common.
    void run(const std::function<void()>& work)
    {
        constexpr size_t most = 12; // of eight pieces of memory for each processor
        if (threads.size() == most) {
            throw std::runtime_error("a process has memory for twelve first texts");
        }
        std::packaged_task<void()> task(work);
        std::future<void> done = task.get_future();
        threads.emplace_back([task = std::move(task), ended = ended]() mutable {
            task();
            ended.wait();
        });
        done.get();
    }

private:
    std::promise<void> end;
    std::shared_future<void> ended = end.get_future().share();
    std::vector<std::thread> threads;
};

/// As the first text of a process, however much was made before: a new thread has memory of its own, which nobody has
/// used. A heap that held the tree of a long cheque gives memory away in another order, and a tree made of that lies
/// scattered: what would be timed is the heap.
[[nodiscard]] double secondsOfFirst(const TextMaker& maker, QString& text)
{
    static Threads threads;
    double seconds = 0.0;
    threads.run([&] {
        const double start = secondsOfThisThread();
        text = timedText(maker);
        seconds = secondsOfThisThread() - start;
    });
    return seconds;
}

enum class Mode { again, first };

void measure(benchmark::State& state, const ChequeForm& form, Mode mode)
{
    try {
        const auto lineCount = static_cast<int>(state.range(0));
        const TextMaker& maker = prepared(form, lineCount);
        QString text;
        for ([[maybe_unused]] const auto iteration : state) {
            if (mode == Mode::first) {
                state.SetIterationTime(secondsOfFirst(maker, text));
            } else {
                text = timedText(maker);
            }
        }
        if (text.count(QLatin1String("<ChequeLine ")) != lineCount) {
            throw std::runtime_error("the text does not hold every line"); // its time would be that of something else
        }
        state.counters["characters"] = static_cast<double>(text.size());
        state.counters["MiB"] = memoryOf(form, lineCount);
    } catch (const std::exception& error) {
        refuse(state, error.what());
    }
}

void registerForms(const std::vector<ChequeForm>& forms, Mode mode)
{
    for (const ChequeForm& form : forms) {
        auto* const benchmark = benchmark::RegisterBenchmark(
            form.name.c_str(), [&form, mode](benchmark::State& state) { measure(state, form, mode); });
        benchmark->Arg(1)->Arg(20)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
        if (mode == Mode::first) {
            benchmark->UseManualTime()->Iterations(1);
        }
    }
}

} // namespace

/// With `--first` each text is made once, as the first in its memory; twelve of them in a process.
int main(int argc, char** argv)
{
    fixHashSeed();
    const QCoreApplication application(argc, argv);

    const bool first = argc > 1 && std::string_view(argv[1]) == "--first";
    const Mode mode = first ? Mode::first : Mode::again;
    registerForms(chequeForms(), mode);
    registerForms(writerPeers(), mode);
    registerForms(domPeers(), mode);
    if (!first) {
        return runBenchmarks(argc, argv);
    }
    argv[1] = argv[0];
    return runBenchmarks(argc - 1, argv + 1);
}
