#include "bench/common/bench_main.h"

#include <QHashFunctions>
#include <QtGlobal>

#include <curl/curl.h>
#include <sqlite3.h>

#include <pugixml.hpp>

namespace {

bool refused = false;

[[nodiscard]] std::string pugixmlVersion()
{
    constexpr int thousands = 1000; // 1130 is 1.13
    constexpr int tens = 10;
    return std::to_string(PUGIXML_VERSION / thousands) + '.' + std::to_string(PUGIXML_VERSION % thousands / tens);
}

}

int runBenchmarks(int argc, char** argv)
{
    benchmark::AddCustomContext("qt", qVersion());
    benchmark::AddCustomContext("libcurl", curl_version_info(CURLVERSION_NOW)->version);
    benchmark::AddCustomContext("sqlite", sqlite3_libversion());
    benchmark::AddCustomContext("pugixml", pugixmlVersion());
    benchmark::AddCustomContext("compiler", VANTIRO_COMPILER);
    benchmark::AddCustomContext("build_type", VANTIRO_BUILD_TYPE);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const bool ran = benchmark::RunSpecifiedBenchmarks() > 0;
    return ran && !refused ? 0 : 1;
}

void refuse(benchmark::State& state, const std::string& reason)
{
    refused = true;
    state.SkipWithError(reason.c_str());
}

void fixHashSeed()
{
    QHashSeed::setDeterministicGlobalSeed();
}
