#include "host/document/plugin_data.h"

PluginData::PluginData() = default;
PluginData::PluginData(const PluginData& other) = default;
PluginData& PluginData::operator=(const PluginData& other) = default;
PluginData::~PluginData() = default;

QVariant PluginData::getValue(const QString& group, const QString& key, const QVariant& defaultValue) const
{
    return pluginValues.value(group).value(key, defaultValue);
}

void PluginData::setValue(const QString& group, const QString& key, const QVariant& value)
{
    pluginValues[group].insert(key, value);
}
