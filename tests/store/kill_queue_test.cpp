#include "tests/store/child_process.h"
#include "tests/store/kill_moments.h"
#include "tests/store/numbered_records.h"
#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/store/store.h"

#include <QJsonDocument>
#include <QSqlQuery>

#include <iostream>

using namespace Qt::StringLiterals;

namespace {

class QueueOfAKilledTill : public StoreTest {
protected:
    /// The numbers of the queued records after the given one, as the till finds them that is started next. Each record
    /// is checked to be whole.
    [[nodiscard]] QList<int> queuedAfter(int number) const
    {
        till::store::open(folder());
        QSqlQuery query = till::store::prepare(u"SELECT message FROM queue WHERE id > ? ORDER BY id"_s);
        query.addBindValue(number);
        till::store::execute(query);
        QList<int> numbers;
        while (query.next()) {
            const QJsonObject message = QJsonDocument::fromJson(query.value(0).toByteArray()).object();
            numbers.append(message.value(u"number"_s).toInt());
            EXPECT_TRUE(message == numberedMessage(numbers.constLast()));
        }
        query.finish();
        till::store::close();
        return numbers;
    }
};

[[nodiscard]] QList<int> sequence(int first, qsizetype count)
{
    QList<int> numbers;
    for (int number = first; number < first + static_cast<int>(count); ++number) {
        numbers.append(number);
    }
    return numbers;
}

} // namespace

TEST_F(QueueOfAKilledTill, HoldsEveryRecordThatWasAcceptedAndAtMostTheOneInFlight)
{
    std::cout << KillMoments::printed() << '\n';
    KillMoments moments;
    int queued = 0;
    int told = 0;
    int inFlight = 0;
    for (int kill = 0; kill < 60; ++kill) {
        SCOPED_TRACE(kill);
        ChildProcess child({ u"enqueue"_s, folder(), QString::number(queued + 1), u"0"_s });
        moments.killAtOne(child);
        ASSERT_FALSE(HasFailure());
        const QList<int> accepted = child.told();
        ASSERT_TRUE(accepted == sequence(queued + 1, accepted.size()));

        const QList<int> found = queuedAfter(queued);
        ASSERT_TRUE(found == sequence(queued + 1, found.size()));
        ASSERT_GE(found.size(), accepted.size());
        ASSERT_LE(found.size(), accepted.size() + 1);
        ASSERT_EQ(RawDatabase(file()).text(u"PRAGMA integrity_check"_s), "ok");
        inFlight += found.size() > accepted.size() ? 1 : 0;
        told += static_cast<int>(accepted.size());
        queued += static_cast<int>(found.size());
    }
    std::cout << "records: " << queued << ", in flight and there: " << inFlight << '\n';

    EXPECT_GE(told, 60);
    EXPECT_EQ(queuedAfter(0).size(), queued);
}

TEST_F(QueueOfAKilledTill, StoreThatWasBeingMadeIsMadeAnew)
{
    for (int kill = 0; kill < 20; ++kill) {
        const QString fresh = path(u"fresh%1"_s.arg(kill));
        ChildProcess child({ u"enqueue"_s, fresh, u"1"_s, u"0"_s });
        QThread::usleep(static_cast<unsigned long>(kill) * 1500);
        child.kill();
        till::store::open(fresh);
        enqueueText(u"after"_s);
        till::store::close();

        const RawDatabase raw(fresh + u"/till.sqlite"_s);
        EXPECT_EQ(raw.text(u"PRAGMA integrity_check"_s), "ok");
        EXPECT_GE(std::stoll(raw.text(u"SELECT count(*) FROM queue"_s)), child.told().size() + 1);
        EXPECT_EQ(raw.text(u"SELECT json_extract(message, '$.body') FROM queue ORDER BY id DESC LIMIT 1"_s), "after");
        EXPECT_EQ(modeOf(fresh), 0700);
    }
}
