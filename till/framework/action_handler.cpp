#include "host/framework/action_handler.h"

#include <utility>

ActionHandler::ActionHandler(EContext::Code where, control::EActionType what, Function replacement)
    : context(where)
    , action(what)
    , function(std::move(replacement))
{
}

EContext::Code ActionHandler::getContext() const
{
    return context;
}

control::EActionType ActionHandler::getAction() const
{
    return action;
}

const ActionHandler::Function& ActionHandler::getFunction() const
{
    return function;
}
