#pragma once

#include "host/export.h"
#include "host/facilities/singleton.h"
#include "host/framework/base_activity_listener.h"
#include "host/framework/event.h"

#include <QList>
#include <QPointer>

/// Hands activity events round. [cheque-thread]
class VANTIRO_HOST_API ActivityNotifier {
public:
    ActivityNotifier();
    virtual ~ActivityNotifier();

    /// From now on the listener gets every event. The listener is not owned; one that is destroyed drops out by itself.
    /// A listener that subscribes twice is told once.
    virtual void subscribe(BaseActivityListener* listener);

    /// Sends the event to all listeners, in the order of their subscription, and returns when all have handled it.
    /// [blocks: as long as the listeners do]
    virtual void notify(const Event& event);

private:
    Q_DISABLE_COPY(ActivityNotifier)

    QList<QPointer<BaseActivityListener>> listeners;
};

extern template class VANTIRO_HOST_API Singleton<ActivityNotifier>;
