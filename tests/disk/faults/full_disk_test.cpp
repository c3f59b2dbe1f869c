#include "tests/disk/faults/failing_disk_story.h"
#include "tests/disk/faults/wrongs.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// From one step on there is no room on the disk, but for the ballast.
class FullDisk : public FailingDiskStory { };

/// From one step on nothing can be written, and no file can be opened for writing.
class ClosedDisk : public FailingDiskStory { };

[[nodiscard]] qint64 spaceOf(const QString& file)
{
    struct stat status { };
    constexpr qint64 block = 512;
    return ::stat(file.toLocal8Bit().constData(), &status) == 0 ? status.st_blocks * block : -1;
}

} // namespace

TEST_P(FullDisk, LetsTheOpenChequeEndAndNoNewOneBegin)
{
    const qsizetype steps = run(freshFolder(), { u"work"_s, story() }).attempts.size();
    const DiskBooks sound = soundBooks(story());
    for (int full = 1; full < steps; ++full) {
        const QString folder = freshFolder();
        const ChildRun run = this->run(folder, { u"full"_s, story(), QString::number(full) });
        SCOPED_TRACE(endsOf(run));
        EXPECT_EQ(wrongAfterFullDisk(run, readBooks(folder), sound), "");
        EXPECT_GE(spaceOf(folder + u"/till.ballast"_s), 2 * 1024 * 1024) << "it is made again when there is room";
    }
}

TEST_P(ClosedDisk, RefusesEachStepInOneLineAndWorkGoesOnLater)
{
    const qsizetype steps = run(freshFolder(), { u"work"_s, story() }).attempts.size();
    const DiskBooks sound = soundBooks(story());
    int refused = 0;
    for (int closed = 0; closed < steps; ++closed) {
        const QString folder = freshFolder();
        const ChildRun run = this->run(folder, { u"closed"_s, story(), QString::number(closed) });
        refused += run.failures > 0 ? 1 : 0;
        EXPECT_EQ(wrongAfterRepeating(run, readBooks(folder), sound), "") << endsOf(run);
    }
    EXPECT_GE(refused, steps - 4); // some steps write nothing
}

INSTANTIATE_TEST_SUITE_P(OfStory, FullDisk, ::testing::Values("sale", "outage", "no-card", "rolled-back", "set-aside"),
                         storyName);
INSTANTIATE_TEST_SUITE_P(OfStory, ClosedDisk,
                         ::testing::Values("sale", "outage", "no-card", "rolled-back", "cancelled", "set-aside",
                                           "return"),
                         storyName);
