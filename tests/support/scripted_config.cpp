#include "tests/support/scripted_config.h"

#include <QMetaType>

#include <utility>

ScriptedConfig::ScriptedConfig()
    : former(std::exchange(Singleton<Config>::instance, this))
{
}

ScriptedConfig::~ScriptedConfig()
{
    Singleton<Config>::instance = former;
}

void ScriptedConfig::set(const QString& key, const QVariant& value)
{
    values.insert(key, value);
}

QStringList ScriptedConfig::questions() const
{
    return asked;
}

QString ScriptedConfig::getString(const QString& key, const QString& defaultValue)
{
    asked.append(QStringLiteral("string %1, else '%2'").arg(key, defaultValue));
    return value(key, defaultValue);
}

int ScriptedConfig::getInt(const QString& key, int defaultValue)
{
    asked.append(QStringLiteral("int %1, else %2").arg(key, QString::number(defaultValue)));
    return value(key, defaultValue);
}

bool ScriptedConfig::getBool(const QString& key, bool defaultValue)
{
    asked.append(
        QStringLiteral("bool %1, else %2").arg(key, defaultValue ? QStringLiteral("true") : QStringLiteral("false")));
    return value(key, defaultValue);
}

template <class T>
T ScriptedConfig::value(const QString& key, const T& defaultValue) const
{
    const QVariant found = values.value(key);
    return found.metaType() == QMetaType::fromType<T>() ? found.value<T>() : defaultValue;
}
