#include "bench/common/bare_post.h"
#include "bench/common/bench_main.h"
#include "bench/common/disk_syncs.h"
#include "bench/sale/bare_store.h"
#include "bench/sale/recording.h"
#include "bench/sale/shop.h"

#include <QCoreApplication>

#include <chrono>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// A shop, and beside it the store of whoever does the same without a till: both grow with the sales.
struct Place {
    explicit Place(int lineCount)
        : shop(lineCount)
    {
    }

    Shop shop;
    BareStore bare;
};

/// There can be one shop at a time: that of the latest benchmark.
std::unique_ptr<Place> place;

Place& placeOf(int lineCount)
{
    if (!place || place->shop.lineCount != lineCount) {
        place.reset();
        place = std::make_unique<Place>(lineCount);
    }
    return *place;
}

/// The posts and commits of a sale, less the commits of its lines, and the document as its last line has left it.
struct SaleRecording {
    CommittedRow entered;
    Recording rest;

    [[nodiscard]] size_t posts() const
    {
        size_t count = rest.last.size();
        for (const RecordedStep& step : rest.steps) {
            count += step.requests.size();
        }
        return count;
    }
};

[[nodiscard]] SaleRecording recorded(int lineCount)
{
    place.reset();
    Shop shop(lineCount);
    const Recording all = record(shop, [&shop] {
        shop.enterLines(std::nullopt);
        shop.sell();
    });
    const auto last = all.steps.begin() + lineCount; // behind the opening, one for each line
    return { last->row, { { last + 1, all.steps.end() }, all.last } };
}

const SaleRecording& recordingOf(int lineCount)
{
    static std::map<int, SaleRecording> made;
    const auto found = made.find(lineCount);
    return found != made.end() ? found->second : made.emplace(lineCount, recorded(lineCount)).first->second;
}

/// Times what `sell` does after each `prepare`, and counts what it asks of the disk.
void time(benchmark::State& state, const std::function<void()>& prepare, const std::function<void()>& sell)
{
    prepare();
    sell(); // the first of a day reads files and makes tables
    long syncs = 0;
    for ([[maybe_unused]] const auto iteration : state) {
        prepare();
        const long before = diskSyncs();
        const auto start = Clock::now();
        sell();
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
        syncs += diskSyncs() - before;
    }
    state.counters["syncs"] = static_cast<double>(syncs) / static_cast<double>(state.iterations());
}

void sellInShop(benchmark::State& state, milliseconds delay)
{
    const int lineCount = static_cast<int>(state.range(0));
    const SaleRecording& recording = recordingOf(lineCount);
    Shop& shop = placeOf(lineCount).shop;
    shop.service().setDelay(delay);
    time(
        state, [&shop] { shop.enterLines(std::nullopt); }, [&shop] { shop.sell(); });
    state.counters["posts"] = static_cast<double>(recording.posts());
    state.counters["commits"] = static_cast<double>(recording.rest.steps.size());
}

void sellBare(benchmark::State& state, milliseconds delay)
{
    const int lineCount = static_cast<int>(state.range(0));
    const SaleRecording& recording = recordingOf(lineCount);
    CannedServer& service = placeOf(lineCount).shop.service();
    service.setDelay(delay);
    const BarePost post(service.url().toEncoded());
    BareStore& store = placeOf(lineCount).bare;
    static int number = 100'000;
    std::string identity;
    time(
        state,
        [&] {
            identity = "00000000-0000-0000-0000-000000" + std::to_string(++number);
            store.commit(identity, recording.entered);
        },
        [&] {
            const auto postAll = [&post](const std::vector<WireRequest>& requests) {
                for (const WireRequest& request : requests) {
                    static_cast<void>(post.post(request.operation, request.body));
                }
            };
            for (const RecordedStep& step : recording.rest.steps) {
                postAll(step.requests);
                store.commit(identity, step.row);
            }
            postAll(recording.rest.last);
        });
    state.counters["posts"] = static_cast<double>(recording.posts());
    state.counters["commits"] = static_cast<double>(recording.rest.steps.size());
}

void add(const std::string& name, void (*sell)(benchmark::State&, milliseconds), milliseconds delay)
{
    benchmark::RegisterBenchmark(name.c_str(),
                                 [sell, delay](benchmark::State& state) {
                                     try {
                                         sell(state, delay);
                                     } catch (const std::exception& error) {
                                         refuse(state, error.what());
                                     }
                                 })
        ->Arg(1)
        ->Arg(20)
        ->Arg(100)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    fixHashSeed();
    const QCoreApplication application(argc, argv);
    using namespace std::chrono_literals;
    add("sale", sellInShop, 0ms);
    add("sale:bare", sellBare, 0ms);
    add("sale_20ms", sellInShop, 20ms);
    add("sale_20ms:bare", sellBare, 20ms);
    const int status = runBenchmarks(argc, argv);
    place.reset(); // while there is an application
    return status;
}
