#pragma once

#include "host/export.h"
#include "host/framework/action.h"

#include <functional>

/// Replaces the way in which the host carries an action out in a context. Loyalty plug-ins add none. A value.
/// [cheque-thread]
class VANTIRO_HOST_API ActionHandler {
public:
    using Function = std::function<EContext::Result(const control::Action&)>;

    ActionHandler(EContext::Code context, control::EActionType action, Function function);

    [[nodiscard]] EContext::Code getContext() const;
    [[nodiscard]] control::EActionType getAction() const;
    [[nodiscard]] const Function& getFunction() const;

private:
    EContext::Code context;
    control::EActionType action;
    Function function;
};
