#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <string>

/// A place for one store. Nothing is open or made at first; afterwards the store is closed and the place is gone.
class StoreTest : public ::testing::Test {
protected:
    StoreTest();
    ~StoreTest() override;

    /// What stands under the name in the test's own place.
    [[nodiscard]] QString path(const QString& name) const;
    /// The folder of the store, not made yet.
    [[nodiscard]] QString folder() const;
    [[nodiscard]] QString file() const;
    [[nodiscard]] QString journal() const;

private:
    QTemporaryDir place;
};

/// The Russian text of the `BasicException` that the call ends with; "(none)" when it ends without.
[[nodiscard]] std::string refusal(const std::function<void()>& call);

/// Runs a statement on this thread's connection.
void runInStore(const QString& statement);

/// Adds a message with one text to the queue "vantiro".
void enqueueText(const QString& text);

/// The permission bits, -1 when there is no such entry.
[[nodiscard]] int modeOf(const QString& path);
void setMode(const QString& path, unsigned int mode);
[[nodiscard]] QByteArray bytesOf(const QString& path);
void writeBytes(const QString& path, const QByteArray& bytes);
