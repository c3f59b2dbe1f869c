#include "till/desk/desk_listener.h"

#include "host/facilities/tr.h"
#include "host/framework/activity_notifier.h"
#include "till/desk/cashier.h"
#include "till/facilities/redaction.h"

namespace till {

DeskListener::DeskListener()
    : BaseActivityListener(nullptr)
{
    Singleton<ActivityNotifier>::get()->subscribe(this);
}

DeskListener::~DeskListener() = default;

void DeskListener::handleEvent(const Event& event)
{
    switch (event.getCode()) {
    case EActivityListener::processStarted:
        cashier().show(event.value(QStringLiteral("message"), QVariant()).value<tr::Tr>().ru());
        break;
    case EActivityListener::couponRefused:
        cashier().show(redact(event.value(QStringLiteral("text"), QVariant()).value<tr::Tr>().ru()));
        break;
    default:
        break;
    }
}

} // namespace till
