#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/store/store.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using ::testing::StartsWith;

namespace {

class StoreThreads : public StoreTest {
protected:
    StoreThreads()
    {
        till::store::open(folder());
    }
};

const QString bodies = u"SELECT json_extract(message, '$.body') FROM queue ORDER BY id"_s;

} // namespace

TEST_F(StoreThreads, ManyAtOnceLoseNothing)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int number = 0; number < 10; ++number) {
                enqueueText(u"%1-%2"_s.arg(thread).arg(number, 2, 10, QChar(u'0')));
            }
            till::store::releaseConnection();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    const RawDatabase raw(file());
    for (int thread = 0; thread < 4; ++thread) {
        const QStringList found = raw.rows(bodies).filter(u"%1-"_s.arg(thread));
        QStringList sorted = found;
        sorted.sort();
        EXPECT_EQ(found.size(), 10);
        EXPECT_EQ(found.join(u' ').toStdString(), sorted.join(u' ').toStdString()) << "each thread's own are in order";
    }
    EXPECT_EQ(raw.text(u"SELECT min(id), max(id), count(DISTINCT id) FROM queue"_s), "1|40|40");
}

TEST_F(StoreThreads, ThreadThatEndedWithoutReleasingLeavesNothingInTheWay)
{
    for (int thread = 0; thread < 8;
         ++thread) { // the system gives the number of a thread that has ended to a later one
        std::thread([thread] { enqueueText(QString::number(thread)); }).join();
    }

    EXPECT_EQ(RawDatabase(file()).text(bodies), "0 1 2 3 4 5 6 7");
}

TEST_F(StoreThreads, WriterWaitsForAnother)
{
    std::promise<void> locked;
    std::atomic<bool> released = false;
    std::thread other([this, &locked, &released] {
        RawDatabase raw(file());
        raw.run(u"BEGIN EXCLUSIVE"_s);
        locked.set_value();
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        released = true;
        raw.run(u"COMMIT"_s);
    });
    locked.get_future().wait();
    enqueueText(u"one"_s);
    const bool waited = released;
    other.join();

    EXPECT_TRUE(waited);
    EXPECT_EQ(RawDatabase(file()).text(bodies), "one");
}

TEST_F(StoreThreads, WriterThatWaitedInVainIsRefusedAndGoesOnLater)
{
    runInStore(u"PRAGMA busy_timeout=50"_s);
    RawDatabase raw(file());
    raw.run(u"BEGIN EXCLUSIVE"_s);
    EXPECT_THAT(refusal([] { enqueueText(u"lost"_s); }), StartsWith("Ошибка базы данных кассы: database is locked"));
    raw.run(u"COMMIT"_s);
    enqueueText(u"one"_s);

    EXPECT_EQ(raw.text(bodies), "one");
}
