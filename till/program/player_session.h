#pragma once

#include "till/delivery/delivery.h"
#include "till/delivery/delivery_worker.h"
#include "till/desk/checkout.h"
#include "till/program/commands.h"
#include "till/program/folder_lock.h"
#include "till/program/surroundings.h"
#include "till/script/player.h"
#include "till/script/screen.h"

#include <functional>
#include <memory>
#include <optional>

namespace till {

/// Everything that a script or a shell works with, put together: the till, the plug-in, the checkout and the player. A
/// document that was open when the till ended last time is brought back. Throws `CommandError`. [cheque-thread]
class PlayerSession {
public:
    /// `firstStep` is where a trace goes on.
    PlayerSession(const PlayOptions& options, std::function<std::optional<QString>(const QString&)> ask,
                  std::function<void()> crash, qsizetype firstStep = 0);

    ~PlayerSession();
    PlayerSession(const PlayerSession&) = delete;
    PlayerSession& operator=(const PlayerSession&) = delete;

    [[nodiscard]] Player& player();
    /// Carries out a line of a script, and writes it down when a trace is asked for. Throws as the player does.
    void play(const ScriptLine& line, qsizetype step);
    /// From now on the queue is delivered beside the work, as in a shop.
    void deliverBeside();
    /// A line may have queued a message: what is due goes out now and not at the next look.
    void wakeDelivery();

private:
    OpenTill till;
    FolderLock lock;
    LoadedPlugin plugin;
    Screen screen;
    Checkout checkout;
    Delivery delivery;
    ServiceControl service;
    std::shared_ptr<TraceAnswers> answers;
    std::optional<TraceRecorder> recorder;
    std::optional<Player> thePlayer;
    std::optional<DeliveryWorker> worker; // ends first: it uses the store
};

/// Writes the line to standard output at once: a till that is killed has said all that it has said.
void writeLine(const QString& line);

} // namespace till
