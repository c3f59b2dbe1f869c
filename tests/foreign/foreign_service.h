#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// The service of `service.php` in a process of its own, on a free port of the loopback address. The process ends with
/// this object, and with the test program whatever becomes of that. [cheque-thread]
class ForeignService {
public:
    /// Returns when the service takes connections. Fails the test when it does not within ten seconds; `isRunning`
    /// tells. [blocks]
    ForeignService();
    ~ForeignService();

    [[nodiscard]] bool isRunning() const;

    /// Where replies have the form of the real service.
    [[nodiscard]] QString address() const;
    /// Where replies are as PHP's SoapServer makes them.
    [[nodiscard]] QString rawAddress() const;

    /// What the service has understood since the last call of this, one object for each request.
    [[nodiscard]] QList<QJsonObject> takeUnderstood();

    /// What the process has written to its error output, for people.
    [[nodiscard]] QByteArray errorOutput() const;

private:
    Q_DISABLE_COPY_MOVE(ForeignService)

    [[nodiscard]] bool start();

    QTemporaryDir folder;
    QProcess process;
    int port = 0;
    qsizetype taken = 0;
};
