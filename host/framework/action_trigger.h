#pragma once

#include "host/export.h"
#include "host/framework/action.h"

#include <functional>

/// Binds a handler of a plug-in to an action in a context. When the action occurs there, the host calls the handlers of
/// `Order::before`, carries the action out unless one of them has refused it, then calls those of `Order::after`; among
/// handlers of one order, the higher priority first. A value. [cheque-thread]
class VANTIRO_HOST_API ActionTrigger {
public:
    using Handler = std::function<EContext::Result(const control::Action&)>;

    enum class Order : int {
        after = 0, // the host has carried the action out
        before = 1, // the handler may refuse the action, and insert arguments that the host reads
    };

    /// The outcome of the action that the trigger waits for; hosts may know others.
    enum class Result : int {
        success = 0,
    };

    enum class Priority : int {
        lowest = 0,
        high = 3,
    };

    ActionTrigger(EContext::Code context, control::EActionType action, Order order, Handler handler, Result result,
                  Priority priority);

    [[nodiscard]] EContext::Code getContext() const;
    [[nodiscard]] control::EActionType getAction() const;
    [[nodiscard]] Order getOrder() const;
    [[nodiscard]] const Handler& getHandler() const;
    [[nodiscard]] Result getResult() const;
    [[nodiscard]] Priority getPriority() const;

private:
    EContext::Code context;
    control::EActionType action;
    Order order;
    Handler handler;
    Result result;
    Priority priority;
};
