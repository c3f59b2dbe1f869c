#pragma once

#include "tests/support/loopback_message.h"
#include "tests/support/loopback_port.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace vantiro_test {

/// A bare HTTP server at a free port of 127.0.0.1, for one test. It takes requests whose length is told by
/// `Content-Length`, several on one connection; to anything else it answers with status 400 and hangs up.
///
/// The destructor ends all connections at once, silent ones too. [any-thread]
class LoopbackServer {
public:
    /// The handler runs on threads of the server, one call at a time. It must not throw, and must not call the server.
    using Handler = std::function<Answer(const HttpRequest&)>;

    explicit LoopbackServer(Handler handler);
    /// Gives every request the same answer.
    explicit LoopbackServer(const Answer& answer);
    ~LoopbackServer();
    Q_DISABLE_COPY_MOVE(LoopbackServer)

    [[nodiscard]] quint16 port() const;
    /// The address of the server, with the path.
    [[nodiscard]] QUrl url(const QString& path = QStringLiteral("/")) const;

    /// The requests that have come in whole, in their order.
    [[nodiscard]] QList<HttpRequest> requests() const;
    /// The connections made so far.
    [[nodiscard]] int connections() const;
    /// The bytes sent so far, on all connections.
    [[nodiscard]] qint64 sent() const;
    /// Waits until every connection made so far has ended; false when the time runs out before that.
    /// [blocks: the time at the longest]
    [[nodiscard]] bool waitUntilIdle(std::chrono::milliseconds time) const;

private:
    struct Connection {
        int number = 0;
        int socket = -1;
        QByteArray unread;
        std::atomic<bool> ended = false;
        std::thread thread;
    };

    enum class Next {
        request,
        end,
    };

    void acceptAll();
    void serve(Connection& connection);
    [[nodiscard]] bool readRequest(Connection& connection, HttpRequest& request);
    [[nodiscard]] bool readMore(Connection& connection);
    [[nodiscard]] Next perform(Connection& connection, const Answer::Step& step);
    [[nodiscard]] bool sendAll(const Connection& connection, const QByteArray& bytes);
    [[nodiscard]] bool waitFor(int socket, short events, int milliseconds) const;
    void dropEnded();

    Handler handler;
    LoopbackPort listener { LoopbackPort::Kind::listening };
    int stop = -1; // becomes readable, and stays so, when the server ends

    mutable std::mutex mutex; // guards the two lists
    QList<HttpRequest> received;
    std::list<Connection> open;
    std::mutex handlerMutex;
    std::atomic<int> connectionCount = 0;
    std::atomic<qint64> sentBytes = 0;
    std::thread acceptor;
};

}
