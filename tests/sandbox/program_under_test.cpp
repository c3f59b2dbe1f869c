#include "tests/sandbox/program_under_test.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <thread>

namespace {

void readMore(int descriptor, std::string& text, int patience)
{
    std::array<char, 4096> buffer {};
    pollfd waiting { descriptor, POLLIN, 0 };
    if (::poll(&waiting, 1, patience) > 0) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        }
    }
}

void readAll(int descriptor, std::string& text)
{
    for (std::size_t before = text.size() + 1; before != text.size();) {
        before = text.size();
        readMore(descriptor, text, 0);
    }
}

[[nodiscard]] std::string wordAfter(const std::string& line, const std::string& word)
{
    const std::size_t at = line.find(word + ' ');
    if (at == std::string::npos) {
        throw std::runtime_error("no ready line: " + line);
    }
    const std::size_t from = at + word.size() + 1;
    return line.substr(from, line.find_first_of(" \n", from) - from);
}

}

ProgramUnderTest::ProgramUnderTest(const std::vector<std::string>& arguments)
{
    std::array<int, 2> output {};
    std::array<int, 2> errors {};
    if (::pipe2(output.data(), O_CLOEXEC) != 0 || ::pipe2(errors.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipes");
    }
    std::vector<std::string> words { VANTIRO_SANDBOX_PROGRAM };
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
    const int result = ::posix_spawn(&process, VANTIRO_SANDBOX_PROGRAM, &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(output[1]);
    ::close(errors[1]);
    outputEnd = output[0];
    errorEnd = errors[0];
    if (result != 0) {
        throw std::runtime_error("the program does not start");
    }
}

ProgramUnderTest::~ProgramUnderTest()
{
    if (process > 0) {
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
    ::close(outputEnd);
    ::close(errorEnd);
}

std::string ProgramUnderTest::readyLine()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (outputText.find('\n') == std::string::npos && std::chrono::steady_clock::now() < end) {
        const std::size_t before = outputText.size();
        readMore(outputEnd, outputText, 1000);
        siginfo_t ended {};
        if (before == outputText.size()
            && ::waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT) == 0
            && ended.si_pid != 0) {
            break;
        }
    }
    return outputText.substr(0, outputText.find('\n'));
}

std::string ProgramUnderTest::serviceUrl()
{
    return wordAfter(readyLine(), "service");
}

std::string ProgramUnderTest::controlUrl()
{
    return wordAfter(readyLine(), "control");
}

void ProgramUnderTest::signal(int number) const
{
    ::kill(process, number);
}

std::optional<int> ProgramUnderTest::wait(std::chrono::milliseconds patience)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    int status = 0;
    while (::waitpid(process, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() >= end) {
            return {};
        }
        readAll(errorEnd, errorText);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::string ProgramUnderTest::output()
{
    readAll(outputEnd, outputText);
    return outputText;
}

std::string ProgramUnderTest::errors()
{
    readAll(errorEnd, errorText);
    return errorText;
}
