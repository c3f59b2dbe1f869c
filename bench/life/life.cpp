#include "bench/common/bench_main.h"
#include "bench/sale/shop.h"
#include "till/store/store.h"

#include <QCoreApplication>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

// A till that stays on: one process sells cheque after cheque and tells, every so many of them, what memory it holds
// and what one of them has taken. Each line of the output is one sample: cheques so far, MiB resident, milliseconds
// each.

namespace {

using Clock = std::chrono::steady_clock;

[[nodiscard]] double residentMebibytes()
{
    std::ifstream file("/proc/self/statm");
    double total = 0;
    double resident = 0;
    file >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

/// Every way that a sale takes in a shop: of ten customers six have no card, two earn points, one has all that there
/// is, and one leaves without buying.
void serve(Shop& shop, int cheque, bool isNumbered)
{
    till::Checkout& till = shop.till();
    shop.enterLines(isNumbered ? std::optional(cheque) : std::nullopt);
    const QString card = QStringLiteral("9000000001");
    bool done = true;
    switch (cheque % 10) {
    case 0:
        shop.sell();
        return;
    case 3:
    case 6:
        done = till.presentCard(card);
        till.payCash(std::nullopt);
        done = till.close() && done;
        break;
    case 8:
        done = till.presentCard(card) && till.request() && till.cancel();
        break;
    default:
        till.payCash(std::nullopt);
        done = till.close();
    }
    if (!done) {
        throw std::runtime_error("cheque " + std::to_string(cheque) + " was not done");
    }
}

/// What is looked at is the process; the disk has a benchmark of its own.
void leaveTheDiskAlone()
{
    for (const char* const pragma : { "PRAGMA synchronous = OFF", "PRAGMA journal_mode = MEMORY" }) {
        QSqlQuery query = till::store::prepare(QLatin1String(pragma));
        till::store::execute(query);
    }
}

void live(int cheques, int step, bool isNumbered)
{
    constexpr int lineCount = 1;
    Shop shop(lineCount);
    leaveTheDiskAlone();
    auto start = Clock::now();
    for (int cheque = 1; cheque <= cheques; ++cheque) {
        serve(shop, cheque, isNumbered);
        if (cheque % step == 0) {
            const std::chrono::duration<double, std::milli> took = Clock::now() - start;
            std::printf("%d %.3f %.4f\n", cheque, residentMebibytes(), took.count() / step);
            std::fflush(stdout);
            start = Clock::now();
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    fixHashSeed();
    const QCoreApplication application(argc, argv);
    const int cheques = argc > 1 ? std::atoi(argv[1]) : 0;
    const int step = argc > 2 ? std::atoi(argv[2]) : 0;
    if (cheques < 1 || step < 1) {
        std::fputs("Usage: vantiro_bench_life CHEQUES STEP [numbered]\n", stderr);
        return 2;
    }
    try {
        live(cheques, step, argc > 3);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
