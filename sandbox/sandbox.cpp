#include "sandbox/sandbox.h"

namespace sandbox {

Sandbox::Sandbox(const Options& options, std::ostream* log, std::function<void()> shutDown)
    : service(readRules(options.rules), options.state, options.name, options.soapNamespace)
    , journal(log, options.name)
    , serviceAddress(service, faults, journal)
    , controlAddress(service, faults, actions(std::move(shutDown)))
    , serviceListener(options.address, options.port, "--port",
                      [this](httplib::Server& server) { serviceAddress.setUp(server); })
    , controlListener("127.0.0.1", options.controlPort, "--control",
                      [this](httplib::Server& server) { controlAddress.setUp(server); })
{
    for (const Fault& fault : options.faults) {
        faults.add(fault);
    }
    serviceListener.open();
    // Opened even so: a free port is known only then, and a taken one must be told now.
    if (faults.refusesConnections()) {
        serviceListener.close();
    }
    controlListener.open();
}

Sandbox::~Sandbox()
{
    controlListener.close();
    serviceListener.close();
}

std::string Sandbox::serviceUrl()
{
    const std::lock_guard lock(mutex);
    return serviceListener.url();
}

std::string Sandbox::controlUrl() const
{
    return controlListener.url();
}

ControlActions Sandbox::actions(std::function<void()> shutDown)
{
    return {
        [this] { return serviceUrl(); },
        [this] {
            const std::lock_guard lock(mutex);
            return serviceListener.isOpen();
        },
        [this] {
            const std::lock_guard lock(mutex);
            serviceListener.close();
        },
        [this] {
            const std::lock_guard lock(mutex);
            serviceListener.open();
        },
        std::move(shutDown),
    };
}

}
