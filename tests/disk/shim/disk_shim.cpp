#include "tests/disk/shim/disk_shim.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>

// The system is called by number: what stands behind these names would be this library again, or a sanitizer's own
// substitute, which has been passed already.

namespace {

struct State {
    std::mutex mutex; // guards all below, and lets operations happen one at a time, in the order in which they are told
    std::string folder;
    disk::Observer* observer = nullptr;
    std::array<bool, 4096> watched {};
};

[[nodiscard]] State& state()
{
    static State* const instance = new State; // used until the process has ended
    return *instance;
}

[[nodiscard]] std::string absolute(const char* path)
{
    if (path[0] == '/') {
        return path;
    }
    std::array<char, PATH_MAX> here {};
    return ::syscall(SYS_getcwd, here.data(), here.size()) < 0 ? std::string(path)
                                                               : std::string(here.data()) + '/' + path;
}

[[nodiscard]] bool isWatched(const State& now, const std::string& path)
{
    return now.observer != nullptr && path.starts_with(now.folder)
        && (path.size() == now.folder.size() || path[now.folder.size()] == '/');
}

[[nodiscard]] bool isWatched(const State& now, int descriptor)
{
    return now.observer != nullptr && descriptor >= 0 && descriptor < static_cast<int>(now.watched.size())
        && now.watched.at(static_cast<std::size_t>(descriptor));
}

void watch(State& now, long descriptor, bool whether)
{
    if (descriptor >= 0 && descriptor < static_cast<long>(now.watched.size())) {
        now.watched.at(static_cast<std::size_t>(descriptor)) = whether;
    }
}

/// Asks the observer, makes the call, and tells the observer.
template <class Make>
[[nodiscard]] long perform(State& now, disk::Call call, const Make& make)
{
    const disk::Permission permission = now.observer->before(call);
    if (permission.error != 0) {
        errno = permission.error;
        return -1;
    }
    call.length = std::min(call.length, permission.length);
    const long result = make(call.length);
    if (result >= 0) {
        const int error = errno;
        if (call.kind == disk::Kind::write) {
            call.length = static_cast<std::size_t>(result);
        } else if (call.kind == disk::Kind::open) {
            call.descriptor = static_cast<int>(result);
        }
        now.observer->after(call);
        errno = error;
    }
    return result;
}

[[nodiscard]] int openAt(int folder, const char* path, int flags, mode_t mode)
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t) { return ::syscall(SYS_openat, folder, path, flags, mode); };
    const std::string place = path[0] == '/' || folder == AT_FDCWD ? absolute(path) : std::string();
    if (!isWatched(now, place)) {
        return static_cast<int>(make(0));
    }
    const long descriptor = perform(now, { .kind = disk::Kind::open, .flags = flags, .path = place.c_str() }, make);
    watch(now, descriptor, true);
    return static_cast<int>(descriptor);
}

[[nodiscard]] mode_t modeOf(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

[[nodiscard]] ssize_t writeAt(int descriptor, const void* data, std::size_t length, off64_t offset)
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t taken) { return ::syscall(SYS_pwrite64, descriptor, data, taken, offset); };
    if (!isWatched(now, descriptor)) {
        return make(length);
    }
    return perform(
        now, { .kind = disk::Kind::write, .descriptor = descriptor, .offset = offset, .data = data, .length = length },
        make);
}

[[nodiscard]] int resize(int descriptor, off64_t size)
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t) { return ::syscall(SYS_ftruncate, descriptor, size); };
    if (!isWatched(now, descriptor)) {
        return static_cast<int>(make(0));
    }
    return static_cast<int>(
        perform(now, { .kind = disk::Kind::truncate, .descriptor = descriptor, .offset = size }, make));
}

/// Gives the error, as the function of that name does.
[[nodiscard]] int allocate(int descriptor, off64_t offset, off64_t length)
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t) { return ::syscall(SYS_fallocate, descriptor, 0, offset, length); };
    const long result = isWatched(now, descriptor)
        ? perform(now, { .kind = disk::Kind::allocate, .descriptor = descriptor, .offset = offset + length }, make)
        : make(0);
    return result == 0 ? 0 : errno;
}

[[nodiscard]] int synchronise(int descriptor, long number)
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t) { return ::syscall(number, descriptor); };
    if (!isWatched(now, descriptor)) {
        return static_cast<int>(make(0));
    }
    return static_cast<int>(perform(now, { .kind = disk::Kind::sync, .descriptor = descriptor }, make));
}

[[nodiscard]] int move(const char* from, const char* to, unsigned int flags)
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t) { return ::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, flags); };
    const std::string old = absolute(from);
    const std::string fresh = absolute(to);
    if (!isWatched(now, old) && !isWatched(now, fresh)) {
        return static_cast<int>(make(0));
    }
    return static_cast<int>(
        perform(now, { .kind = disk::Kind::rename, .path = old.c_str(), .newPath = fresh.c_str() }, make));
}

/// What those who ask for room look at.
template <class Answer>
[[nodiscard]] int tellRoom(const char* path, Answer& answer)
{
    struct statfs real { };
    if (::syscall(SYS_statfs, path, &real) != 0) {
        return -1;
    }
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const std::int64_t room = isWatched(now, absolute(path)) ? now.observer->room() : -1;
    answer = {};
    answer.f_bsize = static_cast<unsigned long>(real.f_bsize);
    answer.f_frsize = static_cast<unsigned long>(real.f_frsize);
    answer.f_blocks = real.f_blocks;
    answer.f_bfree = room < 0 ? real.f_bfree : static_cast<fsblkcnt_t>(room / real.f_frsize);
    answer.f_bavail = room < 0 ? real.f_bavail : answer.f_bfree;
    return 0;
}

} // namespace

void disk::observe(const char* folder, Observer* observer)
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    now.folder = folder;
    now.observer = observer;
}

// The names that programs and libraries call.

extern "C" {

[[gnu::visibility("default")]] int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAt(AT_FDCWD, path, flags, mode);
}

[[gnu::visibility("default")]] int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAt(AT_FDCWD, path, flags, mode);
}

[[gnu::visibility("default")]] int openat(int folder, const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAt(folder, path, flags, mode);
}

[[gnu::visibility("default")]] int close(int descriptor)
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t) { return ::syscall(SYS_close, descriptor); };
    if (!isWatched(now, descriptor)) {
        return static_cast<int>(make(0));
    }
    watch(now, descriptor, false);
    return static_cast<int>(perform(now, { .kind = disk::Kind::close, .descriptor = descriptor }, make));
}

[[gnu::visibility("default")]] ssize_t write(int descriptor, const void* data, std::size_t length)
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t taken) { return ::syscall(SYS_write, descriptor, data, taken); };
    if (!isWatched(now, descriptor)) {
        return make(length);
    }
    return perform(now,
                   { .kind = disk::Kind::write,
                     .descriptor = descriptor,
                     .offset = ::syscall(SYS_lseek, descriptor, 0, SEEK_CUR),
                     .data = data,
                     .length = length },
                   make);
}

[[gnu::visibility("default")]] ssize_t pwrite(int descriptor, const void* data, std::size_t length, off_t offset)
{
    return writeAt(descriptor, data, length, offset);
}

[[gnu::visibility("default")]] ssize_t pwrite64(int descriptor, const void* data, std::size_t length, off64_t offset)
{
    return writeAt(descriptor, data, length, offset);
}

[[gnu::visibility("default")]] int ftruncate(int descriptor, off_t size) noexcept
{
    return resize(descriptor, size);
}

[[gnu::visibility("default")]] int ftruncate64(int descriptor, off64_t size) noexcept
{
    return resize(descriptor, size);
}

[[gnu::visibility("default")]] int posix_fallocate(int descriptor, off_t offset, off_t length)
{
    return allocate(descriptor, offset, length);
}

[[gnu::visibility("default")]] int posix_fallocate64(int descriptor, off64_t offset, off64_t length)
{
    return allocate(descriptor, offset, length);
}

[[gnu::visibility("default")]] int fsync(int descriptor)
{
    return synchronise(descriptor, SYS_fsync);
}

[[gnu::visibility("default")]] int fdatasync(int descriptor)
{
    return synchronise(descriptor, SYS_fdatasync);
}

[[gnu::visibility("default")]] int rename(const char* from, const char* to) noexcept
{
    return move(from, to, 0);
}

[[gnu::visibility("default")]] int unlink(const char* path) noexcept
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t) { return ::syscall(SYS_unlinkat, AT_FDCWD, path, 0); };
    const std::string place = absolute(path);
    if (!isWatched(now, place)) {
        return static_cast<int>(make(0));
    }
    return static_cast<int>(perform(now, { .kind = disk::Kind::unlink, .path = place.c_str() }, make));
}

[[gnu::visibility("default")]] int mkdir(const char* path, mode_t mode) noexcept
{
    State& now = state();
    const std::lock_guard lock(now.mutex);
    const auto make = [&](std::size_t) { return ::syscall(SYS_mkdirat, AT_FDCWD, path, mode); };
    const std::string place = absolute(path);
    if (!isWatched(now, place)) {
        return static_cast<int>(make(0));
    }
    return static_cast<int>(perform(now, { .kind = disk::Kind::makeFolder, .path = place.c_str() }, make));
}

[[gnu::visibility("default")]] int statvfs(const char* path, struct statvfs* answer) noexcept
{
    return tellRoom(path, *answer);
}

[[gnu::visibility("default")]] int statvfs64(const char* path, struct statvfs64* answer) noexcept
{
    return tellRoom(path, *answer);
}

} // extern "C"
