#pragma once

#include <string>

namespace sandbox {

/// A port that is kept for as long as this lives: nobody else is given it while nobody listens on it, and connections
/// to it are refused. Whoever listens on it needs SO_REUSEADDR. Thread-safe.
class HeldPort {
public:
    /// Port 0 takes a free one. Throws `std::system_error` with the system's number when the port cannot be had.
    HeldPort(const std::string& address, int wanted);
    ~HeldPort();
    HeldPort(const HeldPort&) = delete;
    HeldPort& operator=(const HeldPort&) = delete;

    [[nodiscard]] int number() const;

private:
    int descriptor = -1;
    int port = 0;
};

}
