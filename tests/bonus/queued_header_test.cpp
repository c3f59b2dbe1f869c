#include "tests/bonus/bonus_client.h"
#include "tests/support/log_recorder.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/scripted_queue.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

// A record waits on disk as JSON, and whoever delivers it knows nothing but what it says.

namespace {

/// The message that is queued for an offline accrual of the sample cheque, after it has been written out and read back.
QJsonObject storedMessage(BonusClient& client)
{
    const ScriptedQueue queue;
    const LogRecorder log;
    client.offlineAccrual(sample::cheque(EDocumentType::sale), {}, {}, {});
    EXPECT_EQ(queue.records().size(), 1);
    const QByteArray written = QJsonDocument(queue.records().constFirst().message).toJson(QJsonDocument::Compact);
    return QJsonDocument::fromJson(written).object();
}

}

TEST(QueuedHeader, IsTextWhateverItsCharacters)
{
    BonusClient client;
    client.setAuthorizationHeader(QStringLiteral("Basic касса № 1 \"100%1\" \U0001F600"));

    const QJsonObject headers = storedMessage(client).value(QStringLiteral("headers")).toObject();

    EXPECT_EQ(readable(headers.value(QStringLiteral("Authorization")).toString()),
              "Basic касса № 1 \"100%1\" \U0001F600");
}

TEST(QueuedBody, SurvivesTheDisk)
{
    BonusClient client;

    const QJsonObject message = storedMessage(client);

    const QString body = message.value(QStringLiteral("body")).toString();
    EXPECT_TRUE(body.startsWith(QStringLiteral("<soapenv:Envelope "))) << readable(body);
    EXPECT_TRUE(body.endsWith(QStringLiteral("</soapenv:Envelope>\n"))) << readable(body);
    EXPECT_TRUE(
        body.contains(QStringLiteral("<tem:cheque><![CDATA[<?xml version=\"1.0\" encoding=\"UTF-8\"?><Cheque ")))
        << readable(body);
}
