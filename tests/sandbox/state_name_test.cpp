#include "tests/sandbox/sandbox_under_test.h"

#include <gtest/gtest.h>

namespace {

[[nodiscard]] std::string stateOf(const SandboxUnderTest& sandbox)
{
    return sandbox.control.get("/books")["state"];
}

} // namespace

TEST(SandboxStateName, IsTheSameForAllFrontEndsOfOneState)
{
    const TemporaryFolder folder;
    const SandboxUnderTest first(testRules(), folder.file("state"), "first");
    const SandboxUnderTest second(testRules(), folder.file("state"), "second");
    EXPECT_EQ(stateOf(first).size(), 32U);
    EXPECT_EQ(stateOf(first), stateOf(second));
}

TEST(SandboxStateName, TellsStatesApart)
{
    const TemporaryFolder folder;
    const SandboxUnderTest first(testRules(), folder.file("first"), "first");
    const SandboxUnderTest second(testRules(), folder.file("second"), "first");
    EXPECT_NE(stateOf(first), stateOf(second));
}
