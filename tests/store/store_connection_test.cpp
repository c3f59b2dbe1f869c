#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/store/store.h"

#include <QSqlQuery>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

class StoreConnection : public StoreTest { };

[[nodiscard]] std::string pragma(const QString& name)
{
    QSqlQuery query = till::store::prepare(u"PRAGMA "_s + name);
    till::store::execute(query);
    return query.next() ? query.value(0).toString().toStdString() : "(no row)";
}

/// All settings of the calling thread's connection.
[[nodiscard]] std::string settings()
{
    return pragma(u"journal_mode"_s) + ' ' + pragma(u"synchronous"_s) + ' ' + pragma(u"secure_delete"_s) + ' '
        + pragma(u"busy_timeout"_s);
}

} // namespace

TEST_F(StoreConnection, HasItsSettingsInForce)
{
    till::store::open(folder());

    EXPECT_EQ(settings(), "truncate 2 1 5000");
}

TEST_F(StoreConnection, HasThemOnEveryThread)
{
    till::store::open(folder());
    std::string ofThread;
    std::thread([&ofThread] {
        ofThread = settings();
        till::store::releaseConnection();
    }).join();

    EXPECT_EQ(ofThread, "truncate 2 1 5000");
}

TEST_F(StoreConnection, HasThemAfterItWasReleased)
{
    till::store::open(folder());
    till::store::releaseConnection();

    EXPECT_EQ(settings(), "truncate 2 1 5000");
}

TEST_F(StoreConnection, HasThemInADatabaseThatHadOthers)
{
    till::store::open(folder());
    till::store::close();
    ASSERT_EQ(RawDatabase(file()).text(u"PRAGMA journal_mode=WAL"_s), "wal");
    till::store::open(folder());

    EXPECT_EQ(settings(), "truncate 2 1 5000");
}

TEST_F(StoreConnection, IsMadeAnewAfterItCouldNotBeMade)
{
    till::store::open(folder());
    till::store::releaseConnection();
    const QByteArray whole = bytesOf(file());
    writeBytes(file(), QByteArray(whole.size(), 'x'));
    ASSERT_NE(refusal([] { enqueueText(u"one"_s); }), "(none)");
    writeBytes(file(), whole);

    EXPECT_EQ(settings(), "truncate 2 1 5000");
}

TEST_F(StoreConnection, IsRefusedWhereTheJournalCannotBeSetUp)
{
    till::store::open(folder());
    till::store::close();
    const RawDatabase other(file());
    ASSERT_EQ(other.text(u"PRAGMA journal_mode=WAL"_s), "wal");
    ASSERT_EQ(other.text(u"SELECT count(*) FROM queue"_s), "0"); // it now stands in the way of another kind of journal

    EXPECT_NE(refusal([this] { till::store::open(folder()); }), "(none)");
}

TEST_F(StoreConnection, IsTheSameWithinAThreadAndAnotherOnTheNext)
{
    till::store::open(folder());
    const QString first = till::store::connection().connectionName();
    QString ofThread;
    std::thread([&ofThread] {
        ofThread = till::store::connection().connectionName();
        till::store::releaseConnection();
    }).join();

    EXPECT_EQ(till::store::connection().connectionName().toStdString(), first.toStdString());
    EXPECT_NE(ofThread.toStdString(), first.toStdString());
}

TEST_F(StoreConnection, SchemaHasAVersionAndTwoTables)
{
    till::store::open(folder());

    EXPECT_EQ(pragma(u"user_version"_s), "1");
    EXPECT_EQ(RawDatabase(file()).text(u"SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name"_s),
              "documents queue sqlite_sequence");
}
