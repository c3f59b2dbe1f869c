#pragma once

#include "host/framework/activity_notifier.h"

#include <QList>

#include <functional>
#include <utility>

/// Keeps every event of the till for as long as it lives, and may do something within each. It is told after the
/// plug-in, and after the journal. [cheque-thread]
class HeardEvents : public BaseActivityListener {
public:
    /// What the action throws goes to the sender of the event.
    explicit HeardEvents(std::function<void(const Event&)> actionWithin = {})
        : BaseActivityListener(nullptr)
        , within(std::move(actionWithin))
    {
        Singleton<ActivityNotifier>::get()->subscribe(this);
    }

    void handleEvent(const Event& event) override
    {
        events.append(event);
        if (within) {
            within(event);
        }
    }

    /// Those of the code, in order.
    [[nodiscard]] QList<Event> of(int code) const
    {
        QList<Event> found;
        for (const Event& event : events) {
            if (event.getCode() == code) {
                found.append(event);
            }
        }
        return found;
    }

    QList<Event> events;

private:
    std::function<void(const Event&)> within;
};
