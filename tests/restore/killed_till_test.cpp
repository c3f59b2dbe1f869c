#include "tests/restore/reference_run.h"

#include <ostream>
#include <vector>

using namespace Qt::StringLiterals;

// A till that is killed after a step of a cheque and started again: the cheque goes on as if nothing had happened. Same
// requests, same totals, same contents of the disk.

namespace {

constexpr Road roads[] {
    saleRoad,
    // With the setting left out, a cheque that comes back loses its points to spend; here it has nothing else yet.
    { "early-set-aside", "EarlySetAside", "", 14, false },
    { "offline", "Offline", "", 11, true },
    { "no-card", "NoCard", "", 7, false },
    { "cancelled", "Cancelled", "", 11, false },
    { "rolled-back", "RolledBack", "", 17, false },
};

struct Crash {
    Road road;
    int step;
};

void PrintTo(const Crash& crash, std::ostream* stream)
{
    *stream << crash.road.name << " after step " << crash.step;
}

[[nodiscard]] std::vector<Crash> crashes()
{
    std::vector<Crash> rows;
    for (const Road& road : roads) {
        for (int step = 1; step <= road.steps; ++step) {
            rows.push_back({ road, step });
        }
    }
    return rows;
}

class KilledTill : public testing::TestWithParam<Crash> { };
class Roads : public testing::TestWithParam<Road> { };

} // namespace

TEST_P(Roads, UndisturbedRunHasAllItsSteps)
{
    const LifeOfACheque& run = undisturbed(GetParam());
    EXPECT_EQ(stepsIn(run.lines), GetParam().steps) << run.lines.join(u'\n').toStdString();
    EXPECT_EQ(run.lines.filter(u"document {"_s).size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Roads, Roads, testing::ValuesIn(roads),
                         [](const testing::TestParamInfo<Road>& row) { return std::string(row.param.testName); });

TEST_P(KilledTill, GoesOnAsIfNothingHadHappened)
{
    const auto& [road, step] = GetParam();
    const LifeOfACheque& expected = undisturbed(road);
    LoyaltyService& service = serviceOf(road);
    const qsizetype first = service.count();
    const QString name = QString::fromLatin1(road.name);
    TillOnDisk till(service, QString::fromLatin1(road.settings));

    const QStringList before = till.killedAfter(name, step);
    EXPECT_EQ(stepsIn(before), step);
    const QStringList after = withoutHead(till.toTheEnd(name, step), step);

    EXPECT_TRUE(sameLines(before + after, expected.lines));
    EXPECT_TRUE(sameLines(service.requestsFrom(first), expected.requests));
}

// The drill would notice.
TEST(TillThatForgetsToRestore, TellsTheServerAnotherCheque)
{
    constexpr int allIsOnTheCheque = 19;
    const LifeOfACheque& expected = undisturbed(saleRoad);
    LoyaltyService& service = serviceOf(saleRoad);
    const qsizetype first = service.count();
    const QString name = QString::fromLatin1(saleRoad.name);
    TillOnDisk till(service, QString::fromLatin1(saleRoad.settings));

    const QStringList before = till.killedAfter(name, allIsOnTheCheque);
    const QStringList after = till.toTheEndWithoutRestoring(name, allIsOnTheCheque);

    EXPECT_EQ(stepsIn(before + after), saleRoad.steps) << "it goes on all the same";
    EXPECT_FALSE(sameLines(service.requestsFrom(first), expected.requests));
}

INSTANTIATE_TEST_SUITE_P(AfterEachStep, KilledTill, testing::ValuesIn(crashes()),
                         [](const testing::TestParamInfo<Crash>& row) {
                             return row.param.road.testName + std::string("AfterStep") + std::to_string(row.param.step);
                         });
