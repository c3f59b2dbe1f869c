#include "till/program/surroundings.h"

#include "host/facilities/exceptions.h"
#include "till/facilities/config_file.h"
#include "till/facilities/log_setup.h"
#include "till/framework/contract.h"
#include "till/store/store.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <optional>

namespace till {

namespace {

    [[nodiscard]] std::optional<LogLevel> levelOf(const QString& name)
    {
        const QStringList names { QStringLiteral("trace"), QStringLiteral("debug"), QStringLiteral("info"),
                                  QStringLiteral("warn"), QStringLiteral("error") };
        const qsizetype index = names.indexOf(name);
        return index < 0 ? std::nullopt : std::optional(static_cast<LogLevel>(index));
    }

} // namespace

CommandError::CommandError(const QString& sentence)
    : std::runtime_error(sentence.toStdString())
{
}

QString Places::dataFolder() const
{
    return data.isEmpty()
        ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/vantiro-till")
        : data;
}

QString Places::configFile() const
{
    return config.isEmpty() ? dataFolder() + QStringLiteral("/vantiro-till.ini") : config;
}

QString Places::pluginFile() const
{
    if (!plugin.isEmpty()) {
        return QFileInfo(plugin).absoluteFilePath(); // a relative one would be looked for in Qt's folders
    }
    // As it was built, and as it is installed.
    const QDir program(QCoreApplication::applicationDirPath());
    for (const QString& place :
         { QStringLiteral("../../front/libvantiro.so"), QStringLiteral("../lib/vantiro/libvantiro.so"),
           QStringLiteral(VANTIRO_PLUGIN_INSTALL_FILE) }) {
        if (const QString file = program.filePath(place); QFileInfo::exists(file)) {
            return QFileInfo(file).canonicalFilePath();
        }
    }
    throw CommandError(
        QStringLiteral("the plug-in libvantiro.so is not where it is installed; name it with --plugin FILE"));
}

void requireTill(const Places& places)
{
    const QDir folder(places.dataFolder());
    // A folder that nobody may look into is told of when it is opened.
    const bool isReadable = !folder.exists() || QFileInfo(folder.path()).isReadable();
    if (isReadable && !folder.exists(QStringLiteral("till.sqlite"))) {
        throw CommandError(
            QStringLiteral("there is no till in %1; name its folder with --data DIR").arg(folder.path()));
    }
}

OpenTill::OpenTill(const Places& places)
{
    takeChequeThread();
    if (!places.config.isEmpty() && !QFileInfo(places.config).isReadable()) {
        throw CommandError(
            QStringLiteral("the configuration %1 cannot be read; name another with --config FILE").arg(places.config));
    }
    const std::optional<LogLevel> level = levelOf(places.logLevel);
    if (!level) {
        throw CommandError(
            QStringLiteral("there is no log level \"%1\"; use trace, debug, info, warn or error").arg(places.logLevel));
    }
    try {
        store::open(places.dataFolder());
    } catch (const BasicException& failure) {
        throw CommandError(QStringLiteral("the data folder %1 cannot be used (%2); name another with --data DIR")
                               .arg(places.dataFolder(), failure.tr().ru()));
    }
    setUpLogging({ .file = QDir(places.dataFolder()).filePath(QStringLiteral("till.log")),
                   .console = false,
                   .threshold = *level });
    setConfigFile(QFileInfo::exists(places.configFile()) ? places.configFile() : QString());
}

OpenTill::~OpenTill()
{
    store::close();
}

LoadedPlugin::LoadedPlugin(const QString& file)
    : loader(file)
{
    if (!QFileInfo::exists(file)) {
        throw CommandError(QStringLiteral("there is no plug-in %1; name it with --plugin FILE").arg(file));
    }
    QObject* const instance = loader.instance();
    if (instance == nullptr) {
        // Qt's own words tell of a plug-in that was built with a newer Qt, or that lacks a symbol.
        throw CommandError(
            QStringLiteral("the plug-in cannot be loaded: %1; it must be built with this till's Qt %2 or an "
                           "older minor version")
                .arg(loader.errorString(), QString::fromLatin1(qVersion())));
    }
    plugin = qobject_cast<BasicPlugin*>(instance);
    if (plugin == nullptr) {
        throw CommandError(
            QStringLiteral("%1 is a Qt plug-in, but none of this till; name libvantiro.so with --plugin FILE")
                .arg(file));
    }
    if (!plugin->init()) {
        plugin->deinit(); // the contract's way out
        throw CommandError(QStringLiteral("the plug-in does not start: another loyalty system has its card mode"));
    }
}

LoadedPlugin::~LoadedPlugin()
{
    plugin->deinit();
    loader.unload();
}

} // namespace till
