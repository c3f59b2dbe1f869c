#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The program itself, in a process of its own. Killed at the end, if it still runs.
class ProgramUnderTest {
public:
    explicit ProgramUnderTest(const std::vector<std::string>& arguments);
    ~ProgramUnderTest();
    ProgramUnderTest(const ProgramUnderTest&) = delete;
    ProgramUnderTest& operator=(const ProgramUnderTest&) = delete;

    /// The first line of the output; empty when the program ended without one.
    [[nodiscard]] std::string readyLine();
    /// From the ready line.
    [[nodiscard]] std::string serviceUrl();
    [[nodiscard]] std::string controlUrl();

    void signal(int number) const;
    /// The exit status, or minus the signal that ended it; absent when it does not end in time.
    [[nodiscard]] std::optional<int> wait(std::chrono::milliseconds patience = std::chrono::seconds(10));

    /// All that has come; complete after `wait`.
    [[nodiscard]] std::string output();
    [[nodiscard]] std::string errors();

private:
    pid_t process = -1;
    int outputEnd = -1;
    int errorEnd = -1;
    std::string outputText;
    std::string errorText;
};
