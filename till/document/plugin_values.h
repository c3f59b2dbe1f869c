#pragma once

#include "host/document/plugin_data.h"
#include "host/export.h"

#include <QMap>
#include <QString>
#include <QVariant>

namespace till {

/// All that plug-ins have stored with an object, by group and key. Plug-ins reach single values only; the till itself
/// has to list them, to write them out, and to drop a group. Valid for as long as `data` is. [cheque-thread]
[[nodiscard]] VANTIRO_HOST_API QMap<QString, QMap<QString, QVariant>>& pluginValuesOf(PluginData& data);

}
