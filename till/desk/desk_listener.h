#pragma once

#include "host/framework/base_activity_listener.h"

namespace till {

/// Shows the cashier what plug-ins announce: that a server is being asked, and why a coupon was refused.
/// [cheque-thread]
class DeskListener : public BaseActivityListener {
public:
    /// Subscribes to the `ActivityNotifier`.
    DeskListener();
    ~DeskListener() override;

    void handleEvent(const Event& event) override;
};

} // namespace till
