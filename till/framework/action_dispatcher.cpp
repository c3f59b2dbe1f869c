#include "till/framework/action_dispatcher.h"

#include "till/framework/contract.h"

#include <algorithm>
#include <iterator>
#include <utility>

template class Singleton<till::ActionDispatcher>;

namespace till {

namespace {

template <class Bound>
bool isFor(const Bound& bound, EContext::Code context, control::EActionType type)
{
    return bound.getAction() == type && (bound.getContext() == EContext::any || bound.getContext() == context);
}

}

struct ActionDispatcher::Entry {
    const BasicPlugin* plugin = nullptr;
    ActionTrigger trigger;
    bool removed = false;
};

ActionDispatcher::ActionDispatcher() = default;
ActionDispatcher::~ActionDispatcher() = default;

void ActionDispatcher::add(const BasicPlugin* plugin, const ActionTrigger& trigger)
{
    requireChequeThread(Side::plugin, "BasicPlugin::addTrigger");
    const auto entry = QSharedPointer<Entry>::create(Entry { plugin, trigger });
    const auto place = std::upper_bound(entries.begin(), entries.end(), entry,
                                        [](const QSharedPointer<Entry>& left, const QSharedPointer<Entry>& right) {
                                            return left->trigger.getPriority() > right->trigger.getPriority();
                                        });
    entries.insert(place, entry);
}

void ActionDispatcher::add(const BasicPlugin* plugin, const ActionHandler& handler)
{
    requireChequeThread(Side::plugin, "BasicPlugin::addHandler");
    handlers.append({ plugin, handler });
}

void ActionDispatcher::remove(const BasicPlugin* plugin)
{
    // An action under way holds entries of its own.
    for (const QSharedPointer<Entry>& entry : std::as_const(entries)) {
        entry->removed = entry->removed || entry->plugin == plugin;
    }
    entries.removeIf([](const QSharedPointer<Entry>& entry) { return entry->removed; });
    handlers.removeIf([plugin](const OwnedHandler& owned) { return owned.plugin == plugin; });
    disabled.remove(plugin);
}

void ActionDispatcher::disable(const BasicPlugin* plugin, const QSet<int>& actions)
{
    disabled[plugin].unite(actions);
}

void ActionDispatcher::enable(const BasicPlugin* plugin)
{
    disabled.remove(plugin);
}

bool ActionDispatcher::carryOut(EContext::Code context, control::EActionType type, const control::Action& action,
                                const HostAction& hostAction) const
{
    requireChequeThread(Side::host, "ActionDispatcher::carryOut");
    const QList<QSharedPointer<Entry>> concerned = entriesFor(context, type);

    for (const QSharedPointer<Entry>& entry : concerned) {
        if (entry->trigger.getOrder() == ActionTrigger::Order::before && isOn(*entry)
            && entry->trigger.getHandler()(action) == EContext::refused) {
            return false;
        }
    }

    const ActionHandler::Function handler = handlerFor(context, type);
    const bool carriedOut = handler ? handler(action) != EContext::refused : hostAction(action);
    if (!carriedOut) {
        return false;
    }

    for (const QSharedPointer<Entry>& entry : concerned) {
        if (entry->trigger.getOrder() == ActionTrigger::Order::after && isOn(*entry)
            && entry->trigger.getResult() == ActionTrigger::Result::success) {
            entry->trigger.getHandler()(action);
        }
    }
    return true;
}

bool ActionDispatcher::isOn(const Entry& entry) const
{
    return !entry.removed && !disabled.value(entry.plugin).contains(entry.trigger.getAction());
}

QList<QSharedPointer<ActionDispatcher::Entry>> ActionDispatcher::entriesFor(EContext::Code context,
                                                                            control::EActionType type) const
{
    QList<QSharedPointer<Entry>> concerned;
    std::ranges::copy_if(entries, std::back_inserter(concerned), [context, type](const QSharedPointer<Entry>& entry) {
        return isFor(entry->trigger, context, type);
    });
    return concerned;
}

ActionHandler::Function ActionDispatcher::handlerFor(EContext::Code context, control::EActionType type) const
{
    const auto found = std::find_if(handlers.crbegin(), handlers.crend(), [context, type](const OwnedHandler& owned) {
        return isFor(owned.handler, context, type);
    });
    return found == handlers.crend() ? ActionHandler::Function() : found->handler.getFunction();
}

}
