#pragma once

#include "host/framework/basic_plugin.h"

#include <QPluginLoader>
#include <QString>

#include <memory>
#include <stdexcept>

namespace till {

/// The command cannot be carried out. The text is one sentence for the person at the terminal, which says what to do.
class CommandError : public std::runtime_error {
public:
    explicit CommandError(const QString& sentence);
};

/// Where a command finds what it works with. A plain value; empty paths stand for the defaults.
struct Places {
    QString config; // default: vantiro-till.ini in the data folder
    QString data; // default: the user's data folder
    QString plugin; // default: beside the program, or where it was installed
    QString logLevel = QStringLiteral("info");

    [[nodiscard]] QString dataFolder() const;
    [[nodiscard]] QString configFile() const;
    [[nodiscard]] QString pluginFile() const;
};

/// For a command that looks at what a till has kept: throws `CommandError` when there is none in the data folder.
void requireTill(const Places& places);

/// The till around a command: configuration, log and store, and nothing of the plug-in. Throws `CommandError`.
/// [cheque-thread]
class OpenTill {
public:
    explicit OpenTill(const Places& places);
    ~OpenTill();
    OpenTill(const OpenTill&) = delete;
    OpenTill& operator=(const OpenTill&) = delete;
};

/// The plug-in, loaded from its library and initialized, for as long as this lives. Throws `CommandError`.
/// [cheque-thread]
class LoadedPlugin {
public:
    explicit LoadedPlugin(const QString& file);
    ~LoadedPlugin();
    LoadedPlugin(const LoadedPlugin&) = delete;
    LoadedPlugin& operator=(const LoadedPlugin&) = delete;

private:
    QPluginLoader loader;
    BasicPlugin* plugin = nullptr; // owned by the library
};

} // namespace till
