#include "tests/sandbox/raw_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace {

[[nodiscard]] int portOf(const std::string& url)
{
    return std::stoi(url.substr(url.rfind(':') + 1));
}

[[nodiscard]] Ending readAll(int socket, std::string& bytes, std::chrono::steady_clock::time_point end)
{
    std::array<char, 65'536> buffer {};
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd waiting { socket, POLLIN, 0 };
        if (left.count() <= 0 || ::poll(&waiting, 1, static_cast<int>(left.count())) <= 0) {
            return Ending::silent;
        }
        const ssize_t received = ::recv(socket, buffer.data(), buffer.size(), 0);
        if (received <= 0) {
            return received == 0 ? Ending::closed : Ending::reset;
        }
        bytes.append(buffer.data(), static_cast<std::size_t>(received));
    }
}

}

std::string rawRequest(const std::string& operation, const std::string& body)
{
    return "POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\nContent-Type: text/xml; charset=UTF-8\r\n"
           "Authorization: Basic dGlsbDpzZTpjcmV0\r\nSOAPAction: http://tempuri.org/IVantiroService/"
        + operation + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

RawReply exchangeRaw(const std::string& url, const std::string& bytes, std::chrono::milliseconds patience)
{
    const auto begin = std::chrono::steady_clock::now();
    RawReply reply;
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(portOf(url)));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        // A server that refuses a large request may close before all of it is sent.
        for (std::size_t sent = 0; sent < bytes.size();) {
            const ssize_t count = ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (count <= 0) {
                break;
            }
            sent += static_cast<std::size_t>(count);
        }
        reply.ending = readAll(socket, reply.bytes, begin + patience);
    }
    ::close(socket);
    reply.took = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
    return reply;
}
