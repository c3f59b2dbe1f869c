#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <chrono>

namespace till::diagnosis {

/// One entry of `hosts`. A plain value.
struct Server {
    qsizetype number = 1; // its place in `hosts`, from 1
    QString entry; // as configured; may hold credentials
    QUrl url; // as the plug-in reads the entry

    /// A complete address of http or https: anything else fails before it is sent.
    [[nodiscard]] bool isUsable() const;
    [[nodiscard]] bool isEncrypted() const;
    /// The server is this machine, so that nobody can listen on the way.
    [[nodiscard]] bool isLoopback() const;
    /// "Server 1 (https://host/)", or "Server 1" when nobody knows which part of the entry is a password.
    [[nodiscard]] QString title() const;
};

/// What the plug-in goes by when it asks the service. A plain value.
struct ServiceSettings {
    QList<Server> servers;
    std::chrono::seconds timeout { 0 }; // that is in force, never below 1
    QString user;
    QString password;

    [[nodiscard]] bool hasCredentials() const;
    /// The value of the header `Authorization`, which is sent with or without credentials.
    [[nodiscard]] QByteArray authorization() const;
    /// As long as a cashier waits when no server answers: each has its turn.
    [[nodiscard]] std::chrono::seconds longestWait() const;
};

/// From `Config`, with the plug-in's defaults. [cheque-thread]
[[nodiscard]] ServiceSettings configuredService();

} // namespace till::diagnosis
