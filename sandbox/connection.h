#pragma once

#include <httplib.h>

#include <array>
#include <atomic>
#include <chrono>
#include <string>

namespace sandbox {

/// One accepted connection, as the HTTP library reads and writes it. Beyond that it can do to the other side what
/// broken servers and networks do. Used by the one thread that serves the connection; owns the socket and closes it.
class Connection : public httplib::Stream {
public:
    /// `closing` tells that the listener is going down: what waits for the other side then gives up.
    Connection(socket_t acceptedSocket, const std::atomic<bool>& closing);
    ~Connection() override;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// The connection that the calling thread serves now. [any-thread]
    [[nodiscard]] static Connection& current();

    /// Whether another request has begun to arrive. False when the other side has gone, the time is over or the
    /// listener is closing. [blocks: `wait` at the longest]
    [[nodiscard]] bool waitForRequest(std::chrono::milliseconds wait);

    /// From here on nothing more is sent: the other side sees the connection end, in the middle of whatever it was.
    void hangUp();
    /// Lets so many further bytes through and then resets the connection, so that the other side gets an error and not
    /// an end.
    void resetAfter(std::size_t bytes);
    /// Says nothing until the other side has gone or the listener closes, and then hangs up. [blocks: as long]
    void keepSilent();
    /// Sleeps, but no longer than until the listener closes. [blocks: as told]
    void pause(std::chrono::milliseconds time) const;
    /// After the reply the connection ends, in a way that lets the reply arrive although the other side is still
    /// sending.
    void endAfterReply();

    [[nodiscard]] bool isEnding() const
    {
        return ending;
    }

    [[nodiscard]] bool is_readable() const override;
    [[nodiscard]] bool is_writable() const override;
    ssize_t read(char* to, size_t size) override;
    ssize_t write(const char* from, size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    [[nodiscard]] socket_t socket() const override;

private:
    [[nodiscard]] bool waitFor(short events, std::chrono::milliseconds wait) const;
    void drain();

    const socket_t descriptor;
    const std::atomic<bool>& listenerCloses;
    std::array<char, 16'384> buffer {};
    std::size_t bufferBegin = 0;
    std::size_t bufferEnd = 0;
    std::size_t bytesToReset = 0; // counts down; 0 when no reset is planned
    bool ending = false;
    bool wantsDrain = false;
};

}
