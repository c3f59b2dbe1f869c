#pragma once

#include "sandbox/control_address.h"
#include "sandbox/fault_plan.h"
#include "sandbox/listener.h"
#include "sandbox/request_journal.h"
#include "sandbox/service.h"
#include "sandbox/service_address.h"

#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace sandbox {

struct Options {
    std::filesystem::path rules;
    std::filesystem::path state; // empty for a state in memory
    std::string name = "sandbox";
    std::string address = "127.0.0.1";
    int port = 0;
    int controlPort = 0;
    std::string soapNamespace = "http://tempuri.org/";
    std::vector<Fault> faults;
};

/// The whole program without its command line: one service with its two addresses, the control address always on
/// loopback. Several of them, also in several processes, can share one state, and then are front ends of one service.
class Sandbox {
public:
    /// Both addresses are open afterwards, but the service's is closed when a fault of the kind "refuse" is among the
    /// faults. `log` may be null. `shutDown` is called when the control address is told to end the program, on a thread
    /// that must return from it. Throws `RulesMistake`, `DatabaseFailure`, `AddressFailure`.
    Sandbox(const Options& options, std::ostream* log, std::function<void()> shutDown);
    /// Closes both addresses; requests that had arrived whole are answered before. [blocks: for these]
    ~Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    [[nodiscard]] std::string serviceUrl();
    [[nodiscard]] std::string controlUrl() const;

private:
    [[nodiscard]] ControlActions actions(std::function<void()> shutDown);

    Service service;
    FaultPlan faults;
    RequestJournal journal;
    ServiceAddress serviceAddress;
    ControlAddress controlAddress;
    std::mutex mutex; // of the service's listener
    Listener serviceListener;
    Listener controlListener;
};

}
