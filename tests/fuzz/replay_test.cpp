#include "tests/fuzz/corpus.h"
#include "tests/fuzz/judge.h"
#include "till/facilities/log_setup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

// What the fuzzers begin with, and what they have found, read by every build: the promises that hold there hold here.

namespace {

/// Keeps the log off the screen for the whole program: hostile texts make thousands of lines of it.
class QuietLog : public testing::Environment {
public:
    void SetUp() override
    {
        till::setUpLogging({ .console = false });
    }
};

const testing::Environment* const quietLog = testing::AddGlobalTestEnvironment(new QuietLog);

/// What went wrong with each input; nothing when nothing did.
[[nodiscard]] std::string broken(const fuzz::Target& target, const std::string& name, const std::string& text)
{
    try {
        fuzz::judge(target, text);
        return {};
    } catch (const fuzz::BrokenPromise& promise) {
        return name + ": " + promise.what() + '\n';
    }
}

/// What is made at the first use must not count as the time of an input.
void warmUp()
{
    for (const fuzz::Target& target : fuzz::targets()) {
        target.read({});
    }
}

} // namespace

TEST(Replay, EveryTargetHasSeeds)
{
    std::set<std::string_view> names;
    for (const fuzz::KeptInput& input : fuzz::keptInputs()) {
        names.insert(input.target->name);
    }
    EXPECT_EQ(names.size(), fuzz::targets().size());
    EXPECT_GE(fuzz::keptInputs().size(), 113U);
}

TEST(Replay, KeptInputsKeepAllPromises)
{
    warmUp();
    std::string all;
    for (const fuzz::KeptInput& input : fuzz::keptInputs()) {
        all += broken(*input.target, input.name, input.text);
    }
    EXPECT_EQ(all, "");
}

TEST(Replay, InputsCutAnywhereKeepAllPromises)
{
    warmUp();
    std::string all;
    for (const fuzz::KeptInput& input : fuzz::keptInputs()) {
        const std::size_t step = std::max<std::size_t>(input.text.size() / 20, 1);
        for (std::size_t size = 0; size < input.text.size(); size += step) {
            all += broken(*input.target, input.name + " cut at " + std::to_string(size), input.text.substr(0, size));
        }
    }
    EXPECT_EQ(all, "");
}

TEST(Replay, TimeGrowsWithTheTextAlone)
{
    constexpr std::size_t large = 256 * 1024;
    warmUp();
    std::string all;
    std::size_t choice = 0;
    for (const fuzz::KeptInput& input : fuzz::keptInputs()) {
        choice += 7; // another piece of each
        all += broken(*input.target, input.name + " swollen by " + std::to_string(choice),
                      fuzz::swollen(input.text, large, choice));
    }
    EXPECT_EQ(all, "");
}
