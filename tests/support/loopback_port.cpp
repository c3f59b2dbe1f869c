#include "tests/support/loopback_port.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace vantiro_test {

namespace {

constexpr int backlog = 128;

void check(bool done, const char* what)
{
    if (!done) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

}

LoopbackPort::LoopbackPort(Kind kind)
    : descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    check(descriptor >= 0, "socket");
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    check(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), size) == 0, "bind");
    check(::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0, "getsockname");
    portNumber = ntohs(address.sin_port);
    check(kind == Kind::closed || ::listen(descriptor, backlog) == 0, "listen");
}

LoopbackPort::~LoopbackPort()
{
    ::close(descriptor);
}

quint16 LoopbackPort::number() const
{
    return portNumber;
}

int LoopbackPort::socket() const
{
    return descriptor;
}

QUrl LoopbackPort::url(const QString& path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(QString::number(portNumber), path));
}

ClosedPort::ClosedPort()
    : LoopbackPort(Kind::closed)
{
}

DeafPort::DeafPort()
    : LoopbackPort(Kind::listening)
{
}

}
