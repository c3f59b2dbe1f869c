#include "tests/disk/faults/failing_disk.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace {

[[nodiscard]] std::int64_t sizeOf(int descriptor)
{
    struct stat status { };
    return ::fstat(descriptor, &status) == 0 ? status.st_size : 0;
}

[[nodiscard]] bool changesSize(disk::Kind kind)
{
    return kind == disk::Kind::write || kind == disk::Kind::truncate || kind == disk::Kind::allocate;
}

/// By how much the file grows; less than nothing when it shrinks.
[[nodiscard]] std::int64_t growthOf(const disk::Call& call)
{
    const std::int64_t size = sizeOf(call.descriptor);
    if (call.kind == disk::Kind::truncate) {
        return call.offset - size;
    }
    return std::max<std::int64_t>(call.offset + static_cast<std::int64_t>(call.length) - size, 0);
}

}

FailingDisk::FailingDisk(const std::string& folder)
{
    disk::observe(folder.c_str(), this);
}

FailingDisk::~FailingDisk()
{
    disk::observe("", nullptr);
}

void FailingDisk::fail(const DiskFault& newFault)
{
    fault = newFault;
    counted = 0;
}

void FailingDisk::leaveRoom(std::int64_t bytes)
{
    left = bytes;
}

void FailingDisk::heal()
{
    fault.reset();
    left.reset();
}

bool FailingDisk::failsOn() const
{
    return fault && fault->lasts;
}

int FailingDisk::failures() const
{
    return failed;
}

bool FailingDisk::concerns(const disk::Call& call) const
{
    switch (fault->of) {
    case DiskFault::Of::writes:
        return changesSize(call.kind);
    case DiskFault::Of::syncs:
        return call.kind == disk::Kind::sync;
    case DiskFault::Of::all:
        return changesSize(call.kind) || call.kind == disk::Kind::sync
            || (call.kind == disk::Kind::open && (call.flags & (O_WRONLY | O_RDWR)) != 0);
    }
    return false;
}

disk::Permission FailingDisk::before(const disk::Call& call)
{
    if (fault && concerns(call)) {
        ++counted;
        if (counted == fault->number || (fault->lasts && counted > fault->number)) {
            ++failed;
            return { fault->error, 0 };
        }
    }
    growth = changesSize(call.kind) ? growthOf(call) : 0;
    if (left && growth > *left) {
        ++failed;
        const std::int64_t taken = static_cast<std::int64_t>(call.length) - (growth - *left);
        if (call.kind != disk::Kind::write || taken <= 0) {
            return { ENOSPC, 0 };
        }
        growth = *left;
        return { 0, static_cast<std::size_t>(taken) }; // as much as there is room for
    }
    return { 0, call.length };
}

std::int64_t FailingDisk::room()
{
    return left.value_or(-1);
}

void FailingDisk::after(const disk::Call& call)
{
    if (left && changesSize(call.kind)) {
        *left -= growth;
    }
}
