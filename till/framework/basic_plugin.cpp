#include "host/framework/basic_plugin.h"

#include "till/framework/action_dispatcher.h"

using Dispatcher = Singleton<till::ActionDispatcher>;

struct BasicPlugin::Private {
    QSet<QString> features;
};

BasicPlugin::BasicPlugin()
    : d(std::make_unique<Private>())
{
}

BasicPlugin::~BasicPlugin()
{
    // Plug-ins end while the process does. One that has added nothing must not make a dispatcher then.
    if (Dispatcher::instance != nullptr) {
        Dispatcher::instance->remove(this);
    }
}

bool BasicPlugin::isFeatureMatched(const QString& feature) const
{
    return d->features.contains(feature);
}

void BasicPlugin::setFeature(const QString& feature)
{
    d->features.insert(feature);
}

void BasicPlugin::addHandler(const ActionHandler& handler)
{
    Dispatcher::get()->add(this, handler);
}

void BasicPlugin::addTrigger(const ActionTrigger& trigger)
{
    Dispatcher::get()->add(this, trigger);
}

void BasicPlugin::disableTriggers(const QSet<int>& actions)
{
    Dispatcher::get()->disable(this, actions);
}

void BasicPlugin::enableTriggers()
{
    Dispatcher::get()->enable(this);
}
