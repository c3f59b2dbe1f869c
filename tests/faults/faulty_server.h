#pragma once

#include "tests/support/loopback_message.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <memory>

namespace faults {

/// A server that fails in one way. [any-thread]
class FaultyServer {
public:
    virtual ~FaultyServer();

    [[nodiscard]] virtual QUrl url() const = 0;
    /// How often a request of that action has come in whole.
    [[nodiscard]] virtual int asked(const QByteArray& action) const;
};

/// What a fault is made for. `good` is the body of the reply that a healthy service would give; `elsewhere` is an
/// address that nobody has reason to ask.
struct Order {
    QByteArray action; // of the requests that it befalls; others are answered well, if the server can answer at all
    QByteArray elsewhere;
};

using MakeAnswer = std::function<vantiro_test::Answer(const QByteArray& good, const Order& order)>;
using MakeServer = std::function<std::unique_ptr<FaultyServer>(const Order& order)>;

struct NamedFault {
    QString name;
    MakeServer make;
};

/// A fault of an HTTP server: what it answers to the requests that the fault befalls.
[[nodiscard]] NamedFault answering(const QString& name, const MakeAnswer& answer);

/// The faults before there is a request, those of the way a reply is sent, and those of what it says.
[[nodiscard]] QList<NamedFault> connectionFaults();
[[nodiscard]] QList<NamedFault> framingFaults();
[[nodiscard]] QList<NamedFault> replyFaults();

/// The names of all of them.
[[nodiscard]] QStringList faultNames();
/// The server with the fault of that name. "CutAfter" and "ResetAfter" with a number behind are faults too: the reply
/// of the healthy service ends after so many bytes. Throws `std::invalid_argument` for any other name.
[[nodiscard]] std::unique_ptr<FaultyServer> serverWith(const QString& fault, const Order& order);

/// The size of the whole healthy reply, in bytes.
[[nodiscard]] qsizetype sizeOfReply(const QByteArray& action);

}
