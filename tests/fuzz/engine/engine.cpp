#include "tests/fuzz/judge.h"
#include "till/facilities/log_setup.h"

#include <QHashFunctions>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

// The entries by which libFuzzer drives a target: `--target=NAME` tells which; with `--swell` inputs are made large
// before they are read. The engine leaves alone what begins with two hyphens.

namespace {

const fuzz::Target* target = nullptr;
bool swells = false;

[[noreturn]] void fail(const std::string& why)
{
    std::fprintf(stderr, "vantiro_fuzz: %s\n", why.c_str());
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    constexpr const char* option = "--target=";
    for (int i = 1; i < *argc; ++i) {
        if (std::strncmp((*argv)[i], option, std::strlen(option)) == 0) {
            target = &fuzz::targetOf((*argv)[i] + std::strlen(option));
        }
        swells = swells || std::strcmp((*argv)[i], "--swell") == 0;
    }
    if (target == nullptr) {
        std::fputs("vantiro_fuzz: --target=NAME is missing; known are:", stderr);
        for (const fuzz::Target& known : fuzz::targets()) {
            std::fprintf(stderr, " %s", std::string(known.name).c_str());
        }
        std::fputs("\n", stderr);
        std::exit(2);
    }
    QHashSeed::setDeterministicGlobalSeed();
    till::setUpLogging({ .console = false });
    target->read({}); // what is made at the first use must not count as the time of an input
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t large = 128 * 1024;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    try {
        if (swells) {
            fuzz::judge(*target, fuzz::swollen(input, large, std::hash<std::string_view>()(input)));
        } else {
            fuzz::judge(*target, input);
        }
    } catch (const fuzz::BrokenPromise& broken) {
        fail(broken.what());
    }
    return 0;
}
