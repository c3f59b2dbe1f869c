#include "sandbox/listener.h"

#include "sandbox/connection.h"
#include "sandbox/held_port.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace sandbox {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t threads = 48;
constexpr int backlog = 256; // the library's own is 5, which a burst of connections overruns
constexpr std::chrono::seconds keepAlive = 30s;

/// Unlike the library's default, which lets a second program take the same port unnoticed.
void useOnlyFreePort(socket_t socket)
{
    const int yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

[[nodiscard]] std::string reasonText(int error, const std::string& address, int port, const std::string& option)
{
    const std::string place = "port " + std::to_string(port) + " of " + address;
    if (error == EADDRINUSE) {
        return place + " is taken; end the program that has it, or choose another port with " + option
            + " (0 takes a free one)";
    }
    if (error == EACCES) {
        return place + " needs more rights; choose a port above 1023 with " + option;
    }
    return place + " cannot be listened on (" + std::strerror(error) + "); choose an address of this machine";
}

}

/// The library's server over connections of our own.
class Listener::HttpServer : public httplib::Server {
public:
    void acceptMany()
    {
        ::listen(svr_sock_, backlog);
    }

    void beginClosing()
    {
        closing = true;
    }

private:
    bool process_and_close_socket(socket_t accepted) override
    {
        const int yes = 1;
        ::setsockopt(accepted, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        Connection connection(accepted, closing);
        bool served = true;
        while (served && connection.waitForRequest(keepAlive)) {
            bool isClosed = false;
            served = process_request(connection, closing, isClosed, nullptr) && !isClosed;
        }
        return served;
    }

    std::atomic<bool> closing = false;
};

Listener::Listener(std::string bindAddress, int portNumber, std::string portOption,
                   std::function<void(httplib::Server&)> serverSetUp)
    : address(std::move(bindAddress))
    , port(portNumber)
    , option(std::move(portOption))
    , setUp(std::move(serverSetUp))
{
}

Listener::~Listener()
{
    close();
}

void Listener::open()
{
    if (isOpen()) {
        return;
    }
    auto opened = std::make_unique<HttpServer>();
    opened->set_socket_options(useOnlyFreePort);
    opened->new_task_queue = [] { return new httplib::ThreadPool(threads); }; // the library deletes it
    opened->set_keep_alive_timeout(keepAlive.count()); // these two only tell the client
    opened->set_keep_alive_max_count(100'000);
    setUp(*opened);
    try {
        if (!held) {
            held = std::make_unique<HeldPort>(address, port);
            port = held->number();
        }
    } catch (const std::system_error& failure) {
        throw AddressFailure(reasonText(failure.code().value(), address, port, option));
    }
    errno = 0;
    if (!opened->bind_to_port(address, port)) {
        throw AddressFailure(reasonText(errno == 0 ? EADDRNOTAVAIL : errno, address, port, option));
    }
    opened->acceptMany();
    server = std::move(opened);
    thread = std::thread([listening = server.get()] { listening->listen_after_bind(); });
    // A close before the loop runs would be lost on it.
    while (!server->is_running()) {
        std::this_thread::sleep_for(1ms);
    }
}

void Listener::close()
{
    if (!isOpen()) {
        return;
    }
    server->beginClosing();
    server->stop();
    thread.join();
    server.reset();
}

bool Listener::isOpen() const
{
    return server != nullptr;
}

std::string Listener::url() const
{
    return "http://" + address + ':' + std::to_string(port) + '/';
}

}
