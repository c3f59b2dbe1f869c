#pragma once

#include <QString>
#include <QUrl>

namespace vantiro_test {

/// A port of 127.0.0.1 that was free and belongs to this object as long as it lives. A port that cannot be had throws
/// `std::system_error`.
class LoopbackPort {
public:
    enum class Kind {
        closed,
        listening,
    };

    explicit LoopbackPort(Kind kind);
    ~LoopbackPort();
    Q_DISABLE_COPY_MOVE(LoopbackPort)

    [[nodiscard]] quint16 number() const;
    /// The descriptor of the socket, owned by this object.
    [[nodiscard]] int socket() const;
    [[nodiscard]] QUrl url(const QString& path = QStringLiteral("/")) const;

private:
    int descriptor = -1;
    quint16 portNumber = 0;
};

/// A port that refuses every connection.
class ClosedPort : public LoopbackPort {
public:
    ClosedPort();
};

/// A port where connections are made, but nobody ever reads or writes.
class DeafPort : public LoopbackPort {
public:
    DeafPort();
};

}
