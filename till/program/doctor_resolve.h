#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

namespace till::diagnosis {

/// What the system's name service says of a host. A plain value.
struct Resolution {
    bool isInTime = false;
    QString failure; // the system's words; empty when there are addresses
    QStringList addresses;
};

/// Gives up waiting after the time, whatever the system goes on doing. [any-thread] [blocks: the time at the longest]
[[nodiscard]] Resolution resolve(const QString& host, std::chrono::seconds time);

} // namespace till::diagnosis
