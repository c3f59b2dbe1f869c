#include "tests/crash/drill_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

using testing::HasSubstr;

// The drill would notice: a till or a service with a defect makes it fail, with a line that repeats the failure.

namespace {

struct Planted {
    const char* defect;
    const char* story;
    const char* accusation;
};

void PrintTo(const Planted& row, std::ostream* out)
{
    *out << row.defect;
}

/// What the output tells behind the word, up to a blank or the end of the line; empty when the word is not there.
[[nodiscard]] std::string told(const std::string& output, const std::string& word)
{
    const std::size_t at = output.find(word);
    if (at == std::string::npos) {
        return {};
    }
    const std::size_t begin = at + word.size();
    return output.substr(begin, output.find_first_of(" \n", begin) - begin);
}

class PlantedDefect : public testing::TestWithParam<Planted> { };

}

TEST_P(PlantedDefect, FailsTheDrillWhichTellsHowToRepeatIt)
{
    const Planted& row = GetParam();
    const crash::DrillRun drill = crash::runDrill({ "--full", "--story", row.story, "--plant", row.defect });
    EXPECT_EQ(drill.status, 1);
    EXPECT_THAT(drill.output, HasSubstr(row.accusation));
    EXPECT_THAT(drill.output, HasSubstr("THE DRILL HAS FAILED"));
    EXPECT_THAT(drill.output, HasSubstr("To repeat the first failure:"));

    const std::string point = told(drill.output, std::string("--story ") + row.story + " --point ");
    ASSERT_NE(point, "") << drill.output;
    const crash::DrillRun again
        = crash::runDrill({ "--story", row.story, "--point", point, "--plant", row.defect });
    EXPECT_EQ(again.status, 1);
    EXPECT_THAT(again.output, HasSubstr(row.accusation));

    const crash::DrillRun sound = crash::runDrill({ "--story", row.story, "--point", point });
    EXPECT_EQ(sound.status, 0) << sound.output;
}

INSTANTIATE_TEST_SUITE_P(Till, PlantedDefect,
                         testing::Values(Planted { "closedBeforeQueued", "outage", "LOST" },
                                         Planted { "removedBeforeAnswer", "outage", "LOST" },
                                         Planted { "renamedByRestart", "first-start", "PHANTOM" },
                                         Planted { "spendsTwice", "points", "no kill and no lost reply explains it" }),
                         [](const auto& row) { return std::string(row.param.defect); });

INSTANTIATE_TEST_SUITE_P(Service, PlantedDefect, testing::Values(Planted { "twoBooks", "sale", "DOUBLED" }),
                         [](const auto& row) { return std::string(row.param.defect); });

TEST(UnknownStory, IsRefused)
{
    const crash::DrillRun run = crash::runDrill({ "--story", "robbery" });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("there is no story robbery"));
}

TEST(UnknownDefect, IsRefused)
{
    const crash::DrillRun run = crash::runDrill({ "--plant", "bewitched" });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("there is no defect bewitched"));
}

TEST(PointThatIsNone, IsRefused)
{
    const crash::DrillRun run = crash::runDrill({ "--story", "sale", "--point", "12" });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("points are named as they were printed"));
}

TEST(PointBehindTheStory, IsNotTakenForAKill)
{
    const crash::DrillRun run = crash::runDrill({ "--story", "first-start", "--point", "c100000-" });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("the till does not come to the point"));
}
