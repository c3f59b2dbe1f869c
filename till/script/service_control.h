#pragma once

#include "host/export.h"
#include "till/money/kopecks.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace till {

/// A server of the sandbox service, by the name that scripts know it by. A plain value.
struct ControlledServer {
    QString name;
    QUrl service;
    QUrl control;
};

/// A cheque as the service has it in its books. A plain value.
struct ServiceCheque {
    QString uid;
    QString kind;
    Kopecks amount = 0;
    Kopecks points = 0; // that paid for it
    bool cancelled = false;
    int conflicts = 0; // messages that told another end of it, and were refused
};

/// What a card has spent on a cheque and not got back, as the service has it. A plain value.
struct ServiceSpending {
    QString card;
    QString uid;
    Kopecks points = 0;
};

/// The control address of a sandbox service: its faults and its books. Throws `ScriptError` when a server does not
/// answer as it should. [cheque-thread] [blocks: some seconds at the longest]
class VANTIRO_HOST_API ServiceControl {
public:
    explicit ServiceControl(const QList<ControlledServer>& servers = {});

    [[nodiscard]] bool isEmpty() const;
    /// The server of the name; without a name the first one.
    [[nodiscard]] const ControlledServer& server(const std::optional<QString>& name) const;
    /// The name of the server of the address, or the address itself.
    [[nodiscard]] QString nameOf(const QString& address) const;

    void stop(const ControlledServer& server) const;
    void start(const ControlledServer& server) const;
    /// A fault as the sandbox names it, of one operation or of all, so many times or until it is cleared.
    void setFault(const ControlledServer& server, const QString& kind, const QString& operation,
                  std::optional<int> times, const QString& argument) const;
    void clearFaults(const ControlledServer& server) const;

    /// What the first server's service has booked.
    [[nodiscard]] QList<ServiceCheque> cheques() const;
    /// What the services of all servers have booked. Servers that are ends of the same service count as one.
    [[nodiscard]] QList<ServiceCheque> allCheques() const;
    [[nodiscard]] QList<ServiceSpending> spendings() const;
    /// The points on a card, in hundredths.
    [[nodiscard]] Kopecks balance(const QString& card) const;

private:
    [[nodiscard]] QJsonObject books() const;
    /// The books of each service, once.
    [[nodiscard]] QList<QJsonObject> allBooks() const;

    QList<ControlledServer> servers;
};

} // namespace till
