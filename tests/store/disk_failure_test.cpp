#include "host/framework/documents_dao.h"
#include "tests/store/child_process.h"
#include "tests/store/numbered_records.h"
#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/store/store.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using ::testing::StartsWith;

namespace {

class DiskFailure : public StoreTest {
protected:
    /// The numbers in the queue; each record is checked to be whole.
    [[nodiscard]] std::string queued() const
    {
        QStringList numbers;
        for (const QString& row : RawDatabase(file()).rows(u"SELECT message FROM queue ORDER BY id"_s)) {
            const QJsonObject message = QJsonDocument::fromJson(row.toUtf8()).object();
            const int number = message.value(u"number"_s).toInt();
            EXPECT_TRUE(message == numberedMessage(number)) << number;
            numbers.append(QString::number(number));
        }
        return numbers.join(u' ').toStdString();
    }

    [[nodiscard]] std::string integrity() const
    {
        return RawDatabase(file()).text(u"PRAGMA integrity_check"_s);
    }
};

} // namespace

TEST_F(DiskFailure, FullDiskRefusesAndHarmsNothingAndWorkGoesOnLater)
{
    const QJsonObject facts = factsOf({ u"full-disk"_s, folder() });

    for (const QString& kind : { u"queue"_s, u"document"_s }) {
        const QJsonArray refusals = facts.value(kind).toArray();
        EXPECT_EQ(refusals.size(), 6);
        for (const QJsonValue& text : refusals) {
            EXPECT_THAT(text.toString().toStdString(), StartsWith("Ошибка базы данных кассы: ")) << kind.toStdString();
        }
    }
    EXPECT_EQ(queued(), "1 2 3 4 5 6 7");
    EXPECT_EQ(integrity(), "ok");
    till::store::open(folder());
    const auto document = DocumentsDao().getDocument(u"kept"_s, 0);
    ASSERT_TRUE(document);
    EXPECT_EQ(document->getChequeNumber(), 2);
    EXPECT_EQ(document->getPluginDataJson().toStdString(), numberedText(2).toStdString());
}

TEST_F(DiskFailure, FileThatMayOnlyBeReadRefusesAndHarmsNothingAndWorkGoesOnLater)
{
    const QJsonObject facts = factsOf({ u"read-only"_s, folder() });

    EXPECT_THAT(facts.value(u"enqueue"_s).toString().toStdString(),
                StartsWith("Ошибка базы данных кассы: attempt to write"));
    EXPECT_THAT(facts.value(u"save"_s).toString().toStdString(),
                StartsWith("Ошибка базы данных кассы: attempt to write"));
    EXPECT_EQ(facts.value(u"open"_s).toString().toStdString(),
              "Ошибка базы данных кассы: cannot open the file " + file().toStdString());
    EXPECT_EQ(queued(), "1 2");
    EXPECT_EQ(integrity(), "ok");
}
