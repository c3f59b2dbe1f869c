#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace httplib {
class Server;
}

namespace sandbox {

class HeldPort;

/// The address cannot be listened on. The text says why and what to do.
class AddressFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An HTTP address that can be opened and closed again and again: threads, keep-alive, TCP without delay. While it is
/// closed, connections are refused, and its port is nobody else's. Not for several threads at once.
class Listener {
public:
    /// `setUp` puts the handlers on each new server. `option` is the command line option of the port, for the text of a
    /// failure.
    Listener(std::string bindAddress, int portNumber, std::string portOption,
             std::function<void(httplib::Server&)> serverSetUp);
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// After it, connections are accepted. Port 0 takes a free one, and keeps it from then on. Does nothing when open.
    /// Throws `AddressFailure`.
    void open();

    /// After it, connections are refused and all that were open are closed; requests that had arrived whole were
    /// answered before. [blocks: for these requests]
    void close();

    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] std::string url() const;

private:
    class HttpServer;

    const std::string address;
    int port;
    std::unique_ptr<HeldPort> held; // so that a service that is down finds its port again
    const std::string option;
    const std::function<void(httplib::Server&)> setUp;
    std::unique_ptr<HttpServer> server;
    std::thread thread;
};

}
