#include "tests/disk/faults/failing_disk_story.h"

using namespace Qt::StringLiterals;

namespace {

/// The very first start of a till: the n-th operation fails while the store is made. The till tells, or has a whole
/// store; at the next start it works.
class NewStore : public FailingDiskStory { };

} // namespace

TEST_P(NewStore, IsWholeOrRefusedAndMadeAtTheNextStart)
{
    const QString of = QString::fromLatin1(GetParam());
    int refusals = 0;
    int number = 1;
    for (bool reached = true; reached; ++number) {
        SCOPED_TRACE(number);
        const QString folder = freshFolder() + u"/shop/till"_s;
        const ChildRun first = run(folder, { u"start"_s, of, QString::number(number), u"EIO"_s, u"lasts"_s });
        reached = first.failures != 0;
        ASSERT_EQ(first.attempts.size(), 1);
        EXPECT_EQ(unclearLine(first), "");
        refusals += first.attempts.constFirst().end == u"failed" ? 1 : 0;
        EXPECT_EQ(run(folder, { u"work"_s, u"no-card"_s }).failures, 0);
        const DiskBooks books = readBooks(folder);
        EXPECT_EQ(books.damage, "");
        EXPECT_EQ(books.states.join(u' ').toStdString(), "1 closed");
    }
    EXPECT_GT(number, 5) << "the fault is not reached";
    EXPECT_GE(refusals, 4);
}

INSTANTIATE_TEST_SUITE_P(FailingAt, NewStore, ::testing::Values("writes", "syncs"),
                         [](const auto& row) { return std::string(row.param); });
