#pragma once

#include "host/export.h"
#include "host/facilities/singleton.h"
#include "host/framework/action.h"
#include "host/framework/action_handler.h"
#include "host/framework/action_trigger.h"
#include "host/framework/basic_plugin.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QSharedPointer>

#include <functional>

namespace till {

/// Carries actions out, with the say that plug-ins have in them. One per process, by `Singleton`. Plug-ins reach it
/// through `BasicPlugin`, and drop out of it with `remove`. Handlers may add and remove triggers, and even end their
/// plug-in: an action goes on with the triggers that there were when it began and that are still there.
/// [cheque-thread]
class VANTIRO_HOST_API ActionDispatcher {
public:
    /// The host's own part of an action. False: it could not be carried out.
    using HostAction = std::function<bool(const control::Action&)>;

    ActionDispatcher();
    ~ActionDispatcher();

    void add(const BasicPlugin* plugin, const ActionTrigger& trigger);
    /// The handler takes the place of the host's own part from now on. Of several handlers the last counts.
    void add(const BasicPlugin* plugin, const ActionHandler& handler);
    /// Drops all triggers and handlers of the plug-in.
    void remove(const BasicPlugin* plugin);

    /// Switches off the plug-in's triggers of these actions, besides those that are off.
    void disable(const BasicPlugin* plugin, const QSet<int>& actions);
    /// Switches all triggers of the plug-in on.
    void enable(const BasicPlugin* plugin);

    /// Calls the triggers of `Order::before`, the host's own part, then the triggers of `Order::after`; within an order
    /// the higher priority first, and equals as they were added. True when the action was carried out. When a trigger
    /// or handler refuses, or the host's own part fails, nothing after it runs. What any of them throws passes to the
    /// caller. [blocks: as long as they do]
    bool carryOut(EContext::Code context, control::EActionType type, const control::Action& action,
                  const HostAction& hostAction) const;

private:
    Q_DISABLE_COPY(ActionDispatcher)

    struct Entry;

    [[nodiscard]] bool isOn(const Entry& entry) const;
    [[nodiscard]] QList<QSharedPointer<Entry>> entriesFor(EContext::Code context, control::EActionType type) const;
    [[nodiscard]] ActionHandler::Function handlerFor(EContext::Code context, control::EActionType type) const;

    struct OwnedHandler {
        const BasicPlugin* plugin = nullptr;
        ActionHandler handler;
    };

    QList<QSharedPointer<Entry>> entries; // in the order in which they are called
    QList<OwnedHandler> handlers; // in the order of their adding
    QHash<const BasicPlugin*, QSet<int>> disabled; // numbers of actions
};

}

extern template class VANTIRO_HOST_API Singleton<till::ActionDispatcher>;
