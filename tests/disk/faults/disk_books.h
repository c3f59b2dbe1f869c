#pragma once

#include "tests/disk/faults/child_run.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <string>

/// What a store holds, in texts that are the same from run to run. A plain value.
struct DiskBooks {
    QStringList documents; // "1 closed: " and all of it, in the order of their opening
    QStringList shapes; // "1: lines 2, off 1, payments 1, card 1", of the same documents
    QStringList queue; // the bodies of the messages
    QStringList states; // "1 closed"
    std::string damage; // of the database, empty when there is none
    QMap<QString, QString> ended; // of what has lines: the sum, by the UUID that the service knows it by

    /// What the service knows after this, all runs of the till together: nothing is missing that the till has ended,
    /// nothing is there that it has not ended, and each cheque has one value. Empty when it is so.
    [[nodiscard]] std::string accountsFor(const QStringList& told) const;
};

/// Opens the store as the next start of the till does.
[[nodiscard]] DiskBooks readBooks(const QString& folder);
