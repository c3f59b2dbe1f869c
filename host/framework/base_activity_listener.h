#pragma once

#include "host/export.h"
#include "host/framework/event.h"

#include <QObject>

/// The base through which activity events arrive, after `ActivityNotifier::subscribe`.
class VANTIRO_HOST_API BaseActivityListener : public QObject {
    Q_OBJECT

public:
    explicit BaseActivityListener(QObject* parent);
    ~BaseActivityListener() override;

public slots:
    /// Called for every event of the till, on the same thread as all hooks. The plug-in may talk to its server here.
    /// What it throws goes to the sender of the event. [cheque-thread] [blocks: as long as a hook]
    virtual void handleEvent(const Event& event) = 0;
};
