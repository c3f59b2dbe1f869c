#pragma once

#include "sandbox/sandbox.h"

#include <stdexcept>
#include <string>

namespace sandbox {

struct CommandLine {
    Options options;
    bool isQuiet = false;
    std::string text; // of --help and --version: to be printed instead of running
};

/// One line that says what is wrong with the command line and what to do.
class CommandLineMistake : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws `CommandLineMistake`.
[[nodiscard]] CommandLine parseCommandLine(int argc, const char* const* argv);

}
