#include "tests/disk/power/power_losses.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

[[nodiscard]] Change writing(std::int64_t offset, std::size_t length)
{
    return { .kind = Change::Kind::write, .offset = offset, .data = std::string(length, 'x') };
}

/// "1 0 512-": a word for each change.
[[nodiscard]] std::string words(const std::vector<Reached>& loss)
{
    std::string text;
    for (const Reached& reached : loss) {
        text += text.empty() ? "" : " ";
        if (reached.any && (reached.from != 0 || reached.to != std::string::npos)) {
            text += std::to_string(reached.from) + '-';
            text += reached.to == std::string::npos ? "" : std::to_string(reached.to);
        } else {
            text += reached.any ? "1" : "0";
        }
    }
    return text;
}

[[nodiscard]] bool contains(const std::vector<std::vector<Reached>>& losses, const std::string& wanted)
{
    return std::ranges::any_of(losses, [&wanted](const auto& loss) { return words(loss) == wanted; });
}

[[nodiscard]] std::vector<std::vector<Reached>> lossesOf(const std::vector<Change>& pending,
                                                         const Thoroughness& thoroughness)
{
    std::mt19937 dice(1);
    return powerLosses(pending, thoroughness, dice);
}

} // namespace

TEST(PowerLosses, EachChangeIsMissingAloneAndTheLast)
{
    const auto losses = lossesOf({ writing(0, 4), writing(4, 4), writing(8, 4) }, { .shuffles = 0 });
    for (const char* wanted : { "0 0 0", "1 1 1", "0 1 1", "1 0 1", "1 1 0", "1 0 0", "0 1 0", "0 0 1" }) {
        EXPECT_TRUE(contains(losses, wanted)) << wanted;
    }
}

TEST(PowerLosses, WriteIsTornWhereSectorsOfTheFileMeet)
{
    const auto losses = lossesOf({ writing(500, 600) }, { .shuffles = 0 });
    for (const char* wanted : { "0-12", "12-", "0-524", "524-" }) {
        EXPECT_TRUE(contains(losses, wanted)) << wanted;
    }
    EXPECT_FALSE(contains(losses, "0-512"));
}

TEST(PowerLosses, WriteWithinASectorIsNotTorn)
{
    for (const auto& loss : lossesOf({ writing(512, 512) }, { .shuffles = 0 })) {
        EXPECT_TRUE(words(loss) == "0" || words(loss) == "1") << words(loss);
    }
}

TEST(PowerLosses, TornWriteStandsAloneWhenThatIsAskedFor)
{
    const std::vector<Change> pending { writing(0, 1024), writing(4096, 8) };
    EXPECT_FALSE(contains(lossesOf(pending, { .shuffles = 0 }), "0-512 0"));
    EXPECT_TRUE(contains(lossesOf(pending, { .shuffles = 0, .tornAlone = true }), "0-512 0"));
}

TEST(PowerLosses, NothingPendingIsOneState)
{
    for (const auto& loss : lossesOf({}, {})) {
        EXPECT_TRUE(loss.empty());
    }
}
