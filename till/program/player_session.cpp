#include "till/program/player_session.h"

#include "host/facilities/config.h"
#include "host/facilities/exceptions.h"
#include "till/desk/desk_error.h"
#include "till/printing/slip_folder.h"

#include <QFile>

#include <cstdio>

namespace till {

namespace {

    [[nodiscard]] Delivery::Settings deliverySettings()
    {
        Delivery::Settings settings;
        Config* const config = Singleton<Config>::get();
        for (const QString& server :
             config->getString(QStringLiteral("Vantiro:hosts"), QString()).split(u',', Qt::SkipEmptyParts)) {
            settings.servers.append(QUrl(server));
        }
        settings.timeout = config->getInt(QStringLiteral("Till:deliveryTimeout"), 30);
        return settings;
    }

} // namespace

PlayerSession::PlayerSession(const PlayOptions& options, std::function<std::optional<QString>(const QString&)> ask,
                             std::function<void()> crash, qsizetype firstStep)
try : till(options.places)
    , lock(options.places.dataFolder())
    , plugin(options.places.pluginFile())
    , screen(options.quiet ? [](const QString&) { } : writeLine, std::move(ask))
    , delivery(deliverySettings())
    , service(options.servers)
    , answers(options.answers)
{
    if (answers) {
        answers->step(firstStep);
        answerExchanges([this](ExchangeEvent& event) { answers->answer(event); });
    }
    if (!options.trace.isEmpty()) {
        recorder.emplace(options.trace);
        recorder->step(firstStep);
    }
    setSlipFolder(Singleton<Config>::get()->getString(QStringLiteral("Till:slips"), QString()));
    thePlayer.emplace(Player::Parts { checkout, screen, delivery, service, std::move(crash), options.showWire,
                                     [this](const ExchangeEvent& event) {
                                         if (recorder) {
                                             recorder->exchanged(event);
                                         }
                                     } });
    const bool restored = checkout.restore();
    if (restored && recorder && firstStep == 0) { // whoever plays it back has no such cheque
        QFile::remove(options.trace);
        throw CommandError(QStringLiteral("a trace begins without an open cheque; close or cancel cheque %1 first")
                               .arg(checkout.document()->getChequeNumber()));
    }
    if (recorder && !screen.shown().isEmpty()) {
        recorder->said(screen.shown(), screen.printed());
    }
} catch (const DeskError& error) {
    throw CommandError(error.text());
} catch (const ScriptError& error) {
    throw CommandError(error.text());
} catch (const BasicException& failure) {
    throw CommandError(failure.tr().ru());
}

PlayerSession::~PlayerSession()
{
    answerExchanges({});
}

void PlayerSession::play(const ScriptLine& line, qsizetype step)
{
    const QString& verb = line.words.constFirst();
    if (answers) {
        answers->step(step);
    }
    if (recorder) {
        recorder->step(step);
    }
    // Nobody's books are there to look at, and no service to control.
    const bool needsService = verb == u"server" || line.words.value(1) == u"books";
    try {
        if (!answers || !needsService) {
            thePlayer->play(line);
        }
    } catch (const ScriptError& error) {
        if (recorder && !needsService) {
            recorder->failed(error.text());
        }
        throw;
    }
    const bool looksBack = verb == u"expect" || verb == u"show"; // what was said before still stands
    if (recorder && !needsService && !looksBack) {
        recorder->said(screen.shown(), screen.printed());
    }
}

void PlayerSession::deliverBeside()
{
    worker.emplace(deliverySettings());
}

void PlayerSession::wakeDelivery()
{
    if (worker) {
        worker->wake();
    }
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
