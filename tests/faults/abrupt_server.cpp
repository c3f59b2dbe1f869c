#include "tests/faults/abrupt_server.h"

#include <sys/socket.h>
#include <unistd.h>

namespace faults {

AbruptServer::AbruptServer(int bytesToRead, End howItEnds)
    : bytes(bytesToRead)
    , end(howItEnds)
    , thread([this] { serve(); })
{
}

AbruptServer::~AbruptServer()
{
    stopping = true;
    ::shutdown(port.socket(), SHUT_RDWR); // ends the wait for a connection
    thread.join();
}

QUrl AbruptServer::url() const
{
    return port.url();
}

void AbruptServer::serve() const
{
    while (!stopping) {
        const int connection = ::accept4(port.socket(), nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) {
            continue;
        }
        char byte = 0;
        for (int read = 0; read < bytes && ::recv(connection, &byte, 1, 0) == 1; ++read) { }
        if (end == End::reset) {
            const linger none { .l_onoff = 1, .l_linger = 0 };
            ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &none, sizeof none);
        }
        ::close(connection);
    }
}

}
