#include "bench/common/bench_main.h"
#include "bench/common/disk_syncs.h"
#include "bench/sale/bare_store.h"
#include "bench/sale/recording.h"
#include "bench/sale/shop.h"

#include <QCoreApplication>

#include <exception>
#include <functional>
#include <memory>

namespace {

void time(benchmark::State& state, const std::function<void()>& write)
{
    write();
    const long before = diskSyncs();
    for ([[maybe_unused]] const auto iteration : state) {
        write();
    }
    state.counters["syncs"] = static_cast<double>(diskSyncs() - before) / static_cast<double>(state.iterations());
}

/// A sale with its card and its discounts, as it stands between the request and the payment.
[[nodiscard]] std::unique_ptr<Shop> shopWithSale(int lineCount)
{
    auto shop = std::make_unique<Shop>(lineCount);
    shop->enterLines(std::nullopt);
    if (!shop->till().presentCard(QStringLiteral("9000000001")) || !shop->till().request()) {
        throw std::runtime_error("the sale has no discounts to store");
    }
    return shop;
}

/// Keeps the state of the sale once more; what is the same would not be written.
void change(Shop& shop)
{
    static double points = 100.0; // of as many digits all the time
    points = points < 900.0 ? points + 1.0 : 100.0;
    shop.plugin().setPointsForSpend(shop.till().document(), points);
    shop.plugin().updatePluginData(shop.till().document(), false);
}

void updatePluginData(benchmark::State& state)
{
    const std::unique_ptr<Shop> shop = shopWithSale(static_cast<int>(state.range(0)));
    time(state, [&shop] { change(*shop); });
}

/// Writes the very rows that the plug-in has had written.
void commitBare(benchmark::State& state)
{
    constexpr int count = 8;
    Recording recording;
    {
        const std::unique_ptr<Shop> shop = shopWithSale(static_cast<int>(state.range(0)));
        change(*shop);
        recording = record(*shop, [&shop] {
            for (int i = 0; i < count; ++i) {
                change(*shop);
            }
        });
    }
    if (recording.steps.size() != count) {
        refuse(state, "storing the state is not one commit");
        return;
    }
    BareStore store;
    size_t next = 0;
    time(state, [&] {
        store.commit("00000000-0000-0000-0000-000000000001", recording.steps[next].row);
        next = (next + 1) % recording.steps.size();
    });
    state.counters["bytes"] = static_cast<double>(recording.steps.front().row.body.size());
}

void add(const char* name, void (*write)(benchmark::State&))
{
    benchmark::RegisterBenchmark(name,
                                 [write](benchmark::State& state) {
                                     try {
                                         write(state);
                                     } catch (const std::exception& error) {
                                         refuse(state, error.what());
                                     }
                                 })
        ->Arg(1)
        ->Arg(20)
        ->Arg(100)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    fixHashSeed();
    const QCoreApplication application(argc, argv);
    add("plugin_data", updatePluginData);
    add("plugin_data:bare", commitBare);
    return runBenchmarks(argc, argv);
}
