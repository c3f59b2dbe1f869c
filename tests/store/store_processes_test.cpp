#include "host/framework/db_queue_broker.h"
#include "tests/store/child_process.h"
#include "tests/store/numbered_records.h"
#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/store/store.h"

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

class StoreProcesses : public StoreTest {
protected:
    /// The numbers in the queue from `first` to `last`, in the queue's order.
    [[nodiscard]] std::string queued(int first, int last) const
    {
        return RawDatabase(file()).text(
            u"SELECT group_concat(n, ' ') FROM (SELECT json_extract(message, '$.number') AS n FROM queue "
            "WHERE n BETWEEN %1 AND %2 ORDER BY id)"_s.arg(first)
                .arg(last));
    }
};

[[nodiscard]] std::string sequence(int first, int last)
{
    std::string text;
    for (int number = first; number <= last; ++number) {
        text += (text.empty() ? "" : " ") + std::to_string(number);
    }
    return text;
}

} // namespace

TEST_F(StoreProcesses, TwoAtOnceLoseNothing)
{
    till::store::open(folder());
    ChildProcess child({ u"enqueue"_s, folder(), u"1001"_s, u"25"_s });
    child.waitFor(1);
    for (int number = 1; number <= 25; ++number) {
        DBQueueBroker().enqueue(u"vantiro"_s, numberedMessage(number), QString());
    }
    child.waitForEnd();

    EXPECT_EQ(queued(1, 25), sequence(1, 25));
    EXPECT_EQ(queued(1001, 1025), sequence(1001, 1025));
    EXPECT_EQ(RawDatabase(file()).text(u"SELECT min(id), max(id), count(*) FROM queue"_s), "1|50|50");
}

TEST_F(StoreProcesses, NewStoreIsMadeOnceBySeveralAtOnce)
{
    for (int round = 0; round < 5; ++round) {
        const QString shop = path(u"round%1"_s.arg(round));
        std::vector<std::unique_ptr<ChildProcess>> children;
        for (int child = 0; child < 4; ++child) {
            const QStringList arguments { u"enqueue"_s, shop, QString::number(100 * child + 1), u"3"_s };
            children.push_back(std::make_unique<ChildProcess>(arguments));
        }
        for (const auto& child : children) {
            child->waitForEnd();
            EXPECT_EQ(child->told().size(), 3);
        }

        EXPECT_EQ(RawDatabase(shop + u"/till.sqlite"_s).text(u"SELECT count(*) FROM queue"_s), "12");
    }
}
