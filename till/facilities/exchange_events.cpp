#include "till/exchange_events.h"

#include <mutex>

namespace till {

namespace {

    struct Observer {
        std::mutex mutex;
        std::function<void(const ExchangeEvent&)> call;
    };

    [[nodiscard]] Observer& observer()
    {
        static Observer instance;
        return instance;
    }

} // namespace

void observeExchanges(std::function<void(const ExchangeEvent&)> call)
{
    const std::lock_guard lock(observer().mutex);
    observer().call = std::move(call);
}

void tellExchange(const ExchangeEvent& event)
{
    const std::lock_guard lock(observer().mutex);
    if (observer().call) {
        observer().call(event);
    }
}

} // namespace till
