#include "bench/common/disk_syncs.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>

namespace {

std::atomic<long> count = 0;

[[nodiscard]] int sync(long call, int descriptor)
{
    ++count;
    return static_cast<int>(syscall(call, descriptor));
}

}

extern "C" {

[[gnu::visibility("default")]] int fsync(int descriptor)
{
    return sync(SYS_fsync, descriptor);
}

[[gnu::visibility("default")]] int fdatasync(int descriptor)
{
    return sync(SYS_fdatasync, descriptor);
}
}

long diskSyncs()
{
    return count;
}
