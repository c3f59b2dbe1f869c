#pragma once

#include "host/export.h"
#include "host/facilities/singleton.h"

#include <QString>

/// The host's configuration. Keys have the form `Plugin:name`. Plug-ins read it once, while they start, and a change
/// needs a restart. No operation fails: a key that is not configured, or whose value cannot be read as the wanted
/// type, gives the default. None blocks. [any-thread]
class VANTIRO_HOST_API Config {
public:
    Config();
    virtual ~Config();

    [[nodiscard]] virtual QString getString(const QString& key, const QString& defaultValue);
    [[nodiscard]] virtual int getInt(const QString& key, int defaultValue);
    [[nodiscard]] virtual bool getBool(const QString& key, bool defaultValue);

private:
    Q_DISABLE_COPY(Config)
};

extern template class VANTIRO_HOST_API Singleton<Config>;
