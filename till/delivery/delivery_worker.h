#pragma once

#include "host/export.h"
#include "till/delivery/delivery.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace till {

/// Delivers the queue on a thread of its own for as long as it lives, whenever something is due. A store that fails is
/// logged and tried again. [any-thread]
class VANTIRO_HOST_API DeliveryWorker {
public:
    /// The store is open, and stays so. Begins at once.
    explicit DeliveryWorker(const Delivery::Settings& settings);
    /// Ends after the post that is under way. [blocks: the timeout at the longest, times the number of servers]
    ~DeliveryWorker();

    /// Something may have been queued: looks at once for what is due. A message that waits for its next attempt goes on
    /// waiting.
    void wake();
    /// Waits until a round has found nothing more to do now; false when the time runs out before.
    /// [blocks: until then]
    [[nodiscard]] bool waitUntilIdle(std::chrono::milliseconds time);

private:
    Q_DISABLE_COPY(DeliveryWorker)

    void work();

    Delivery delivery; // of the thread
    std::mutex mutex; // guards the three below
    std::condition_variable changed;
    bool ending = false;
    bool woken = false;
    bool idle = false;
    std::atomic<bool> stop = false;
    std::thread thread; // last: it uses all of the above
};

} // namespace till
