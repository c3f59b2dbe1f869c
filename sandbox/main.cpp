#include "sandbox/command_line.h"
#include "sandbox/sandbox.h"

#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>

namespace {

[[nodiscard]] int fail(int status, const std::string& reason)
{
    std::cerr << "vantiro-sandbox: " << reason << std::endl;
    return status;
}

/// Blocked before any thread is made, so that all of them leave the signals to the one that waits.
[[nodiscard]] sigset_t blockEndingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

void serve(const sandbox::CommandLine& line, const sigset_t& signals)
{
    sandbox::Sandbox program(line.options, line.isQuiet ? nullptr : &std::cerr, [] { ::kill(::getpid(), SIGTERM); });
    std::cout << "vantiro-sandbox " << line.options.name << ": service " << program.serviceUrl() << " control "
              << program.controlUrl() << std::endl;
    int received = 0;
    sigwait(&signals, &received);
}

}

int main(int argc, char** argv)
{
    try {
        const sandbox::CommandLine line = sandbox::parseCommandLine(argc, argv);
        if (!line.text.empty()) {
            std::cout << line.text;
            return 0;
        }
        serve(line, blockEndingSignals());
        return 0;
    } catch (const sandbox::CommandLineMistake& mistake) {
        return fail(2, mistake.what());
    } catch (const sandbox::RulesMistake& mistake) {
        return fail(2, mistake.what());
    } catch (const sandbox::AddressFailure& failure) {
        return fail(1, failure.what());
    } catch (const sandbox::DatabaseFailure& failure) {
        return fail(1, std::string("the state cannot be used: ") + failure.what() + "; name another file with --state");
    } catch (const std::exception& failure) {
        return fail(1, failure.what());
    }
}
