#include "tests/store/store_test.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

using namespace Qt::StringLiterals;

namespace {

using DamagedPage = StoreTest;

} // namespace

// A row that cannot be read must not look like the end of the list: whatever stands behind it would be forgotten.
TEST_F(DamagedPage, IsToldAndNotTakenForTheEnd)
{
    till::store::open(folder());
    constexpr int messages = 200;
    for (int number = 0; number < messages; ++number) {
        enqueueText(QString(1000, u'x'));
    }
    ASSERT_EQ(till::store::queueRecords().size(), messages);
    till::store::close();

    constexpr qsizetype page = 4096;
    QByteArray bytes = bytesOf(file());
    ASSERT_GT(bytes.size(), 40 * page);
    bytes.replace(30 * page, page, QByteArray(page, '\xff'));
    writeBytes(file(), bytes);

    till::store::open(folder());
    EXPECT_NE(refusal([] { static_cast<void>(till::store::queueRecords()); }), "(none)");
}
