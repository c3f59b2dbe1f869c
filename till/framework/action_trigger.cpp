#include "host/framework/action_trigger.h"

#include <utility>

ActionTrigger::ActionTrigger(EContext::Code where, control::EActionType what, Order when, Handler called,
                             Result outcome, Priority rank)
    : context(where)
    , action(what)
    , order(when)
    , handler(std::move(called))
    , result(outcome)
    , priority(rank)
{
}

EContext::Code ActionTrigger::getContext() const
{
    return context;
}

control::EActionType ActionTrigger::getAction() const
{
    return action;
}

ActionTrigger::Order ActionTrigger::getOrder() const
{
    return order;
}

const ActionTrigger::Handler& ActionTrigger::getHandler() const
{
    return handler;
}

ActionTrigger::Result ActionTrigger::getResult() const
{
    return result;
}

ActionTrigger::Priority ActionTrigger::getPriority() const
{
    return priority;
}
