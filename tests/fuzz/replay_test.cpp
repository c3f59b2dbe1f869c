#include "tests/fuzz/corpus.h"
#include "tests/fuzz/judge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

// What the fuzzers begin with, and what they have found, read by every build: the promises that hold there hold here.

namespace {

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
        const std::string name = input.name + " swollen by " + std::to_string(choice);
        const std::string text = fuzz::swollen(input.text, large, choice);
        // What else the machine does costs processor time, too, but not at every attempt.
        std::string wrong = broken(*input.target, name, text);
        for (int attempt = 0; attempt < 2 && !wrong.empty(); ++attempt) {
            wrong = broken(*input.target, name, text);
        }
        all += wrong;
    }
    EXPECT_EQ(all, "");
}
