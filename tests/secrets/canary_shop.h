#pragma once

#include "tests/secrets/secret_search.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <string>

/// A shop whose user and password are canaries: whatever its programs write lies below one folder, what they say too.
/// The tests look for the canaries there. They belong into `config/till.ini` and, for the service, into
/// `service/rules.yaml`. [cheque-thread]
class CanaryShop : public testing::Test {
protected:
    CanaryShop();
    ~CanaryShop() override;

    /// Starts both ends of the service.
    void startService();
    /// Writes the configuration of the till, with these servers.
    void configure(const QStringList& hosts);
    /// Runs the till on the data folder, with the log at level trace; what it says is kept. Returns its exit status.
    int till(const QStringList& arguments, const QByteArray& input = {});
    /// Plays the script against the service, with all that goes over the wire shown.
    int play(const QByteArray& script);
    [[nodiscard]] QString path(const QString& name) const;
    [[nodiscard]] QString write(const QString& name, const QByteArray& content) const;
    /// All that the last run of the till has said.
    [[nodiscard]] std::string said() const;

    /// Where the canaries are, but for the two files where they belong: "till/till.sqlite", one a line.
    [[nodiscard]] std::string leaks() const;
    [[nodiscard]] std::string open() const;
    /// A sandbox service that the scripts may control.
    [[nodiscard]] QStringList sandboxes() const;
    [[nodiscard]] QStringList hosts() const;

    static inline const QByteArray user = "kanareika-7f3a9c";
    static inline const QByteArray password = "p+a55/w0rd<9e2>&so%on";
    const SecretSearch search { { { QStringLiteral("user"), user }, { QStringLiteral("password"), password } } };

private:
    struct End {
        QString name;
        QString service;
        QString control;
        std::unique_ptr<QProcess> process;
    };

    void startEnd(const QString& name);

    QTemporaryDir folder;
    std::vector<End> ends;
    int runs = 0;
};
