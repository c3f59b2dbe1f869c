#include "host/framework/documents_dao.h"
#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/store/store.h"

#include <QDir>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

class StoreLifecycle : public StoreTest { };

const QString bodies = u"SELECT json_extract(message, '$.body') FROM queue ORDER BY id"_s;

constexpr const char* closed = "Ошибка базы данных кассы: no store is open";

} // namespace

TEST_F(StoreLifecycle, NothingIsOpenAtFirst)
{
    EXPECT_EQ(refusal([] { (void)till::store::connection(); }), closed);
    EXPECT_EQ(refusal([] { enqueueText(u"one"_s); }), closed);
}

TEST_F(StoreLifecycle, NothingIsOpenAfterClosing)
{
    till::store::open(folder());
    till::store::close();

    EXPECT_EQ(refusal([] { enqueueText(u"one"_s); }), closed);
    EXPECT_EQ(refusal([] { (void)till::store::prepare(u"SELECT 1"_s); }), closed);
    EXPECT_EQ(refusal([] { (void)DocumentsDao().getDocument(u"1"_s, 0); }), closed);
    till::store::close();
}

TEST_F(StoreLifecycle, RecordsStayWhenItIsOpenedAgain)
{
    till::store::open(folder());
    enqueueText(u"one"_s);
    till::store::open(folder());
    enqueueText(u"two"_s);
    till::store::close();
    till::store::open(folder());
    enqueueText(u"three"_s);

    EXPECT_EQ(RawDatabase(file()).text(bodies), "one two three");
}

TEST_F(StoreLifecycle, MovesToAnotherFolderAndBack)
{
    till::store::open(folder());
    enqueueText(u"here"_s);
    till::store::open(path(u"other"_s));
    enqueueText(u"there"_s);
    till::store::open(folder());
    enqueueText(u"again"_s);

    EXPECT_EQ(RawDatabase(file()).text(bodies), "here again");
    EXPECT_EQ(RawDatabase(path(u"other/till.sqlite"_s)).text(bodies), "there");
}

TEST_F(StoreLifecycle, ThreadsMoveWithIt)
{
    till::store::open(folder());
    std::thread([this] {
        enqueueText(u"here"_s);
        std::thread([this] { till::store::open(path(u"other"_s)); }).join();
        enqueueText(u"there"_s);
        till::store::releaseConnection();
    }).join();

    EXPECT_EQ(RawDatabase(file()).text(bodies), "here");
    EXPECT_EQ(RawDatabase(path(u"other/till.sqlite"_s)).text(bodies), "there");
}

TEST_F(StoreLifecycle, FailedMoveLeavesNoStoreOpen)
{
    till::store::open(folder());
    enqueueText(u"here"_s);
    writeBytes(path(u"file"_s), "text");
    EXPECT_NE(refusal([this] { till::store::open(path(u"file/till"_s)); }), "(none)");

    EXPECT_EQ(refusal([] { enqueueText(u"where?"_s); }), closed);
    EXPECT_EQ(RawDatabase(file()).text(bodies), "here");
}

TEST_F(StoreLifecycle, NamelessFolderIsRefusedAndTheCurrentOneStaysAsItIs)
{
    const int before = modeOf(QDir::currentPath());
    const std::string text = refusal([] { till::store::open(QString()); });

    EXPECT_EQ(text, "Ошибка базы данных кассы: no folder is named");
    EXPECT_EQ(modeOf(QDir::currentPath()), before);
    EXPECT_FALSE(QDir().exists(u"till.sqlite"_s));
}

TEST_F(StoreLifecycle, FolderOfARelativeNameIsTheOneOfTheTimeOfOpening)
{
    const QString former = QDir::currentPath();
    ASSERT_TRUE(QDir().mkpath(path(u"elsewhere"_s)));
    ASSERT_TRUE(QDir::setCurrent(path(u"."_s)));
    till::store::open(u"till"_s);
    ASSERT_TRUE(QDir::setCurrent(path(u"elsewhere"_s)));
    till::store::releaseConnection();
    enqueueText(u"one"_s);
    ASSERT_TRUE(QDir::setCurrent(former));

    EXPECT_EQ(RawDatabase(file()).text(bodies), "one");
    EXPECT_FALSE(QDir().exists(path(u"elsewhere/till"_s)));
}
