#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// A request as it came over the wire, less what belongs to the connection.
struct WireRequest {
    std::string operation;
    QByteArray body;
};

/// The other end of every exchange that is timed: an HTTP server at a free port of 127.0.0.1, on a thread of its own,
/// that answers each operation with the reply laid ready for it. It looks at nothing but the length and the action of a
/// request, and keeps a connection for as long as the client does.
class CannedServer {
public:
    /// The bodies of the replies by the bare name of the operation. Throws `std::system_error` without a port.
    explicit CannedServer(const std::map<std::string, QByteArray>& replies);
    ~CannedServer();
    CannedServer(const CannedServer&) = delete;
    CannedServer& operator=(const CannedServer&) = delete;

    [[nodiscard]] QUrl url() const;

    /// How long it thinks before each answer. [any-thread]
    void setDelay(std::chrono::milliseconds time);
    /// Keeps the requests from now on, or no longer. [any-thread]
    void keepRequests(bool keep);
    /// Those kept so far, in order; they are gone from here. [any-thread]
    [[nodiscard]] std::vector<WireRequest> takeRequests();

private:
    struct Connection {
        int socket = -1;
        QByteArray unread;
        bool ended = false;
    };

    void serve();
    void receive(Connection& connection);
    /// Answers what has come in whole.
    void answer(Connection& connection);

    std::map<std::string, QByteArray> answers; // whole, with their heads
    int listener = -1;
    int stop = -1; // becomes readable when the server ends
    quint16 port = 0;
    std::atomic<int> delay = 0; // milliseconds
    std::atomic<bool> keeps = false;
    std::mutex mutex; // guards `kept`
    std::vector<WireRequest> kept;
    std::thread thread;
};
