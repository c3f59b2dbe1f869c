#include "tests/foreign/foreign_service.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonDocument>
#include <QProcessEnvironment>
#include <QThread>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace {

/// A TCP socket and the loopback address with that port.
class LoopbackSocket {
public:
    explicit LoopbackSocket(int port)
        : descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<in_port_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    }

    ~LoopbackSocket()
    {
        ::close(descriptor);
    }

    /// The port that the system has given, 0 for none.
    [[nodiscard]] int bindToFreePort()
    {
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(descriptor, generic, size) != 0 || ::getsockname(descriptor, generic, &size) != 0) {
            return 0;
        }
        return ntohs(address.sin_port);
    }

    [[nodiscard]] bool connects() const
    {
        return ::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }

private:
    Q_DISABLE_COPY_MOVE(LoopbackSocket)

    int descriptor;
    sockaddr_in address {};
};

}

ForeignService::ForeignService()
{
    // Between the choice of the port and its use another program may take it; then the service ends at once.
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (start()) {
            return;
        }
    }
    ADD_FAILURE() << "the foreign service does not start: " << errorOutput().toStdString();
}

bool ForeignService::start()
{
    port = LoopbackSocket(0).bindToFreePort();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VANTIRO_WSDL"), QStringLiteral(VANTIRO_SERVICE_WSDL));
    environment.insert(QStringLiteral("VANTIRO_RECORD"), folder.filePath(QStringLiteral("understood")));
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(folder.filePath(QStringLiteral("errors")));
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.start(QStringLiteral(VANTIRO_PHP),
                  { QStringLiteral("-d"), QStringLiteral("display_errors=0"), QStringLiteral("-d"),
                    QStringLiteral("log_errors=1"), QStringLiteral("-S"),
                    QStringLiteral("127.0.0.1:") + QString::number(port), QStringLiteral(VANTIRO_FOREIGN_SERVICE) });

    const QDeadlineTimer deadline(10'000);
    while (!deadline.hasExpired() && !process.waitForFinished(20) && process.state() != QProcess::NotRunning) {
        if (LoopbackSocket(port).connects()) {
            return true;
        }
    }
    process.kill();
    process.waitForFinished();
    return false;
}

ForeignService::~ForeignService()
{
    process.kill();
    process.waitForFinished();
}

bool ForeignService::isRunning() const
{
    return process.state() == QProcess::Running;
}

QString ForeignService::address() const
{
    return QStringLiteral("http://127.0.0.1:%1/").arg(port);
}

QString ForeignService::rawAddress() const
{
    return address() + QStringLiteral("raw");
}

QList<QJsonObject> ForeignService::takeUnderstood()
{
    QFile record(folder.filePath(QStringLiteral("understood")));
    QList<QJsonObject> all;
    if (record.open(QIODevice::ReadOnly)) {
        while (!record.atEnd()) {
            all.append(QJsonDocument::fromJson(record.readLine()).object());
        }
    }
    const qsizetype known = std::exchange(taken, all.size());
    return all.mid(known);
}

QByteArray ForeignService::errorOutput() const
{
    QFile errors(folder.filePath(QStringLiteral("errors")));
    return errors.open(QIODevice::ReadOnly) ? errors.readAll() : QByteArray();
}
