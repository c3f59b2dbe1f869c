#include "tests/faults/expected_outcomes.h"
#include "tests/faults/fault_runs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

using namespace Qt::StringLiterals;
using namespace faults;

// The tables would notice: a client with a defect changes the outcome of the row.

namespace {

struct Planted {
    const char* defect;
    const char* fault;
    const char* arrangement;
    const char* operation;
};

void PrintTo(const Planted& row, std::ostream* out)
{
    *out << row.defect;
}

class PlantedDefect : public testing::TestWithParam<Planted> {
protected:
    [[nodiscard]] Told toldWith(const QString& defect) const
    {
        const Batch batch { QString::fromLatin1(GetParam().fault),
                            QString::fromLatin1(GetParam().arrangement),
                            5,
                            { QString::fromLatin1(GetParam().operation) } };
        const RunOfABatch run = runAll({ batch }, 1, defect).constFirst();
        EXPECT_TRUE(run.well) << run.errors;
        return run.told.isEmpty() ? Told() : run.told.constFirst();
    }

    [[nodiscard]] std::string expected() const
    {
        const auto fault = std::ranges::find_if(
            expectedFaults(), [](const ExpectedFault& known) { return std::string(known.name) == GetParam().fault; });
        return expectedOutcome(*fault, QString::fromLatin1(GetParam().arrangement),
                               QString::fromLatin1(GetParam().operation));
    }
};

}

TEST_P(PlantedDefect, ChangesTheOutcome)
{
    EXPECT_EQ(toldWith({}).outcome, expected());
    EXPECT_NE(toldWith(QString::fromLatin1(GetParam().defect)).outcome, expected());
}

INSTANTIATE_TEST_SUITE_P(Client, PlantedDefect,
                         testing::Values(Planted { "EveryReplyIsASuccess", "Status503", "One", "Accrual" },
                                         Planted { "LossIsAnEmptyReply", "ClosedInTheBody", "Two", "SubtractBonus45" },
                                         Planted { "ErrorIsALoss", "Status404", "Two", "GetDiscounts" },
                                         Planted { "LossIsRepeated", "ClosedInTheBody", "Two", "SubtractBonus45" }),
                         [](const auto& row) { return std::string(row.param.defect); });

TEST(PlantedDelay, IsSeen)
{
    const Batch batch { u"SilentAfterTheRequest"_s, u"One"_s, 1, { u"IsCardValid"_s } };
    const RunOfABatch run = runAll({ batch }, 1, u"LateReplyWaitsOn"_s).constFirst();
    ASSERT_EQ(run.told.size(), 1) << run.errors;
    EXPECT_GT(run.told.constFirst().wait, 1900) << "the margin of a row is less";
}

TEST(UnknownFault, IsNoRow)
{
    const RunOfABatch run = runAll({ Batch { u"Bewitched"_s, u"One"_s, 1, { u"IsCardValid"_s } } }, 1).constFirst();
    EXPECT_FALSE(run.well);
    EXPECT_EQ(run.errors, "the till has ended: there is no fault Bewitched\n");
}
