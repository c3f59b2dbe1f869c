#pragma once

#include <QList>
#include <QString>

#include <string>

namespace faults {

/// What an exchange with the faulty server comes to.
enum class Exchange {
    unasked, // the request does not come in whole: the next server is asked
    lost, // it does, and there is no reply: the next server is asked
    rejected, // a reply of something in between: no connection, and nobody else is asked
    unusable, // a reply that cannot be read
    refused, // a fault of the service
    foreign, // a reply that can be read, but that is not the operation's
    answered, // as if there were no fault
};

/// What a ping takes the server for.
enum class Ping {
    down,
    up,
};

/// What the delivery of a queued message comes to.
enum class Delivery {
    waits, // nobody speaks for the service: the next server is asked
    wrong, // something replied, but not as the service does
    refused,
    delivered,
};

/// How long the faulty server keeps its caller.
enum class Wait {
    none,
    timeout,
};

/// One line of the table of faults.
struct ExpectedFault {
    const char* name;
    Exchange exchange;
    Ping ping;
    Delivery delivery;
    Wait wait = Wait::none;
};

/// The table of faults, and that of the operations that are asked by the plug-in: what the till sees of each.
[[nodiscard]] const QList<ExpectedFault>& expectedFaults();

struct ExpectedOperation {
    const char* name;
    const char* noConnection;
    const char* unusable;
    const char* refused;
    const char* foreign;
    const char* answered;
};

[[nodiscard]] const QList<ExpectedOperation>& expectedOperations();

/// All that is expected of one row: "outcome | server in use 1 | second server asked 1 times | -".
[[nodiscard]] std::string expectedOutcome(const ExpectedFault& fault, const QString& arrangement,
                                          const QString& operation);

}
