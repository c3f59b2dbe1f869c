#include "till/program/doctor_checks.h"

#include "till/facilities/config_file.h"
#include "till/framework/contract.h"
#include "till/program/doctor_config.h"
#include "till/program/doctor_data.h"
#include "till/program/doctor_plugin.h"
#include "till/program/doctor_server.h"

#include <QFileInfo>

#include <exception>

namespace till::diagnosis {

bool examine(const Places& places, const std::function<void(const Finding&)>& tell)
{
    bool isSound = true;
    const auto note = [&](const Finding& finding) {
        isSound = isSound && finding.verdict != Verdict::failed;
        tell(finding);
    };
    const auto run = [&](const QString& name, const std::function<Findings()>& check) {
        try {
            for (const Finding& finding : check()) {
                note(finding);
            }
        } catch (const std::exception& failure) {
            note(failed(QStringLiteral("The check of %1 broke off: %2.").arg(name, QString::fromUtf8(failure.what()))));
        }
    };

    takeChequeThread();
    const QString configuration = QFileInfo(places.configFile()).absoluteFilePath();
    setConfigFile(configuration);
    const ServiceSettings settings = configuredService();

    run(QStringLiteral("the configuration"), [&] {
        return checkConfigFile(configuration, !places.config.isEmpty()) + checkValues(settings)
            + checkAddresses(settings);
    });
    run(QStringLiteral("the data folder"),
        [&] { return checkDataFolder(QFileInfo(places.dataFolder()).absoluteFilePath()); });
    for (const Server& server : settings.servers) {
        if (server.isUsable()) {
            run(server.title(), [&] {
                checkServer(server, settings, note);
                return Findings();
            });
        }
    }
    run(QStringLiteral("the plug-in"), [&] { return checkPlugin(places, settings.longestWait()); });
    return isSound;
}

} // namespace till::diagnosis
