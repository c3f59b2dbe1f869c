#include "till/delivery/delivery_worker.h"

#include "host/facilities/current_time.h"
#include "host/facilities/exceptions.h"
#include "host/facilities/log_manager.h"
#include "till/store/store.h"

#include <algorithm>

namespace till {

namespace {

    constexpr std::chrono::seconds longestSleep(60); // the clock may be set meanwhile

    [[nodiscard]] std::chrono::milliseconds sleepUntil(const std::optional<QDateTime>& next)
    {
        if (!next) {
            return longestSleep;
        }
        const qint64 wait = MockFactory<CurrentTime>::create()->getCurrentTime().msecsTo(*next);
        return std::clamp<std::chrono::milliseconds>(std::chrono::milliseconds(wait), std::chrono::milliseconds(1),
                                                     longestSleep);
    }

} // namespace

DeliveryWorker::DeliveryWorker(const Delivery::Settings& settings)
    : delivery(settings)
    , thread([this] { work(); })
{
}

DeliveryWorker::~DeliveryWorker()
{
    {
        const std::lock_guard lock(mutex);
        ending = true;
        stop = true;
    }
    changed.notify_all();
    thread.join();
}

void DeliveryWorker::wake()
{
    {
        const std::lock_guard lock(mutex);
        woken = true;
        idle = false;
    }
    changed.notify_all();
}

bool DeliveryWorker::waitUntilIdle(std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, time, [this] { return idle && !woken; });
}

void DeliveryWorker::work()
{
    std::unique_lock lock(mutex);
    while (!ending) {
        woken = false;
        idle = false;
        lock.unlock();
        std::chrono::milliseconds sleep = longestSleep;
        bool looked = true;
        try {
            sleep = sleepUntil(delivery.run(false, [this] { return !stop.load(); }).next);
        } catch (const BasicException& failure) {
            Log4Qt::LogManager::logger(QStringLiteral("till"), QStringLiteral("delivery"))->error(failure.tr().ru());
            sleep = std::chrono::seconds(5);
            looked = false;
        }
        lock.lock();
        idle = looked;
        changed.notify_all();
        changed.wait_for(lock, sleep, [this] { return ending || woken; });
    }
    lock.unlock();
    store::releaseConnection();
}

} // namespace till
