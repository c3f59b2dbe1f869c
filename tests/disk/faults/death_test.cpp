#include "tests/disk/faults/failing_disk_story.h"
#include "tests/disk/faults/fault_numbers.h"
#include "tests/disk/faults/wrongs.h"

using namespace Qt::StringLiterals;

namespace {

/// The till is switched off at the step that the disk has failed on, and is started again when the disk works.
class TillSwitchedOff : public FailingDiskStory {
protected:
    void switchOff(const FaultNumbers& numbers, const QString& of, const QString& howLong)
    {
        const QStringList shapes = soundShapes(story());
        numbers.forEach([&](int number) {
            SCOPED_TRACE(of.toStdString() + ' ' + std::to_string(number));
            const QString folder = freshFolder();
            const ChildRun run
                = this->run(folder, QStringList { u"work"_s, story() } + fault(of, number, u"EIO"_s, howLong));
            EXPECT_EQ(wrongAfterSwitchingOff(run, readBooks(folder), shapes), "") << endsOf(run);
            if (run.failures == 0) {
                return false;
            }
            const ChildRun next = this->run(folder, { u"go-on"_s });
            EXPECT_EQ(wrongAfterGoingOn(run, next, readBooks(folder)), "") << endsOf(run) << "; " << endsOf(next);
            return true;
        });
    }
};

} // namespace

TEST_P(TillSwitchedOff, AtAWriteThatFailed)
{
    switchOff({ 0, 2 }, u"writes"_s, u"once"_s);
}

TEST_P(TillSwitchedOff, WhileNothingCanBeWritten)
{
    switchOff({ 1, 2 }, u"writes"_s, u"lasts"_s);
}

TEST_P(TillSwitchedOff, AtASynchronisationThatFailed)
{
    switchOff({ 0, 2 }, u"syncs"_s, u"once"_s);
}

TEST_P(TillSwitchedOff, WhileNothingCanBeSynchronised)
{
    switchOff({ 1, 2 }, u"syncs"_s, u"lasts"_s);
}

INSTANTIATE_TEST_SUITE_P(OfStory, TillSwitchedOff,
                         ::testing::Values("sale", "outage", "no-card", "rolled-back", "cancelled", "set-aside",
                                           "return"),
                         storyName);
