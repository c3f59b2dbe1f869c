#include "till/work_events.h"

#include <utility>

namespace till {

namespace {

    [[nodiscard]] std::function<void(const WorkEvent&)>& observer()
    {
        static std::function<void(const WorkEvent&)> instance;
        return instance;
    }

} // namespace

void observeWork(std::function<void(const WorkEvent&)> call)
{
    observer() = std::move(call);
}

bool isWorkObserved()
{
    return static_cast<bool>(observer());
}

void tellWork(const WorkEvent& event)
{
    if (observer()) {
        observer()(event);
    }
}

} // namespace till
