#include "bench/common/canned_server.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

namespace {

constexpr int forEver = -1;

[[nodiscard]] QByteArray whole(const QByteArray& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

/// The value of a header in a head whose names may be in any case; empty when there is none.
[[nodiscard]] QByteArray header(const QByteArray& head, const QByteArray& name)
{
    const QByteArray lower = head.toLower();
    const qsizetype at = lower.indexOf("\r\n" + name + ':');
    if (at < 0) {
        return {};
    }
    const qsizetype from = at + name.size() + 3;
    return head.mid(from, head.indexOf('\r', from) - from).trimmed();
}

[[nodiscard]] std::string operationOf(const QByteArray& head)
{
    const QByteArray action = header(head, "soapaction").replace('"', "");
    return action.mid(action.lastIndexOf('/') + 1).toStdString();
}

[[nodiscard]] std::optional<WireRequest> takeWhole(QByteArray& unread)
{
    const qsizetype end = unread.indexOf("\r\n\r\n");
    if (end < 0) {
        return std::nullopt;
    }
    constexpr qsizetype blankLine = 4;
    const QByteArray head = unread.first(end + 2);
    const qsizetype length = header(head, "content-length").toLongLong();
    if (unread.size() < end + blankLine + length) {
        return std::nullopt;
    }
    WireRequest request { operationOf(head), unread.mid(end + blankLine, length) };
    unread.remove(0, end + blankLine + length);
    return request;
}

[[nodiscard]] bool sendAll(int socket, const QByteArray& bytes)
{
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count
            = ::send(socket, bytes.constData() + sent, static_cast<size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        sent += count;
    }
    return true;
}

void require(bool done, const char* what)
{
    if (!done) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

}

CannedServer::CannedServer(const std::map<std::string, QByteArray>& replies)
    : listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , stop(::eventfd(0, EFD_CLOEXEC))
{
    for (const auto& [operation, body] : replies) {
        answers.emplace(operation, whole(body));
    }
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    require(listener >= 0 && stop >= 0, "socket");
    require(::bind(listener, generic, size) == 0 && ::listen(listener, SOMAXCONN) == 0, "listen");
    require(::getsockname(listener, generic, &size) == 0, "getsockname");
    port = ntohs(address.sin_port);
    thread = std::thread([this] { serve(); });
}

CannedServer::~CannedServer()
{
    ::eventfd_write(stop, 1);
    thread.join();
    ::close(listener);
    ::close(stop);
}

QUrl CannedServer::url() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(port));
}

void CannedServer::setDelay(std::chrono::milliseconds time)
{
    delay = static_cast<int>(time.count());
}

void CannedServer::keepRequests(bool keep)
{
    keeps = keep;
}

std::vector<WireRequest> CannedServer::takeRequests()
{
    const std::lock_guard lock(mutex);
    return std::exchange(kept, {});
}

void CannedServer::serve()
{
    std::vector<Connection> open;
    std::vector<pollfd> watched;
    while (true) {
        watched = { { stop, POLLIN, 0 }, { listener, POLLIN, 0 } };
        for (const Connection& connection : open) {
            watched.push_back({ connection.socket, POLLIN, 0 });
        }
        ::poll(watched.data(), watched.size(), forEver);
        if (watched[0].revents != 0) {
            break;
        }
        for (size_t i = 0; i < open.size(); ++i) {
            if (watched[i + 2].revents != 0) {
                receive(open[i]);
            }
        }
        std::erase_if(open,
                      [](const Connection& connection) { return connection.ended && ::close(connection.socket) == 0; });
        if (watched[1].revents != 0) {
            const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
            if (socket >= 0) {
                const int on = 1;
                ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
                open.push_back({ socket, {} });
            }
        }
    }
    for (const Connection& connection : open) {
        ::close(connection.socket);
    }
}

void CannedServer::receive(Connection& connection)
{
    constexpr size_t most = 65536;
    static thread_local std::array<char, most> buffer;
    const ssize_t count = ::recv(connection.socket, buffer.data(), buffer.size(), 0);
    if (count <= 0) {
        connection.ended = true;
        return;
    }
    connection.unread.append(buffer.data(), count);
    answer(connection);
}

void CannedServer::answer(Connection& connection)
{
    while (std::optional<WireRequest> request = takeWhole(connection.unread)) {
        const auto found = answers.find(request->operation);
        if (found == answers.end()) { // whoever asks sees a connection that has died
            connection.ended = true;
            return;
        }
        if (keeps) {
            const std::lock_guard lock(mutex);
            kept.push_back(*std::move(request));
        }
        if (const int time = delay; time > 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(time));
        }
        if (!sendAll(connection.socket, found->second)) {
            connection.ended = true;
            return;
        }
    }
}
