#include "bench/peak_memory.h"

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>

namespace {

[[nodiscard]] double residentMebibytes()
{
    std::ifstream file("/proc/self/statm");
    double total = 0;
    double resident = 0;
    file >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

} // namespace

double peakMemory(const std::function<void()>& work)
{
    malloc_trim(0); // what lies free in the heap would be used again, and not be seen
    std::array<int, 2> ends {};
    if (pipe(ends.data()) != 0) {
        return 0.0;
    }
    const pid_t child = fork();
    if (child == 0) {
        const double before = residentMebibytes();
        work();
        rusage usage {};
        getrusage(RUSAGE_SELF, &usage);
        const double peak = static_cast<double>(usage.ru_maxrss) / 1024.0 - before;
        _exit(write(ends[1], &peak, sizeof peak) == sizeof peak ? 0 : 1);
    }
    close(ends[1]);
    double peak = 0.0;
    if (child < 0 || read(ends[0], &peak, sizeof peak) != sizeof peak) {
        peak = 0.0;
    }
    close(ends[0]);
    if (child > 0) {
        waitpid(child, nullptr, 0);
    }
    return peak;
}
