#include "till/exchange_events.h"

#include <mutex>

namespace till {

namespace {

    struct Observer {
        std::mutex mutex;
        std::function<void(const ExchangeEvent&)> call;
        std::function<void(ExchangeEvent&)> answer;
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

void answerExchanges(std::function<void(ExchangeEvent&)> answer)
{
    const std::lock_guard lock(observer().mutex);
    observer().answer = std::move(answer);
}

bool answerExchange(ExchangeEvent& event)
{
    const std::lock_guard lock(observer().mutex);
    if (!observer().answer) {
        return false;
    }
    observer().answer(event);
    return true;
}

void tellExchange(const ExchangeEvent& event)
{
    const std::lock_guard lock(observer().mutex);
    if (observer().call) {
        observer().call(event);
    }
}

} // namespace till
