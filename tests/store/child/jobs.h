#pragma once

#include <QJsonObject>
#include <QString>

// What the child does, each with the store of a folder. All of them throw what the store throws.

/// Enqueues numbered messages, from `first` on, and tells each number on a line of its own after it has been accepted.
/// Without an end when `count` is 0.
void enqueueNumbered(const QString& folder, int first, int count);

/// Saves numbered versions of one document, without an end, and tells each as `enqueueNumbered` does.
void saveNumbered(const QString& folder, int first);

/// What this process reads of a stored document; empty when there is none.
[[nodiscard]] QJsonObject readDocument(const QString& folder, const QString& key);

/// Enqueues and saves while files may not grow beyond several sizes, and once more after each. Gives the texts of the
/// refusals, in order.
[[nodiscard]] QJsonObject fillDisk(const QString& folder);

/// Enqueues, opens and saves while the file may only be read, and once more afterwards. Gives the texts of the
/// refusals.
[[nodiscard]] QJsonObject closeFile(const QString& folder);

/// Tells a number on a line of its own, at once.
void tell(int number);
