#include "host/framework/action.h"

#include <QMap>

namespace control {

struct Action::Arguments {
    QMap<QString, QVariant> values;
};

Action::Action()
    : arguments(QSharedPointer<Arguments>::create())
{
}

Action& Action::appendArgument(const QVariant& value, const QString& name)
{
    insert(name, value);
    return *this;
}

QVariant Action::value(const QString& name, const QVariant& defaultValue) const
{
    return arguments->values.value(name, defaultValue);
}

void Action::insert(const QString& name, const QVariant& value) const
{
    arguments->values.insert(name, value);
}

}
