#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Where the till can be killed: before and after each call by which it makes something last or talks with the service.
// The program defines those calls of the C library itself, so that the database, libcurl and Qt come by here; a preload
// library would do the same, but could not be armed anew in each child without starting a program for it. What a child
// does is counted from the moment it is armed, and the count is deterministic: calls of the cheque thread and of the
// threads beside it are counted apart, and a reply is one point, however many pieces it comes in.
namespace crash {

enum class Lane : std::uint8_t { cheque, beside };
enum class Side : std::uint8_t { before, after };

/// Which calls count. Both have the exchanges: connect, send, receive.
enum class Grain : std::uint8_t {
    steps, // and what orders the writes of a file: syncing, truncating, removing
    calls, // and each single write
};

struct KillPoint {
    Lane lane = Lane::cheque;
    int number = 0; // from 1 in its lane; 0 is nowhere
    Side side = Side::before;
};

/// What one life of the till passes by. Lives in memory that the child shares with whoever watches it.
class Trace {
public:
    void clear();
    /// Numbers the point. Beyond the most that can be kept, a point is counted without its name.
    int add(Lane lane, const char* name);

    [[nodiscard]] int count(Lane lane) const;
    [[nodiscard]] std::string name(Lane lane, int number) const;
    /// The operation of the last request that was sent at that point or before; empty when none was, and when the
    /// database has been written behind it.
    [[nodiscard]] std::string unsavedOperationAt(const KillPoint& point) const;
    /// All names of the cheque thread's points up to that number, as one text.
    [[nodiscard]] std::string names(int upTo) const;

private:
    static constexpr int most = 4096;
    using Name = std::array<char, 56>;

    std::array<std::atomic<int>, 2> counts {};
    std::array<std::array<Name, most>, 2> texts {};
};

struct Watch {
    Trace* trace = nullptr;
    std::string folder; // of the store; ends in a slash
    std::vector<std::pair<int, std::string>> services; // port and name; connections to other ports do not count
    Grain grain = Grain::steps;
    KillPoint kill;
};

/// From here on the calls of this process count, and SIGKILL ends it at that point. Once in a process, before its first
/// thread is made.
void arm(const Watch& watch);

} // namespace crash
