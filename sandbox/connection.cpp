#include "sandbox/connection.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

namespace sandbox {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds slice = 50ms; // how soon a closing listener is noticed
constexpr std::chrono::milliseconds patience = 10s; // between two pieces of one request or reply
constexpr std::chrono::milliseconds drainTime = 2s;

thread_local Connection* served = nullptr;

void setAddress(const sockaddr_in& address, std::string& ip, int& port)
{
    std::array<char, INET_ADDRSTRLEN> text {};
    if (address.sin_family == AF_INET && ::inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size()) != nullptr) {
        ip = text.data();
        port = ntohs(address.sin_port);
    }
}

}

Connection::Connection(socket_t acceptedSocket, const std::atomic<bool>& closing)
    : descriptor(acceptedSocket)
    , listenerCloses(closing)
{
    served = this;
}

Connection::~Connection()
{
    if (wantsDrain) {
        drain();
    }
    ::shutdown(descriptor, SHUT_RDWR);
    ::close(descriptor);
    served = nullptr;
}

Connection& Connection::current()
{
    return *served;
}

bool Connection::waitForRequest(std::chrono::milliseconds wait)
{
    return !ending && (bufferBegin != bufferEnd || waitFor(POLLIN, wait));
}

void Connection::hangUp()
{
    ending = true;
    ::shutdown(descriptor, SHUT_RDWR);
}

void Connection::resetAfter(std::size_t bytes)
{
    ending = true;
    bytesToReset = std::max<std::size_t>(bytes, 1);
}

void Connection::keepSilent()
{
    while (!listenerCloses) {
        pollfd waiting { descriptor, POLLRDHUP, 0 };
        if (::poll(&waiting, 1, static_cast<int>(slice.count())) != 0) {
            break;
        }
    }
    hangUp();
}

void Connection::pause(std::chrono::milliseconds time) const
{
    const auto end = Clock::now() + time;
    while (!listenerCloses && Clock::now() < end) {
        std::this_thread::sleep_for(std::min<Clock::duration>(slice, end - Clock::now()));
    }
}

void Connection::endAfterReply()
{
    ending = true;
    wantsDrain = true;
}

bool Connection::is_readable() const
{
    return bufferBegin != bufferEnd || waitFor(POLLIN, patience);
}

bool Connection::is_writable() const
{
    return waitFor(POLLOUT, patience);
}

ssize_t Connection::read(char* to, size_t size)
{
    if (bufferBegin == bufferEnd) {
        if (!waitFor(POLLIN, patience)) {
            return -1;
        }
        const ssize_t received = ::recv(descriptor, buffer.data(), buffer.size(), 0);
        if (received <= 0) {
            return received;
        }
        bufferBegin = 0;
        bufferEnd = static_cast<std::size_t>(received);
    }
    const std::size_t count = std::min(size, bufferEnd - bufferBegin);
    std::memcpy(to, buffer.data() + bufferBegin, count);
    bufferBegin += count;
    return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* from, size_t size)
{
    if (bytesToReset != 0) {
        const std::size_t allowed = std::min(size, bytesToReset);
        bytesToReset -= allowed;
        const ssize_t sent = ::send(descriptor, from, allowed, MSG_NOSIGNAL);
        if (bytesToReset != 0) {
            return sent;
        }
        // Dissolving the association is the one way to a reset at this very moment; closing with a linger of nothing
        // would send an end first, since the socket is shut down before.
        sockaddr nowhere {};
        nowhere.sa_family = AF_UNSPEC;
        ::connect(descriptor, &nowhere, sizeof nowhere);
        return -1;
    }
    return waitFor(POLLOUT, patience) ? ::send(descriptor, from, size, MSG_NOSIGNAL) : -1;
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const
{
    sockaddr_in address {};
    socklen_t length = sizeof address;
    if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
        setAddress(address, ip, port);
    }
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const
{
    sockaddr_in address {};
    socklen_t length = sizeof address;
    if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
        setAddress(address, ip, port);
    }
}

socket_t Connection::socket() const
{
    return descriptor;
}

bool Connection::waitFor(short events, std::chrono::milliseconds wait) const
{
    const auto end = Clock::now() + wait;
    // A reply that has begun may go out although the listener closes.
    while (events == POLLOUT || !listenerCloses) {
        pollfd waiting { descriptor, events, 0 };
        const int ready = ::poll(&waiting, 1, static_cast<int>(slice.count()));
        if (ready > 0) {
            return (waiting.revents & (events | POLLHUP)) != 0;
        }
        if ((ready < 0 && errno != EINTR) || Clock::now() >= end) {
            return false;
        }
    }
    return false;
}

void Connection::drain()
{
    ::shutdown(descriptor, SHUT_WR);
    const auto end = Clock::now() + drainTime;
    while (Clock::now() < end && waitFor(POLLIN, drainTime)
           && ::recv(descriptor, buffer.data(), buffer.size(), 0) > 0) { }
}

}
