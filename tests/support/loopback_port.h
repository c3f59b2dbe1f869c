#pragma once

#include <QString>
#include <QUrl>

namespace vantiro_test {

/// A free port of 127.0.0.1 that belongs to nobody else as long as this object lives. It refuses every connection until
/// `listen` is called. A port that cannot be had throws `std::system_error`.
class LoopbackPort {
public:
    LoopbackPort();
    ~LoopbackPort();
    Q_DISABLE_COPY_MOVE(LoopbackPort)

    /// From now on connections are made, although nobody reads or writes.
    void listen();

    [[nodiscard]] quint16 number() const;
    /// The descriptor of the socket, owned by this object.
    [[nodiscard]] int socket() const;
    [[nodiscard]] QUrl url(const QString& path = QStringLiteral("/")) const;

private:
    int descriptor = -1;
    quint16 portNumber = 0;
};

/// A port that refuses every connection.
using ClosedPort = LoopbackPort;

/// A port where connections are made, but nobody ever reads or writes.
class DeafPort : public LoopbackPort {
public:
    DeafPort();
};

}
