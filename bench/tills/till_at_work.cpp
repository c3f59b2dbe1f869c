#include "bench/common/bench_main.h"
#include "bench/sale/shop.h"
#include "till/delivery/delivery_worker.h"
#include "till/script/books.h"
#include "till/store/queue_records.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <thread>

// One till of many in front of the same services: a customer with its card comes every so often until its time is up,
// and what no service could be told is delivered beside that. Each sale is a line of the output: when it began
// (milliseconds of the clock), how long the till has kept the cashier waiting in it (milliseconds), the cheque's UUID,
// its sum in kopecks. The last line tells how many messages still wait.

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int lineCount = 3;

void sellOne(Shop& shop, const QString& card)
{
    const qint64 began = QDateTime::currentMSecsSinceEpoch();
    QElapsedTimer clock;
    clock.start();
    shop.enterLines(std::nullopt);
    till::Checkout& till = shop.till();
    static_cast<void>(till.presentCard(card)); // refused while no service answers: the sale goes on without it
    static_cast<void>(till.request());
    till.payCash(std::nullopt);
    const QString uid = till::chequeUid(till.document()->getDocumentIdentity());
    const till::Kopecks sum = till::bookEntryOf(till.contents(), till::store::DocumentState::closed).sum;
    if (!till.close()) {
        throw std::runtime_error("the service has refused a cheque");
    }
    std::printf("%lld %.3f %s %lld\n", static_cast<long long>(began), static_cast<double>(clock.nsecsElapsed()) / 1e6,
                qPrintable(uid), static_cast<long long>(sum));
    std::fflush(stdout);
}

void work(const QString& card, std::chrono::duration<double> time, std::chrono::duration<double> pace,
          const QList<QUrl>& services)
{
    Shop shop(lineCount, services);
    till::Delivery::Settings settings;
    settings.servers = services;
    till::DeliveryWorker worker(settings);
    const auto opening = Clock::now();
    for (auto customer = opening; customer < opening + time;
         customer += std::chrono::duration_cast<Clock::duration>(pace)) {
        std::this_thread::sleep_until(customer);
        shop.till().idle(0ms); // what the till has learned of its services since
        sellOne(shop, card);
    }
    worker.wake();
    static_cast<void>(worker.waitUntilIdle(20s));
    std::printf("waiting %d\n", static_cast<int>(till::store::queueRecords().size()));
}

} // namespace

int main(int argc, char** argv)
{
    fixHashSeed();
    const QCoreApplication application(argc, argv);
    const double seconds = argc > 4 ? std::atof(argv[2]) : 0.0;
    const double pace = argc > 4 ? std::atof(argv[3]) : 0.0;
    if (seconds <= 0.0 || pace <= 0.0) {
        std::fputs("Usage: vantiro_bench_till CARD SECONDS PACE SERVICE...\n", stderr);
        return 2;
    }
    QList<QUrl> services;
    for (int i = 4; i < argc; ++i) {
        services.append(QUrl(QString::fromLocal8Bit(argv[i])));
    }
    try {
        work(QString::fromLocal8Bit(argv[1]), std::chrono::duration<double>(seconds),
             std::chrono::duration<double>(pace), services);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
