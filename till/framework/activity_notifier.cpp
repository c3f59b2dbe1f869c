#include "host/framework/activity_notifier.h"

#include "host/facilities/log_manager.h"
#include "till/framework/current_exception.h"
#include "till/framework/event_contract.h"

#include <exception>

template class Singleton<ActivityNotifier>;

ActivityNotifier::ActivityNotifier() = default;
ActivityNotifier::~ActivityNotifier() = default;

void ActivityNotifier::subscribe(BaseActivityListener* listener)
{
    till::requireChequeThread(till::Side::plugin, "ActivityNotifier::subscribe");
    if (listener == nullptr) {
        throw till::ContractBreach(till::Side::plugin, "ActivityNotifier::subscribe is called without a listener");
    }
    if (!listeners.contains(listener)) {
        listeners.append(listener);
    }
}

void ActivityNotifier::notify(const Event& event)
{
    till::requireChequeThread(till::senderOf(event.getCode()), "ActivityNotifier::notify");
    till::requireArguments(event);

    listeners.removeAll(nullptr);
    // A listener may subscribe others, or destroy them, while it handles the event.
    const QList<QPointer<BaseActivityListener>> told = listeners;
    // The others are told whatever one of them throws: a closed cheque that one plug-in fails on still has to reach the
    // next. One exception can go to the sender, so further ones are left to the log.
    std::exception_ptr first;
    for (const QPointer<BaseActivityListener>& listener : told) {
        if (listener.isNull()) {
            continue;
        }
        try {
            listener->handleEvent(event);
        } catch (...) {
            if (first) {
                Log4Qt::LogManager::logger(QStringLiteral("activitynotifier"), QString())
                    ->error("Ошибка обработки события: %1", till::currentExceptionText());
            } else {
                first = std::current_exception();
            }
        }
    }
    if (first) {
        std::rethrow_exception(first);
    }
}
