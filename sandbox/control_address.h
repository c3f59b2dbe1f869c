#pragma once

#include "sandbox/fault_plan.h"
#include "sandbox/service.h"

#include <functional>
#include <string>

namespace httplib {
class Server;
}

namespace sandbox {

/// What the control address can do to the program it is part of. Called from any thread, several at once.
struct ControlActions {
    std::function<std::string()> serviceUrl;
    std::function<bool()> isServing;
    std::function<void()> stopServing;
    std::function<void()> startServing; // throws `AddressFailure`
    std::function<void()> shutDown; // returns at once
};

/// The control address: JSON over HTTP. Serves many connections at once.
class ControlAddress {
public:
    /// Both outlive it.
    ControlAddress(Service& loyaltyService, FaultPlan& faultPlan, ControlActions programActions);

    void setUp(httplib::Server& server);

private:
    Service& service;
    FaultPlan& faults;
    const ControlActions actions;
};

}
