#include "sandbox/spread.h"

#include <gmock/gmock.h>

#include <numeric>
#include <random>

using ::testing::ElementsAre;

TEST(Spread, RemainingKopecksGoToTheLargestRemainders)
{
    EXPECT_THAT(sandbox::spread(100, { 1, 1, 1 }), ElementsAre(34, 33, 33));
    EXPECT_THAT(sandbox::spread(10, { 5, 30, 65 }), ElementsAre(1, 3, 6)); // 0.5, 3.0, 6.5: the earlier of equals
    EXPECT_THAT(sandbox::spread(7, { 10, 20, 40 }), ElementsAre(1, 2, 4));
    EXPECT_THAT(sandbox::spread(8, { 3, 3, 5 }), ElementsAre(2, 2, 4)); // 2.18, 2.18, 3.64
}

TEST(Spread, NothingIsSpreadOverNothing)
{
    EXPECT_THAT(sandbox::spread(0, { 5, 5 }), ElementsAre(0, 0));
    EXPECT_THAT(sandbox::spread(10, { 0, 0 }), ElementsAre(0, 0));
    EXPECT_THAT(sandbox::spread(10, { 0, 4 }), ElementsAre(0, 10));
}

TEST(Spread, SharesAddUpAndStayWithinTheirWeights)
{
    constexpr unsigned seed = 20240305;
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; ++round) {
        std::vector<sandbox::Kopecks> weights(1 + random() % 20);
        for (auto& weight : weights) {
            weight = random() % 3 == 0 ? 0 : static_cast<sandbox::Kopecks>(random() % 100'000);
        }
        const auto whole = std::accumulate(weights.begin(), weights.end(), sandbox::Kopecks { 0 });
        const auto sum = whole == 0 ? 0 : static_cast<sandbox::Kopecks>(random()) % (whole + 1);
        const auto shares = sandbox::spread(sum, weights);
        ASSERT_EQ(std::accumulate(shares.begin(), shares.end(), sandbox::Kopecks { 0 }), sum)
            << "seed " << seed << " round " << round;
        for (std::size_t i = 0; i < shares.size(); ++i) {
            ASSERT_TRUE(shares[i] >= 0 && shares[i] <= weights[i]) << "seed " << seed << " round " << round;
        }
    }
}
