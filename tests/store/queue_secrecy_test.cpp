#include "host/framework/db_queue_broker.h"
#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "tests/support/log_recorder.h"
#include "till/store/store.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

const QString credentials = u"Basic c2VjcmV0LXVzZXI6c2VjcmV0LXdvcmQ="_s;

class QueueSecrecy : public StoreTest {
protected:
    QueueSecrecy()
    {
        till::store::open(folder());
    }

    /// How often the credentials stand in the files of the store.
    [[nodiscard]] qsizetype copies() const
    {
        qsizetype count = 0;
        for (const QFileInfo& entry : QDir(folder()).entryInfoList(QDir::Files | QDir::Hidden)) {
            count += bytesOf(entry.filePath()).count(credentials.toUtf8());
        }
        return count;
    }

    static void enqueueCredentials(int times)
    {
        runInStore(u"BEGIN"_s);
        for (int time = 0; time < times; ++time) {
            DBQueueBroker().enqueue(u"vantiro"_s,
                                    { { u"headers"_s, QJsonObject { { u"Authorization"_s, credentials } } },
                                      { u"body"_s, QString(500 * time, u'x') } },
                                    QString());
        }
        runInStore(u"COMMIT"_s);
    }
};

} // namespace

TEST_F(QueueSecrecy, DeletedMessageIsGoneFromTheBytesOfTheStore)
{
    enqueueCredentials(20);
    ASSERT_GE(copies(), 20);
    runInStore(u"DELETE FROM queue"_s);

    EXPECT_EQ(copies(), 0);
    EXPECT_EQ(bytesOf(journal()).size(), 0);
}

TEST_F(QueueSecrecy, DeletedMessageIsGoneWhileOthersStay)
{
    enqueueCredentials(20);
    runInStore(u"DELETE FROM queue WHERE id % 2 = 0"_s);

    EXPECT_EQ(copies(), 10);
}

TEST_F(QueueSecrecy, BytesWouldStayInAStoreThatDoesNotOverwrite)
{
    enqueueCredentials(20);
    RawDatabase raw(file());
    raw.run(u"PRAGMA secure_delete=OFF"_s);
    raw.run(u"DELETE FROM queue"_s);

    EXPECT_GT(copies(), 0);
}

TEST_F(QueueSecrecy, NeitherLogNorRefusalShowsAMessage)
{
    const LogRecorder log;
    enqueueCredentials(1);
    RawDatabase(file()).run(
        u"CREATE TRIGGER refuse BEFORE INSERT ON queue BEGIN SELECT raise(ABORT, 'no more'); END"_s);
    const std::string text = refusal([] { enqueueCredentials(1); });

    EXPECT_EQ(text, "Ошибка базы данных кассы: no more Unable to fetch row");
    EXPECT_EQ(log.lines().join(u'\n').contains(credentials), false);
}
