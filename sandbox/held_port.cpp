#include "sandbox/held_port.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <system_error>

namespace sandbox {

namespace {

[[nodiscard]] std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> resolve(const std::string& address, int port)
{
    addrinfo hints {};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE;
    addrinfo* found = nullptr;
    if (::getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) {
        throw std::system_error(EADDRNOTAVAIL, std::generic_category());
    }
    return { found, &::freeaddrinfo };
}

[[nodiscard]] int portOf(int socket)
{
    sockaddr_storage own {};
    socklen_t size = sizeof own;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&own), &size);
    // The number lies at the same place in both families.
    return ntohs(reinterpret_cast<const sockaddr_in&>(own).sin_port);
}

}

HeldPort::HeldPort(const std::string& address, int wanted)
{
    const auto place = resolve(address, wanted);
    descriptor = ::socket(place->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    if (descriptor < 0 || ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) != 0
        || ::bind(descriptor, place->ai_addr, place->ai_addrlen) != 0) {
        const int error = errno;
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        throw std::system_error(error, std::generic_category());
    }
    port = portOf(descriptor);
}

HeldPort::~HeldPort()
{
    ::close(descriptor);
}

int HeldPort::number() const
{
    return port;
}

}
