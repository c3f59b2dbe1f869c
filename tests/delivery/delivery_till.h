#pragma once

#include "host/facilities/current_time.h"
#include "tests/support/log_recorder.h"
#include "till/delivery/delivery.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <string>

/// A clock that is set by hand. While one of these lives, it is what `MockFactory<CurrentTime>` gives out.
/// [cheque-thread]
class ScriptedTime : public CurrentTime {
public:
    ScriptedTime();
    ~ScriptedTime() override;

    /// From the present time on; backwards with less than nothing.
    void advance(std::chrono::milliseconds time);
    [[nodiscard]] QDateTime getCurrentTime() const override;

private:
    QDateTime moment;
};

/// A till whose real store holds messages. Its folder goes with it. [cheque-thread]
class DeliveryTill : public testing::Test {
protected:
    DeliveryTill();
    ~DeliveryTill() override;

    /// Queues a message to the server, as the plug-in writes them; its body is `<e>text</e>`.
    static void enqueue(const QString& text, const QString& server = QStringLiteral("http://first/"));
    /// Queues this text as it stands.
    static void enqueueRaw(const QString& message);
    /// The queue in its order, one message a line: "1 pending", or "2 refused, 1 wrong: reason".
    [[nodiscard]] static std::string queue();
    /// The time before which the oldest pending message is left alone, from the time on, in milliseconds; -1 for none.
    [[nodiscard]] static qint64 waits(const QDateTime& from);

    void reopen();
    static void closeStore();

private:
    QTemporaryDir place;

protected:
    LogRecorder log;
};

/// The reply that takes a message out of the queue.
extern const QByteArray goodReply;
[[nodiscard]] QByteArray faultReply(const QByteArray& text);
