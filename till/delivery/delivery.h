#pragma once

#include "host/export.h"
#include "till/store/queue_records.h"

#include <QDateTime>
#include <QList>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

namespace till {

/// Delivers what stands in the queue: in order, at least once. A message that no server answers waits, and those behind
/// it with it; one that is refused, or that is answered wrongly time and again, steps aside with the reason. None is
/// ever dropped: it leaves the queue when the service has answered it, and not before.
///
/// Times of waiting double from the first to the longest, and each is cut by up to a half at random, so that tills that
/// lost the same server do not come back all at once. [any-thread, one at a time]
class VANTIRO_HOST_API Delivery {
public:
    struct Settings {
        /// Tried in order when the server of a message does not answer: other addresses of the same service.
        QList<QUrl> servers = {};
        int timeout = 30; // seconds for one post
        std::chrono::milliseconds firstWait = std::chrono::seconds(2);
        std::chrono::milliseconds longestWait = std::chrono::minutes(5);
        int maximumAttempts = 10; // wrong answers before a message steps aside
        std::function<double()> random = {}; // 0 to below 1; unset: the system's
    };

    struct Outcome {
        int delivered = 0;
        int steppedAside = 0;
        /// When the next message may be tried; none when none is pending.
        std::optional<QDateTime> next;
    };

    explicit Delivery(const Settings& settings);

    /// Posts pending messages until one has to wait or none is left. `force` leaves times of waiting out. Throws
    /// `BasicException` when the store fails. `goOn` is asked before each post; false ends the round.
    /// [blocks: for each message, the number of servers times the timeout at the longest]
    Outcome run(bool force = false, const std::function<bool()>& goOn = {});

    /// Posts this one, whatever its state and its place. The verdict is as in `run`; false when it was not delivered.
    /// One that was held or refused is so still when nobody has answered it. Throws `BasicException` when the store
    /// fails. [blocks: the number of servers times the timeout at the longest]
    bool send(const store::QueueRecord& record);

private:
    enum class Step { delivered, steppedAside, waits };

    [[nodiscard]] Step deliver(const store::QueueRecord& record);
    [[nodiscard]] QDateTime afterWaiting();

    Settings settings;
    int failures = 0; // in a row
};

} // namespace till
