#include "tests/support/loopback_server.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <tuple>
#include <utility>

using namespace std::chrono_literals;

namespace vantiro_test {

namespace {

constexpr int forEver = -1;

// Turns the following close into a reset.
void lingerNot(int socket)
{
    const linger none { .l_onoff = 1, .l_linger = 0 };
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &none, sizeof none);
}

bool parseHead(const QByteArray& head, HttpRequest& request)
{
    QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> start = lines.takeFirst().trimmed().split(' ');
    if (start.size() != 3 || !start.last().startsWith("HTTP/1.")) {
        return false;
    }
    request.method = start[0];
    request.target = start[1];
    request.version = start[2];
    for (const QByteArray& line : std::as_const(lines)) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 1) {
            return false;
        }
        request.headers.append({ line.first(colon), line.sliced(colon + 1).trimmed() });
    }
    return true;
}

}

LoopbackServer::LoopbackServer(Handler handlerToCall)
    : handler(std::move(handlerToCall))
    , stop(::eventfd(0, EFD_CLOEXEC))
{
    if (stop < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    acceptor = std::thread([this] { acceptAll(); });
}

LoopbackServer::LoopbackServer(const Answer& answer)
    : LoopbackServer([answer](const HttpRequest&) { return answer; })
{
}

LoopbackServer::~LoopbackServer()
{
    ::eventfd_write(stop, 1);
    acceptor.join();
    for (Connection& connection : open) {
        connection.thread.join();
    }
    ::close(stop);
}

quint16 LoopbackServer::port() const
{
    return listener.number();
}

QUrl LoopbackServer::url(const QString& path) const
{
    return listener.url(path);
}

QList<HttpRequest> LoopbackServer::requests() const
{
    const std::lock_guard lock(mutex);
    return received;
}

int LoopbackServer::connections() const
{
    return connectionCount;
}

qint64 LoopbackServer::sent() const
{
    return sentBytes;
}

bool LoopbackServer::waitUntilIdle(std::chrono::milliseconds time) const
{
    const auto end = std::chrono::steady_clock::now() + time;
    while (true) {
        {
            const std::lock_guard lock(mutex);
            if (std::ranges::all_of(open, [](const Connection& connection) { return connection.ended.load(); })) {
                return true;
            }
        }
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(2ms);
    }
}

void LoopbackServer::acceptAll()
{
    while (waitFor(listener.socket(), POLLIN, forEver)) {
        const int socket = ::accept4(listener.socket(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (socket < 0) {
            continue;
        }
        dropEnded();
        const std::lock_guard lock(mutex);
        Connection& connection = open.emplace_back();
        connection.number = ++connectionCount;
        connection.socket = socket;
        connection.thread = std::thread([this, &connection] {
            serve(connection);
            connection.ended = true;
        });
    }
}

void LoopbackServer::dropEnded()
{
    const std::lock_guard lock(mutex);
    std::erase_if(open, [](Connection& connection) {
        if (!connection.ended) {
            return false;
        }
        connection.thread.join();
        return true;
    });
}

void LoopbackServer::serve(Connection& connection)
{
    // Without this the portions of a dripped reply would wait for one another.
    const int on = 1;
    ::setsockopt(connection.socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);

    Next next = Next::request;
    while (next == Next::request) {
        HttpRequest request;
        request.connection = connection.number;
        if (!readRequest(connection, request)) {
            break;
        }
        {
            const std::lock_guard lock(mutex);
            received.append(request);
        }
        const Answer answer = [&] {
            const std::lock_guard lock(handlerMutex);
            return handler(request);
        }();
        for (const Answer::Step& step : answer.steps) {
            next = perform(connection, step);
            if (next == Next::end) {
                break;
            }
        }
    }
    ::close(connection.socket);
}

bool LoopbackServer::readRequest(Connection& connection, HttpRequest& request)
{
    const auto refuse = [&] {
        std::ignore = sendAll(connection, "HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
        return false;
    };
    qsizetype headSize = -1;
    while ((headSize = connection.unread.indexOf("\r\n\r\n")) < 0) {
        // No method begins like this, so this is another protocol, whose other side waits for an answer.
        if (!connection.unread.isEmpty() && (connection.unread[0] < 'A' || connection.unread[0] > 'Z')) {
            return refuse();
        }
        if (!readMore(connection)) {
            return false;
        }
    }
    if (!parseHead(connection.unread.first(headSize), request) || !request.header("Transfer-Encoding").isNull()) {
        return refuse();
    }
    const qsizetype bodyStart = headSize + 4;
    const qsizetype size = bodyStart + request.header("Content-Length").toLongLong();
    while (connection.unread.size() < size) {
        if (!readMore(connection)) {
            return false;
        }
    }
    request.raw = connection.unread.first(size);
    request.body = request.raw.sliced(bodyStart);
    connection.unread.remove(0, size);
    return true;
}

bool LoopbackServer::readMore(Connection& connection)
{
    if (!waitFor(connection.socket, POLLIN, forEver)) {
        return false;
    }
    std::array<char, 65536> buffer {};
    const ssize_t count = ::recv(connection.socket, buffer.data(), buffer.size(), 0);
    if (count > 0) {
        connection.unread.append(buffer.data(), count);
    }
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

LoopbackServer::Next LoopbackServer::perform(Connection& connection, const Answer::Step& step)
{
    using Kind = Answer::Step::Kind;
    switch (step.kind) {
    case Kind::send:
        return sendAll(connection, step.bytes) ? Next::request : Next::end;
    case Kind::sendForEver:
        while (sendAll(connection, step.bytes)) { }
        return Next::end;
    case Kind::pause:
        // Nobody writes to the event before the end of the server.
        return waitFor(-1, 0, static_cast<int>(step.time.count())) ? Next::request : Next::end;
    case Kind::silence:
        while (readMore(connection)) { }
        return Next::end;
    case Kind::reset:
        lingerNot(connection.socket);
        return Next::end;
    case Kind::hangUp:
        break;
    }
    return Next::end;
}

bool LoopbackServer::sendAll(const Connection& connection, const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        if (!waitFor(connection.socket, POLLOUT, forEver)) {
            return false;
        }
        const ssize_t count = ::send(connection.socket, bytes.constData() + done,
                                     static_cast<size_t>(bytes.size() - done), MSG_NOSIGNAL);
        if (count < 0 && errno != EAGAIN && errno != EINTR) {
            return false;
        }
        if (count > 0) {
            done += count;
            sentBytes += count;
        }
    }
    return true;
}

// False when the server ends; true when the socket is ready or the time has run out.
bool LoopbackServer::waitFor(int socket, short events, int milliseconds) const
{
    const auto start = std::chrono::steady_clock::now();
    std::array<pollfd, 2> waited { pollfd { stop, POLLIN, 0 }, pollfd { socket, events, 0 } };
    while (true) {
        int left = forEver;
        if (milliseconds != forEver) {
            const auto passed
                = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
            left = std::max(0, milliseconds - static_cast<int>(passed.count()));
        }
        const int ready = ::poll(waited.data(), waited.size(), left);
        if (ready >= 0 || errno != EINTR) {
            return waited[0].revents == 0;
        }
    }
}

}
