#pragma once

#include "host/export.h"

#include <QMap>
#include <QString>
#include <QVariant>

/// The carrier of what plug-ins store with a host object, by group and key. The group is the class name of the plug-in.
/// Every document is one; `SaveToFileLogic` writes all of it out with the document, and a document read back carries
/// it again. A value. [cheque-thread]
class VANTIRO_HOST_API PluginData {
public:
    PluginData();
    PluginData(const PluginData& other);
    PluginData& operator=(const PluginData& other);
    virtual ~PluginData();

    /// The stored value, or the default when the group has no such key.
    [[nodiscard]] virtual QVariant getValue(const QString& group, const QString& key,
                                            const QVariant& defaultValue) const;

    /// Stores the value in memory. It is durable only after the next `SaveToFileLogic::save` of the document.
    virtual void setValue(const QString& group, const QString& key, const QVariant& value);

protected:
    QMap<QString, QMap<QString, QVariant>> pluginValues; // by group, then by key
};
