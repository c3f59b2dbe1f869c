#include "bench/common/bench_main.h"
#include "bench/exchange/questions.h"
#include "till/facilities/log_setup.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <exception>

namespace {

void measure(benchmark::State& state, const Question& question)
{
    try {
        question.ask();
        for ([[maybe_unused]] const auto iteration : state) {
            question.ask();
        }
    } catch (const std::exception& error) {
        refuse(state, error.what());
    }
}

} // namespace

int main(int argc, char** argv)
{
    fixHashSeed();
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    till::setUpLogging({ .file = folder.filePath(QStringLiteral("till.log")), .console = false }); // as in a shop
    const Questions questions;
    for (const Question& question : questions.all()) {
        benchmark::RegisterBenchmark(question.name.c_str(),
                                     [&question](benchmark::State& state) { measure(state, question); })
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    }
    return runBenchmarks(argc, argv);
}
