#include "till/framework/event_contract.h"

#include "host/document/abstract_document.h"
#include "host/framework/task.h"

namespace till {

namespace {

template <class T>
bool hasObject(const Event& event, const QString& name)
{
    return !event.value(name, QVariant()).value<QSharedPointer<T>>().isNull();
}

[[noreturn]] void refuse(const Event& event, const char* argument)
{
    throw ContractBreach(senderOf(event.getCode()),
                         "event " + std::to_string(event.getCode()) + " comes without its " + argument);
}

}

Side senderOf(EActivityListener::Event code)
{
    switch (code) {
    case EActivityListener::processStarted:
    case EActivityListener::processFinished:
    case EActivityListener::couponRefused:
    case EActivityListener::runTask:
        return Side::plugin;
    default:
        return Side::host;
    }
}

void requireArguments(const Event& event)
{
    switch (event.getCode()) {
    case EActivityListener::documentClosed:
    case EActivityListener::documentCancelled:
    case EActivityListener::positionRemoved:
    case EActivityListener::documentCancelledBeforeClose:
        if (!hasObject<AbstractDocument>(event, QStringLiteral("document"))) {
            refuse(event, "document");
        }
        break;
    case EActivityListener::runTask:
        if (!hasObject<BasicTask>(event, QStringLiteral("task"))) {
            refuse(event, "task");
        }
        break;
    default:
        break;
    }
}

}
