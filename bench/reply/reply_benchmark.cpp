#include "bench/common/bench_main.h"
#include "bench/common/replies.h"
#include "bench/reply/readers.h"

#include <QCoreApplication>

#include <exception>

namespace {

constexpr double discountOfLine = 2.50; // roubles

/// What is to be found: a tree tells its last line, the others tell all.
[[nodiscard]] Found expected(const Reader& reader, int lineCount)
{
    return { lineCount, reader.name.starts_with("tree") ? discountOfLine : discountOfLine * lineCount };
}

void measure(benchmark::State& state, const Reader& reader)
{
    const int lineCount = static_cast<int>(state.range(0));
    const QByteArray bytes = reply(QStringLiteral("GetDiscounts"), discountsOn(lineCount));
    try {
        if (reader.read(bytes) != expected(reader, lineCount)) {
            refuse(state, "a reader has missed a discount");
            return;
        }
        for ([[maybe_unused]] const auto iteration : state) {
            benchmark::DoNotOptimize(reader.read(bytes));
        }
    } catch (const std::exception& error) {
        refuse(state, error.what());
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}

} // namespace

int main(int argc, char** argv)
{
    fixHashSeed();
    const QCoreApplication application(argc, argv);
    for (const Reader& reader : replyReaders()) {
        benchmark::RegisterBenchmark(reader.name.c_str(),
                                     [&reader](benchmark::State& state) { measure(state, reader); })
            ->Arg(1)
            ->Arg(20)
            ->Arg(1000)
            ->Arg(10000)
            ->Unit(benchmark::kMillisecond);
    }
    return runBenchmarks(argc, argv);
}
