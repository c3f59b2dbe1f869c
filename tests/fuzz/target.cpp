#include "tests/fuzz/target.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace fuzz {

namespace {

    std::clock_t longest = 0;
    std::size_t most = 0;

    /// Processor time: seconds on the wall depend on what else the machine does.
    class Watch {
    public:
        Watch() = default;
        ~Watch()
        {
            longest = std::max(longest, std::clock() - start);
        }

    private:
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;

        std::clock_t start = std::clock();
    };

} // namespace

void timed(const std::function<void()>& call)
{
    const Watch watch;
    call();
}

void made(std::size_t bytes)
{
    most = std::max(most, bytes);
}

std::size_t takeMade()
{
    return std::exchange(most, 0);
}

double takeLongest()
{
    return static_cast<double>(std::exchange(longest, 0)) / CLOCKS_PER_SEC;
}

void require(bool kept, const std::string& promise)
{
    if (!kept) {
        throw BrokenPromise(promise);
    }
}

const std::vector<Target>& targets()
{
    static const std::vector<Target> all {
        { "exchange", readExchange },
        { "discounts", readDiscounts },
        { "messages", readMessages },
        { "subtraction", readSubtraction },
        { "balance", readBalance },
        { "report", readReport },
        { "restore", readStoredState },
        { "queue_record", readQueueRecord },
        { "sandbox_request", readSandboxRequest },
    };
    return all;
}

const Target& targetOf(std::string_view name)
{
    const auto found = std::ranges::find(targets(), name, &Target::name);
    if (found == targets().end()) {
        throw std::invalid_argument("there is no target " + std::string(name));
    }
    return *found;
}

} // namespace fuzz
