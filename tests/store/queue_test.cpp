#include "host/framework/db_queue_broker.h"
#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/store/store.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

class QueueOfTheTill : public StoreTest {
protected:
    QueueOfTheTill()
    {
        till::store::open(folder());
    }

    /// The message as it stands in the file.
    [[nodiscard]] QJsonObject onlyMessage() const
    {
        const QStringList found = RawDatabase(file()).rows(u"SELECT message FROM queue"_s);
        EXPECT_EQ(found.size(), 1);
        return QJsonDocument::fromJson(found.constFirst().toUtf8()).object();
    }
};

const QString numbered = u"SELECT id, json_extract(message, '$.body') FROM queue ORDER BY id"_s;

} // namespace

TEST_F(QueueOfTheTill, RecordsStandInTheOrderOfEnqueueing)
{
    for (const QString& text : { u"c"_s, u"a"_s, u"b"_s, u"a"_s }) {
        enqueueText(text);
    }

    EXPECT_EQ(RawDatabase(file()).text(numbered), "1|c 2|a 3|b 4|a");
}

TEST_F(QueueOfTheTill, NumbersAreNeverUsedTwice)
{
    enqueueText(u"one"_s);
    enqueueText(u"two"_s);
    runInStore(u"DELETE FROM queue WHERE id = 2"_s);
    enqueueText(u"three"_s);
    EXPECT_EQ(RawDatabase(file()).text(numbered), "1|one 3|three");

    runInStore(u"DELETE FROM queue"_s);
    till::store::close();
    till::store::open(folder());
    enqueueText(u"four"_s);
    EXPECT_EQ(RawDatabase(file()).text(numbered), "4|four");
}

TEST_F(QueueOfTheTill, EachRecordBelongsToItsQueue)
{
    DBQueueBroker().enqueue(u"vantiro"_s, {}, QString());
    DBQueueBroker().enqueue(u"other"_s, {}, u"extra"_s);

    EXPECT_EQ(RawDatabase(file()).rows(u"SELECT queue, extra FROM queue ORDER BY id"_s).join(u' ').toStdString(),
              "vantiro| other|extra");
}

TEST_F(QueueOfTheTill, NewRecordWaitsUntriedAndSaysWhenItCame)
{
    const QDateTime before = QDateTime::currentDateTimeUtc();
    enqueueText(u"one"_s);
    const QDateTime after = QDateTime::currentDateTimeUtc();
    const RawDatabase raw(file());

    EXPECT_EQ(raw.text(u"SELECT state, reason, attempts FROM queue"_s), "pending||0");
    const QString queuedAt = raw.rows(u"SELECT queued_at FROM queue"_s).constFirst();
    EXPECT_TRUE(queuedAt.endsWith(u'Z')) << queuedAt.toStdString();
    EXPECT_GE(QDateTime::fromString(queuedAt, Qt::ISODateWithMs), before);
    EXPECT_LE(QDateTime::fromString(queuedAt, Qt::ISODateWithMs), after);
}

TEST_F(QueueOfTheTill, MessageComesBackWhole)
{
    const QString body = u"<?xml version=\"1.0\"?>\n<Body><a b='1'>Ёлка &amp; «мишура» 🎄</a>\r\n\t</Body>\n"_s;
    const QJsonObject headers { { u"Authorization"_s, u"Basic a2Fzc2E6cGFzcw=="_s }, { u"SOAPAction"_s, u"\"x\""_s } };
    DBQueueBroker().enqueue(
        u"vantiro"_s, { { u"url"_s, u"https://user@shop/x?y=1#z"_s }, { u"headers"_s, headers }, { u"body"_s, body } },
        QString());
    const QJsonObject message = onlyMessage();

    EXPECT_EQ(message.keys().join(u' ').toStdString(), "body headers url");
    EXPECT_EQ(message.value(u"body"_s).toString().toUtf8().toStdString(), body.toUtf8().toStdString());
    EXPECT_EQ(message.value(u"headers"_s).toObject(), headers);
    EXPECT_EQ(message.value(u"url"_s).toString().toStdString(), "https://user@shop/x?y=1#z");
}

TEST_F(QueueOfTheTill, EveryCharacterOfABodyComesBack)
{
    QString body;
    for (char16_t unit = 0; unit < 0xd800; ++unit) {
        body.append(QChar(unit));
    }
    DBQueueBroker().enqueue(u"vantiro"_s, { { u"body"_s, body } }, QString());

    EXPECT_TRUE(onlyMessage().value(u"body"_s).toString() == body);
}

TEST_F(QueueOfTheTill, ValuesOfEachTypeComeBack)
{
    const QJsonObject message { { u"none"_s, QJsonValue::Null },
                                { u"truth"_s, true },
                                { u"number"_s, 0.1 },
                                { u"list"_s, QJsonArray { 1, u"x"_s, QJsonObject() } } };
    DBQueueBroker().enqueue(u"vantiro"_s, message, QString());

    EXPECT_EQ(onlyMessage(), message);
}

TEST_F(QueueOfTheTill, RecordIsThereForAnotherConnectionOnceItIsAccepted)
{
    const RawDatabase raw(file());
    for (int count = 1; count <= 3; ++count) {
        enqueueText(u"one"_s);
        EXPECT_EQ(raw.text(u"SELECT count(*) FROM queue"_s), std::to_string(count));
    }
}

TEST_F(QueueOfTheTill, LargeMessagesComeBackWhole)
{
    const QString body(10'000'000, u'ж');
    enqueueText(body);

    EXPECT_TRUE(onlyMessage().value(u"body"_s).toString() == body);
}
