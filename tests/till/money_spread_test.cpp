#include "till/money/spread.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>

namespace {

struct Row {
    const char* rule;
    till::Kopecks sum;
    QList<till::Share> shares;
    std::vector<till::Kopecks> expected;
};

class Spread : public testing::TestWithParam<Row> { };

[[nodiscard]] std::vector<till::Kopecks> spreadOf(till::Kopecks sum, const QList<till::Share>& shares)
{
    const QList<till::Kopecks> result = till::spread(sum, shares);
    return { result.cbegin(), result.cend() };
}

} // namespace

INSTANTIATE_TEST_SUITE_P(
    Sums, Spread,
    testing::Values(Row { "NothingOverNobody", 100, {}, {} }, Row { "NothingIsSpread", 0, { { 5, 5 } }, { 0 } },
                    Row { "NegativeIsNothing", -3, { { 5, 5 } }, { 0 } },
                    Row { "EvenPartsAreEven", 300, { { 1000, 1000 }, { 1000, 1000 }, { 1000, 1000 } }, { 100, 100, 100 } },
                    Row { "OddKopeckGoesToTheFirstOfEquals", 100, { { 7, 100 }, { 7, 100 }, { 7, 100 } }, { 34, 33, 33 } },
                    // 10 over 1:2:4 is 1.43, 2.86, 5.71: the two left go to the second and the third
                    Row { "LargestRemainderFirst", 10, { { 1, 99 }, { 2, 99 }, { 4, 99 } }, { 1, 3, 6 } },
                    Row { "FullSharePassesTheRestOn", 90, { { 50, 10 }, { 50, 100 } }, { 10, 80 } },
                    Row { "AllRoomIsTheLimit", 500, { { 50, 10 }, { 50, 20 } }, { 10, 20 } },
                    Row { "WithoutWeightNothing", 10, { { 0, 10 }, { 1, 4 } }, { 0, 4 } },
                    Row { "SumsBeyondTheProductOf64Bits", 4'000'000'000'000'000'000,
                          { { 4'000'000'000'000'000'000, 4'000'000'000'000'000'000 },
                            { 4'000'000'000'000'000'000, 4'000'000'000'000'000'000 } },
                          { 2'000'000'000'000'000'000, 2'000'000'000'000'000'000 } }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(Spread, GivesEachItsPart)
{
    EXPECT_EQ(spreadOf(GetParam().sum, GetParam().shares), GetParam().expected);
}

TEST(SpreadProperty, GeneratedSumsComeOutExactAndWithinTheRoom)
{
    std::uint64_t state = 20261121; // the seed
    const auto next = [&state](till::Kopecks below) {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<till::Kopecks>((state >> 33) % static_cast<std::uint64_t>(below));
    };
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE(round);
        QList<till::Share> shares;
        till::Kopecks room = 0;
        for (till::Kopecks count = 1 + next(12); count > 0; --count) {
            const till::Kopecks weight = 1 + next(100'000);
            shares.append({ weight, next(weight + 1) });
            room += shares.constLast().room;
        }
        const till::Kopecks sum = next(400'000);
        const std::vector<till::Kopecks> parts = spreadOf(sum, shares);
        ASSERT_EQ(std::accumulate(parts.cbegin(), parts.cend(), till::Kopecks(0)), std::min(sum, room));
        for (std::size_t i = 0; i < parts.size(); ++i) {
            ASSERT_GE(parts[i], 0);
            ASSERT_LE(parts[i], shares.at(static_cast<qsizetype>(i)).room);
        }
    }
}
