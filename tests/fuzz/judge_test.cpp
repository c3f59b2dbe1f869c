#include "tests/fuzz/judge.h"

#include <gtest/gtest.h>

#include <ctime>

// A judge who has never condemned anything proves nothing.

namespace {

[[nodiscard]] std::string verdictOn(void (*read)(std::string_view), std::string_view input = "text")
{
    try {
        fuzz::judge({ "planted", read }, input);
        return "nothing";
    } catch (const fuzz::BrokenPromise& promise) {
        return promise.what();
    }
}

/// Keeps the processor busy for that part of the time that the input may take.
void dawdle(std::string_view input, double part)
{
    const std::clock_t start = std::clock();
    while (static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC <= part * fuzz::patience(input.size())) { }
}

/// For longer than it may.
void dawdle(std::string_view input)
{
    dawdle(input, 1.0);
}

} // namespace

TEST(Judge, ReaderThatReturnsHasKeptItsPromises)
{
    EXPECT_EQ(verdictOn([](std::string_view) { }), "nothing");
}

TEST(Judge, StrayExceptionIsNoOutcome)
{
    const std::string verdict = verdictOn([](std::string_view) { throw std::out_of_range("planted"); });
    EXPECT_TRUE(verdict.starts_with("an exception that nobody was told of: ")) << verdict;
    EXPECT_TRUE(verdict.ends_with(": planted")) << verdict;
}

TEST(Judge, ThrownValueIsNoOutcome)
{
    EXPECT_EQ(verdictOn([](std::string_view) { throw 1; }), "an exception that is none of the standard's");
}

TEST(Judge, BrokenPromiseIsPassedOn)
{
    EXPECT_EQ(verdictOn([](std::string_view) { fuzz::require(false, "planted"); }), "planted");
}

TEST(Judge, SlowReaderIsCondemned)
{
    const std::string verdict = verdictOn([](std::string_view input) { fuzz::timed([&] { dawdle(input); }); });
    EXPECT_TRUE(verdict.ends_with(" s for 4 bytes")) << verdict;
}

TEST(Judge, TextThatIsMadeTakesTimeAsTheInputDoes)
{
    const auto read = [](std::string_view) {
        fuzz::timed([] { dawdle({}, 1.2); }); // more than nothing may take, and less than a quarter of a MiB
        fuzz::made(256 * 1024);
    };
    EXPECT_EQ(verdictOn(read), "nothing");
    EXPECT_EQ(verdictOn(read), "nothing");
    EXPECT_NE(verdictOn([](std::string_view) { fuzz::timed([] { dawdle({}, 1.2); }); }), "nothing");
}

TEST(Judge, EachReadingHasTheTimeOfOne)
{
    const std::string verdict = verdictOn([](std::string_view input) {
        fuzz::timed([&] { dawdle(input, 0.6); });
        fuzz::timed([&] { dawdle(input, 0.6); });
    });
    EXPECT_EQ(verdict, "nothing");
}

TEST(Judge, TimeOfTheCheckIsNotTheReaders)
{
    EXPECT_EQ(verdictOn(dawdle), "nothing");
}

TEST(Judge, TimeOfAReaderThatThrowsCounts)
{
    const std::string verdict = verdictOn([](std::string_view input) {
        try {
            fuzz::timed([&] {
                dawdle(input);
                throw 1;
            });
        } catch (int) {
            return;
        }
    });
    EXPECT_TRUE(verdict.ends_with(" s for 4 bytes")) << verdict;
}

TEST(Judge, PatienceGrowsWithTheText)
{
    EXPECT_NEAR(fuzz::patience(0), 0.2, 1e-9);
    EXPECT_NEAR(fuzz::patience(1024 * 1024), 2.2, 1e-9);
    EXPECT_NEAR(fuzz::patience(512 * 1024), 1.2, 1e-9);
}

TEST(Swollen, PieceBetweenTwoSignsIsRepeated)
{
    EXPECT_EQ(fuzz::swollen("<a><b/></a>", 14, 1), "<a><b/><b/><b/><b/></a>");
}

TEST(Swollen, ChoiceTellsThePiece)
{
    EXPECT_EQ(fuzz::swollen("<a><b/></a>", 12, 0), "<a><a><a><a><a><b/></a>");
    EXPECT_EQ(fuzz::swollen("<a><b/></a>", 12, 4), "<a><b/><a><b/><a><b/></a>");
}

TEST(Swollen, TextWithoutSignsStaysAsItIs)
{
    EXPECT_EQ(fuzz::swollen("text", 1000, 3), "text");
    EXPECT_EQ(fuzz::swollen("<text", 1000, 3), "<text");
    EXPECT_EQ(fuzz::swollen("", 1000, 3), "");
}

TEST(Swollen, LargeTextStaysAsItIs)
{
    EXPECT_EQ(fuzz::swollen("<a><b/></a>", 11, 1), "<a><b/></a>");
}

TEST(Targets, NameThatIsNoneIsAMistake)
{
    EXPECT_THROW(static_cast<void>(fuzz::targetOf("other")), std::invalid_argument);
    EXPECT_EQ(fuzz::targetOf("balance").name, "balance");
}
