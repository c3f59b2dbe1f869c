#include "sandbox/database.h"
#include "tests/sandbox/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>

using namespace sandbox;

namespace {

[[nodiscard]] std::int64_t setting(const Database& database, const std::string& name)
{
    Statement query(database, "PRAGMA " + name);
    return query.step() ? query.integer(0) : -1;
}

}

TEST(SandboxDatabase, CommitsReachTheDiskInANewState)
{
    const TemporaryFolder folder;
    const Database database(folder.file("state"));
    EXPECT_EQ(setting(database, "synchronous"), 2) << "FULL: with less, what was answered may be gone after a loss of power";
}

TEST(SandboxDatabase, CommitsReachTheDiskInAStateThatStoodBefore)
{
    const TemporaryFolder folder;
    {
        const Database former(folder.file("state"));
    }
    const Database database(folder.file("state"));
    EXPECT_EQ(setting(database, "synchronous"), 2);
}

TEST(SandboxDatabase, TransactionThatIsNotCommittedLeavesNothing)
{
    const TemporaryFolder folder;
    Database database(folder.file("state"));
    {
        Transaction transaction(database);
        Statement(database, "INSERT INTO card (number, opening) VALUES ('1', 100)").run();
    }
    {
        Transaction transaction(database);
        Statement(database, "INSERT INTO card (number, opening) VALUES ('2', 200)").run();
        transaction.commit();
    }
    Statement cards(database, "SELECT group_concat(number) FROM card");
    ASSERT_TRUE(cards.step());
    EXPECT_EQ(cards.text(0), "2");
}
