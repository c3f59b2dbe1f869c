#include "tests/disk/faults/failing_disk_story.h"
#include "tests/disk/faults/fault_numbers.h"
#include "tests/disk/faults/wrongs.h"

using namespace Qt::StringLiterals;

namespace {

/// The n-th operation fails, once or until somebody has looked after the disk, and the cashier repeats his step.
class RepeatedStep : public FailingDiskStory {
protected:
    void fail(const FaultNumbers& numbers, const QString& of, const QString& error, const QString& howLong)
    {
        const DiskBooks sound = soundBooks(story());
        numbers.forEach([&](int number) {
            SCOPED_TRACE(of.toStdString() + ' ' + std::to_string(number));
            const QString folder = freshFolder();
            const ChildRun run = this->run(folder,
                                           QStringList { u"work"_s, story() } + fault(of, number, error, howLong)
                                               + QStringList { u"repeat"_s });
            EXPECT_EQ(wrongAfterRepeating(run, readBooks(folder), sound), "") << endsOf(run);
            return run.failures != 0;
        });
    }
};

} // namespace

TEST_P(RepeatedStep, AfterAWriteThatFailedOnce)
{
    fail({ 0, 3 }, u"writes"_s, u"EIO"_s, u"once"_s);
}

TEST_P(RepeatedStep, AfterWritesThatFailedForALongTime)
{
    fail({ 1, 3 }, u"writes"_s, u"EIO"_s, u"lasts"_s);
}

TEST_P(RepeatedStep, AfterADiskThatWasFullForALongTime)
{
    fail({ 2, 3 }, u"writes"_s, u"ENOSPC"_s, u"lasts"_s);
}

TEST_P(RepeatedStep, AfterASynchronisationThatFailedOnce)
{
    fail({ 0, 2 }, u"syncs"_s, u"EIO"_s, u"once"_s);
}

TEST_P(RepeatedStep, AfterSynchronisationsThatFailedForALongTime)
{
    fail({ 1, 2 }, u"syncs"_s, u"EIO"_s, u"lasts"_s);
}

INSTANTIATE_TEST_SUITE_P(OfStory, RepeatedStep,
                         ::testing::Values("sale", "outage", "no-card", "rolled-back", "cancelled", "set-aside",
                                           "return"),
                         storyName);
