#include "tests/crash/kill_points.h"

#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace crash {

namespace {

using namespace std::string_view_literals;

enum class Talk : std::uint8_t { none, connected, sent, receiving, answered };

/// A connection to a service, by the number of its descriptor.
struct Line {
    Talk talk = Talk::none;
    int receivePoint = 0;
    const std::string* service = nullptr;
    std::array<char, 32> operation {};
};

Watch orders;
std::atomic<bool> armed = false;
std::array<Line, 1024> lines; // each descriptor is one thread's at a time

[[nodiscard]] Lane laneOfThread()
{
    return ::gettid() == ::getpid() ? Lane::cheque : Lane::beside;
}

void dieIf(int number, Side side)
{
    if (number == orders.kill.number && side == orders.kill.side && laneOfThread() == orders.kill.lane) {
        ::kill(::getpid(), SIGKILL);
        ::pause();
    }
}

[[nodiscard]] int enter(const char* call, const char* object)
{
    std::array<char, 56> name {};
    std::snprintf(name.data(), name.size(), "%s %s", call, object);
    const int number = orders.trace->add(laneOfThread(), name.data());
    dieIf(number, Side::before);
    return number;
}

/// What stands in errno is the caller's.
void leave(int number)
{
    const int error = errno;
    dieIf(number, Side::after);
    errno = error;
}

/// The name of a file of the folder, empty for any other. The log is no promise to anybody.
[[nodiscard]] std::string_view watchedName(std::string_view path)
{
    const bool isWatched = path.starts_with(orders.folder) && !path.ends_with(".log");
    return isWatched ? path.substr(orders.folder.size()) : std::string_view();
}

[[nodiscard]] std::string watchedName(int descriptor)
{
    const int error = errno;
    std::array<char, 64> link {};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    std::array<char, 512> path {};
    const ssize_t size = ::readlink(link.data(), path.data(), path.size());
    errno = error;
    return size <= 0 ? std::string() : std::string(watchedName({ path.data(), static_cast<std::size_t>(size) }));
}

template <class Call>
auto atFile(const char* call, int descriptor, Grain grain, const Call& real)
{
    const std::string name = armed && grain <= orders.grain ? watchedName(descriptor) : std::string();
    if (name.empty()) {
        return real();
    }
    const int number = enter(call, name.c_str());
    const auto result = real();
    leave(number);
    return result;
}

[[nodiscard]] Line* lineOf(int descriptor)
{
    const bool isKnown = armed && descriptor >= 0 && static_cast<std::size_t>(descriptor) < lines.size();
    Line* const line = isKnown ? &lines[static_cast<std::size_t>(descriptor)] : nullptr;
    return line != nullptr && line->talk != Talk::none ? line : nullptr;
}

/// Null unless it is an address of a service.
[[nodiscard]] const std::string* serviceAt(const sockaddr* address)
{
    if (address->sa_family != AF_INET) {
        return nullptr;
    }
    sockaddr_in place {};
    std::memcpy(&place, address, sizeof place);
    for (const auto& [port, name] : orders.services) {
        if (port == ntohs(place.sin_port)) {
            return &name;
        }
    }
    return nullptr;
}

void keepOperation(Line& line, std::string_view request)
{
    constexpr std::string_view header = "SOAPAction:"sv;
    const std::size_t begin = request.find(header);
    if (begin == std::string_view::npos) {
        return;
    }
    std::string_view action = request.substr(begin, request.find('\r', begin) - begin);
    action.remove_prefix(action.rfind('/') + 1);
    action = action.substr(0, action.find('"'));
    std::snprintf(line.operation.data(), line.operation.size(), "%.*s", static_cast<int>(action.size()), action.data());
}

[[nodiscard]] std::string exchangeOf(const Line& line)
{
    return std::string(line.operation.data()) + ' ' + *line.service;
}

template <class Function>
[[nodiscard]] Function* next(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

int connectTo(int descriptor, const sockaddr* address, socklen_t size)
{
    static const auto real = next<int(int, const sockaddr*, socklen_t)>("connect");
    if (!armed || descriptor < 0 || static_cast<std::size_t>(descriptor) >= lines.size()) {
        return real(descriptor, address, size);
    }
    const std::string* const service = serviceAt(address);
    Line& line = lines[static_cast<std::size_t>(descriptor)];
    if (service == nullptr) {
        line.talk = Talk::none; // the number was a connection's to a service before
        return real(descriptor, address, size);
    }
    line = Line { Talk::connected, 0, service, {} };
    const int number = enter("connect", service->c_str());
    const int result = real(descriptor, address, size);
    leave(number);
    return result;
}

ssize_t sendOn(int descriptor, const void* data, std::size_t size, int flags)
{
    static const auto real = next<ssize_t(int, const void*, std::size_t, int)>("send");
    Line* const line = lineOf(descriptor);
    if (line == nullptr) {
        return real(descriptor, data, size, flags);
    }
    keepOperation(*line, { static_cast<const char*>(data), size });
    const int number = enter("send", exchangeOf(*line).c_str());
    const ssize_t result = real(descriptor, data, size, flags);
    line->talk = Talk::sent;
    leave(number);
    return result;
}

/// The reply is one point: before the first look at it, and after its first bytes or its end.
ssize_t receiveOn(int descriptor, void* data, std::size_t size, int flags)
{
    static const auto real = next<ssize_t(int, void*, std::size_t, int)>("recv");
    Line* const line = lineOf(descriptor);
    if (line == nullptr || line->talk == Talk::connected || line->talk == Talk::answered) {
        return real(descriptor, data, size, flags);
    }
    if (line->talk == Talk::sent) {
        line->talk = Talk::receiving;
        line->receivePoint = enter("receive", exchangeOf(*line).c_str());
    }
    const ssize_t result = real(descriptor, data, size, flags);
    if (result >= 0 || (errno != EAGAIN && errno != EINTR)) {
        line->talk = Talk::answered;
        leave(line->receivePoint);
    }
    return result;
}

} // namespace

void arm(const Watch& watch)
{
    orders = watch;
    orders.trace->clear();
    armed = true;
}

} // namespace crash

// What the program defines, every library of the process takes in place of the C library's.
extern "C" {

#pragma GCC visibility push(default)

int fsync(int descriptor)
{
    static const auto real = crash::next<int(int)>("fsync");
    return crash::atFile("fsync", descriptor, crash::Grain::steps, [=] { return real(descriptor); });
}

int fdatasync(int descriptor)
{
    static const auto real = crash::next<int(int)>("fdatasync");
    return crash::atFile("fdatasync", descriptor, crash::Grain::steps, [=] { return real(descriptor); });
}

int ftruncate(int descriptor, off_t size) noexcept
{
    static const auto real = crash::next<int(int, off_t)>("ftruncate");
    return crash::atFile("ftruncate", descriptor, crash::Grain::steps, [=] { return real(descriptor, size); });
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    static const auto real = crash::next<int(int, off64_t)>("ftruncate64");
    return crash::atFile("ftruncate", descriptor, crash::Grain::steps, [=] { return real(descriptor, size); });
}

int unlink(const char* path) noexcept
{
    static const auto real = crash::next<int(const char*)>("unlink");
    const std::string name(crash::armed ? crash::watchedName(std::string_view(path)) : std::string_view());
    if (name.empty()) {
        return real(path);
    }
    const int number = crash::enter("unlink", name.c_str());
    const int result = real(path);
    crash::leave(number);
    return result;
}

ssize_t write(int descriptor, const void* data, size_t size)
{
    static const auto real = crash::next<ssize_t(int, const void*, size_t)>("write");
    return crash::atFile("write", descriptor, crash::Grain::calls, [=] { return real(descriptor, data, size); });
}

ssize_t pwrite(int descriptor, const void* data, size_t size, off_t offset)
{
    static const auto real = crash::next<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    return crash::atFile("write", descriptor, crash::Grain::calls,
                         [=] { return real(descriptor, data, size, offset); });
}

ssize_t pwrite64(int descriptor, const void* data, size_t size, off64_t offset)
{
    static const auto real = crash::next<ssize_t(int, const void*, size_t, off64_t)>("pwrite64");
    return crash::atFile("write", descriptor, crash::Grain::calls,
                         [=] { return real(descriptor, data, size, offset); });
}

/// Never twice the same millisecond: two savings of one document in one millisecond are the same bytes, which the
/// database does not write again, and the points of a run would depend on how fast it is.
int gettimeofday(timeval* time, void* zone) noexcept
{
    static const auto real = crash::next<int(timeval*, void*)>("gettimeofday");
    static std::atomic<std::int64_t> last = 0; // milliseconds
    const int result = real(time, zone);
    if (!crash::armed) {
        return result;
    }
    constexpr std::int64_t thousand = 1000;
    std::int64_t now = time->tv_sec * thousand + time->tv_usec / thousand;
    std::int64_t former = last;
    do {
        now = std::max(now, former + 1);
    } while (!last.compare_exchange_weak(former, now));
    time->tv_sec = now / thousand;
    time->tv_usec = now % thousand * thousand;
    return result;
}

int connect(int descriptor, const sockaddr* address, socklen_t size)
{
    return crash::connectTo(descriptor, address, size);
}

ssize_t send(int descriptor, const void* data, size_t size, int flags)
{
    return crash::sendOn(descriptor, data, size, flags);
}

ssize_t recv(int descriptor, void* data, size_t size, int flags)
{
    return crash::receiveOn(descriptor, data, size, flags);
}

#pragma GCC visibility pop

} // extern "C"
