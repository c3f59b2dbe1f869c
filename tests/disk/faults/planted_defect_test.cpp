#include "tests/disk/faults/failing_disk_story.h"
#include "tests/disk/faults/fault_numbers.h"
#include "tests/disk/faults/wrongs.h"

#include <gmock/gmock.h>

#include <iterator>

using namespace Qt::StringLiterals;
using ::testing::HasSubstr;

// Tills with a defect do not pass: the search for what a failing disk spoils is seen to find something.

namespace {

class PlantedDefect : public FailingDiskTest {
protected:
    [[nodiscard]] static QStringList failing(const QString& of, int number, const QString& howLong)
    {
        return QStringList { u"work"_s, u"no-card"_s } + fault(of, number, u"EIO"_s, howLong);
    }

    /// What is wrong at the n-th operation, for all of them.
    [[nodiscard]] std::string whenRepeated(const QString& of, const QString& defect)
    {
        const DiskBooks sound = soundBooks(u"no-card"_s);
        std::string wrongs;
        for (int number = 1; number <= operations; ++number) {
            const QString folder = freshFolder();
            const ChildRun run
                = this->run(folder, failing(of, number, u"once"_s) + QStringList { u"repeat"_s, defect });
            wrongs += wrongAfterRepeating(run, readBooks(folder), sound) + '\n';
        }
        return wrongs;
    }

    [[nodiscard]] std::string whenSwitchedOff(const QString& of, const QString& howLong, const QString& defect)
    {
        const QStringList shapes = soundShapes(u"no-card"_s);
        std::string wrongs;
        for (int number = 1; number <= operations; ++number) {
            const QString folder = freshFolder();
            const ChildRun run = this->run(folder, failing(of, number, howLong) + QStringList { defect });
            wrongs += wrongAfterSwitchingOff(run, readBooks(folder), shapes) + '\n';
        }
        return wrongs;
    }

    static constexpr int operations = 100; // more than the story has
};

} // namespace

TEST_F(PlantedDefect, FailureThatIsSwallowedIsACloseThatIsNotOnDisk)
{
    EXPECT_THAT(whenSwitchedOff(u"writes"_s, u"lasts"_s, u"but-swallows"_s),
                HasSubstr("told that it is done: close of 1 open"));
}

TEST_F(PlantedDefect, FailureThatIsSwallowedLeavesACloseBegun)
{
    EXPECT_THAT(whenRepeated(u"syncs"_s, u"but-swallows"_s), HasSubstr("states: 1 clos"));
}

TEST_F(PlantedDefect, FailureInTheWordsOfTheDatabaseIsNotClear)
{
    EXPECT_THAT(whenRepeated(u"writes"_s, u"but-says-it-in-english"_s), HasSubstr("line: scan: disk I/O error"));
}

TEST_F(PlantedDefect, StoreWithoutAJournalIsDamaged)
{
    EXPECT_THAT(whenSwitchedOff(u"writes"_s, u"lasts"_s, u"but-has-no-journal"_s), HasSubstr("damage: "));
}

TEST_F(PlantedDefect, StepThatIsDoneTwiceIsInTheDocument)
{
    EXPECT_THAT(whenRepeated(u"writes"_s, u"but-repeats-twice"_s), HasSubstr("documents: found"));
}

TEST_F(PlantedDefect, TillWithoutBallastCannotEndItsCheque)
{
    const DiskBooks sound = soundBooks(u"no-card"_s);
    const QString folder = freshFolder();
    const ChildRun run = this->run(folder, { u"full"_s, u"no-card"_s, u"4"_s, u"but-has-no-ballast"_s });
    EXPECT_THAT(wrongAfterFullDisk(run, readBooks(folder), sound), HasSubstr("on the full disk: close failed"));
}
