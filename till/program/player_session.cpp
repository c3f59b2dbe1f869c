#include "till/program/player_session.h"

#include "host/facilities/config.h"
#include "host/facilities/exceptions.h"
#include "till/desk/desk_error.h"
#include "till/printing/slip_folder.h"

#include <cstdio>

namespace till {

namespace {

    [[nodiscard]] Delivery::Settings deliverySettings()
    {
        Delivery::Settings settings;
        Config* const config = Singleton<Config>::get();
        for (const QString& server : config->getString(QStringLiteral("Vantiro:hosts"), QString()).split(u',', Qt::SkipEmptyParts)) {
            settings.servers.append(QUrl(server));
        }
        settings.timeout = config->getInt(QStringLiteral("Till:deliveryTimeout"), 30);
        return settings;
    }

} // namespace

PlayerSession::PlayerSession(const PlayOptions& options, std::function<std::optional<QString>(const QString&)> ask,
                             std::function<void()> crash)
try : till(options.places)
    , plugin(options.places.pluginFile())
    , screen(writeLine, std::move(ask))
    , delivery(deliverySettings())
    , service(options.servers)
{
    setSlipFolder(Singleton<Config>::get()->getString(QStringLiteral("Till:slips"), QString()));
    thePlayer.emplace(Player::Parts { checkout, screen, delivery, service, std::move(crash), options.showWire });
    static_cast<void>(checkout.restore());
} catch (const DeskError& error) {
    throw CommandError(error.text());
} catch (const BasicException& failure) {
    throw CommandError(failure.tr().ru());
}

void PlayerSession::deliverBeside()
{
    worker.emplace(deliverySettings());
}

Player& PlayerSession::player()
{
    return *thePlayer;
}

void writeLine(const QString& line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace till
