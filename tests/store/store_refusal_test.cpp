#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/store/store.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using ::testing::StartsWith;

namespace {

class StoreRefusal : public StoreTest {
protected:
    /// The text of the refusal to open the folder, without its beginning, which is checked.
    [[nodiscard]] std::string reason() const
    {
        const std::string beginning = "Ошибка базы данных кассы: ";
        const std::string text = refusal([this] { till::store::open(folder()); });
        EXPECT_THAT(text, StartsWith(beginning));
        return text.substr(std::min(text.size(), beginning.size()));
    }

    void makeStore() const
    {
        till::store::open(folder());
        runInStore(u"BEGIN"_s);
        for (int number = 0; number < 40; ++number) {
            enqueueText(QString(1000, u'x'));
        }
        runInStore(u"COMMIT"_s);
        till::store::close();
    }
};

} // namespace

TEST_F(StoreRefusal, DatabaseOfANewerTillStaysAsItIs)
{
    makeStore();
    RawDatabase(file()).run(u"PRAGMA user_version=1000000"_s);
    const QByteArray before = bytesOf(file());

    EXPECT_EQ(reason(), "the database was written by a newer till");
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_EQ(reason(), "the database was written by a newer till"); // and again
}

TEST_F(StoreRefusal, DatabaseOfANewerTillKeepsItsKindOfJournal)
{
    makeStore();
    {
        RawDatabase newer(file());
        ASSERT_EQ(newer.text(u"PRAGMA journal_mode=WAL"_s), "wal");
        newer.run(u"PRAGMA user_version=1000000"_s);
    }
    const QByteArray before = bytesOf(file());

    EXPECT_EQ(reason(), "the database was written by a newer till");
    EXPECT_TRUE(bytesOf(file()) == before);
}

TEST_F(StoreRefusal, RefusedDatabaseIsNotOpen)
{
    makeStore();
    RawDatabase(file()).run(u"PRAGMA user_version=1000000"_s);
    ASSERT_EQ(reason(), "the database was written by a newer till");

    EXPECT_EQ(refusal([] { enqueueText(u"one"_s); }), "Ошибка базы данных кассы: no store is open");
}

TEST_F(StoreRefusal, FileThatIsNoDatabaseStaysAsItIs)
{
    ASSERT_TRUE(QDir().mkpath(folder()));
    const QByteArray text = QByteArray("Товарный чек № 17\n").repeated(100);
    writeBytes(file(), text);

    EXPECT_THAT(reason(), StartsWith("file is not a database"));
    EXPECT_TRUE(bytesOf(file()) == text);
}

TEST_F(StoreRefusal, TruncatedDatabaseStaysAsItIs)
{
    makeStore();
    const QByteArray whole = bytesOf(file());
    for (const int size : { 50, 100, 512, 4096, 8192, 20'000 }) {
        SCOPED_TRACE(size);
        ASSERT_GT(whole.size(), size);
        writeBytes(file(), whole.left(size));

        EXPECT_NE(reason(), "");
        EXPECT_TRUE(bytesOf(file()) == whole.left(size));
    }
}

TEST_F(StoreRefusal, RestoredDatabaseIsOpenedAfterARefusal)
{
    makeStore();
    const QByteArray whole = bytesOf(file());
    writeBytes(file(), whole.left(4096));
    ASSERT_NE(reason(), "");
    writeBytes(file(), whole);
    till::store::open(folder());
    enqueueText(u"one"_s);

    EXPECT_EQ(RawDatabase(file()).text(u"SELECT count(*) FROM queue"_s), "41");
}

TEST_F(StoreRefusal, FolderThatCannotBeMadeIsNamed)
{
    writeBytes(folder(), "a file stands where the folder should");

    EXPECT_EQ(reason(), "cannot make the folder " + folder().toStdString());
    EXPECT_EQ(bytesOf(folder()).toStdString(), "a file stands where the folder should");
}

TEST_F(StoreRefusal, FolderBeneathAFileCannotBeMade)
{
    writeBytes(path(u"shop"_s), "a file");

    EXPECT_EQ(refusal([this] { till::store::open(path(u"shop/one/two"_s)); }),
              "Ошибка базы данных кассы: cannot make the folder " + path(u"shop"_s).toStdString());
    EXPECT_EQ(bytesOf(path(u"shop"_s)).toStdString(), "a file");
}

TEST_F(StoreRefusal, FolderInPlaceOfTheFileIsNamed)
{
    ASSERT_TRUE(QDir().mkpath(file() + u"/within"_s));

    EXPECT_EQ(reason(), "cannot open the file " + file().toStdString());
    EXPECT_TRUE(QDir().exists(file() + u"/within"_s));
}

TEST_F(StoreRefusal, FalseStatementHasTheReasonOfTheDatabase)
{
    till::store::open(folder());

    EXPECT_THAT(refusal([] { (void)till::store::prepare(u"SELECT body FROM nowhere"_s); }),
                StartsWith("Ошибка базы данных кассы: no such table: nowhere"));
}
