#pragma once

#include <benchmark/benchmark.h>

#include <string>

/// Runs the registered benchmarks as the arguments say and returns the exit status of the program: 0, 1 when none ran
/// or one has refused, 2 for an unknown argument. The report tells the build, and the versions of the libraries in use.
[[nodiscard]] int runBenchmarks(int argc, char** argv);

/// Ends the benchmark: what it would time is not what it says.
void refuse(benchmark::State& state, const std::string& reason);

/// Keeps the order of attributes, and with it the times, the same in every run. Before anything of Qt is made.
void fixHashSeed();
