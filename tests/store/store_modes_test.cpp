#include "tests/store/store_test.h"
#include "till/store/store.h"

#include <QDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// While it lives, a new file is as open to others as its maker asks.
class WideUmask {
public:
    WideUmask()
        : former(::umask(0))
    {
    }

    ~WideUmask()
    {
        ::umask(former);
    }

private:
    Q_DISABLE_COPY_MOVE(WideUmask)

    mode_t former;
};

class StoreModes : public StoreTest { };

} // namespace

TEST_F(StoreModes, FolderAndFileAreClosedToOthersWhateverTheUmask)
{
    const WideUmask umask;
    till::store::open(folder());

    EXPECT_EQ(modeOf(folder()), 0700);
    EXPECT_EQ(modeOf(file()), 0600);
}

TEST_F(StoreModes, FoldersMadeOnTheWayAreClosedToOthers)
{
    const WideUmask umask;
    till::store::open(path(u"shop/till"_s));

    EXPECT_EQ(modeOf(path(u"shop"_s)), 0700);
    EXPECT_EQ(modeOf(path(u"shop/till"_s)), 0700);
}

TEST_F(StoreModes, FoldersOnTheWayThatStoodBeforeKeepTheirMode)
{
    ASSERT_TRUE(QDir().mkdir(path(u"shop"_s)));
    setMode(path(u"shop"_s), 0755);
    till::store::open(path(u"shop/till"_s));

    EXPECT_EQ(modeOf(path(u"shop"_s)), 0755);
}

TEST_F(StoreModes, WiderFolderAndFileAreClosedAtOpening)
{
    till::store::open(folder());
    till::store::close();
    setMode(folder(), 0777);
    setMode(file(), 0666);
    till::store::open(folder());

    EXPECT_EQ(modeOf(folder()), 0700);
    EXPECT_EQ(modeOf(file()), 0600);
}

TEST_F(StoreModes, JournalIsClosedToOthersWhileATransactionIsOpen)
{
    const WideUmask umask;
    till::store::open(folder());
    enqueueText(u"one"_s);
    runInStore(u"BEGIN IMMEDIATE"_s);
    enqueueText(u"two"_s);

    EXPECT_GT(bytesOf(journal()).size(), 0);
    EXPECT_EQ(modeOf(journal()), 0600);
    runInStore(u"ROLLBACK"_s);
}

TEST_F(StoreModes, WiderJournalIsClosedAtOpening)
{
    till::store::open(folder());
    enqueueText(u"one"_s);
    till::store::close();
    ASSERT_NE(modeOf(journal()), -1);
    setMode(journal(), 0644);
    till::store::open(folder());

    EXPECT_EQ(modeOf(journal()), 0600);
}

TEST_F(StoreModes, NothingStandsInTheFolderButTheDatabaseItsJournalAndTheBallast)
{
    till::store::open(folder());
    enqueueText(u"one"_s);

    EXPECT_EQ(QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).join(u' ').toStdString(),
              "till.ballast till.sqlite till.sqlite-journal");
}
