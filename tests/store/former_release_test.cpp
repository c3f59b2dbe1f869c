#include "host/document/abstract_document.h"
#include "host/document/goods_item.h"
#include "tests/store/store_test.h"
#include "till/store/document_states.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

using namespace Qt::StringLiterals;
using till::store::QueueRecord;
using till::store::RecordState;

// Databases that released tills have written, one for each form that they have had, kept as they were. In each stand a
// cheque in every state but the damaged one, and a message in every state.

namespace {

class DatabaseOfRelease010 : public StoreTest {
protected:
    DatabaseOfRelease010()
    {
        till::store::open(folder());
        till::store::close();
        writeBytes(file(), bytesOf(QStringLiteral(VANTIRO_STORE_FIXTURES "/till-0.1.0.sqlite")));
        till::store::open(folder());
    }

    [[nodiscard]] static QString bodyOf(const QueueRecord& record)
    {
        return QJsonDocument::fromJson(record.message).object().value(u"body"_s).toString();
    }
};

[[nodiscard]] std::string told(const QueueRecord& record)
{
    return u"%1 %2 state %3, attempts %4, queued %5: %6"_s
        .arg(QString::number(record.id), record.queue, QString::number(static_cast<int>(record.state)),
             QString::number(record.attempts), record.queuedAt.toUTC().toString(Qt::ISODateWithMs), record.reason)
        .toStdString();
}

} // namespace

TEST_F(DatabaseOfRelease010, ListsItsDocuments)
{
    QStringList entries;
    for (const till::store::DocumentEntry& entry : till::store::documents()) {
        entries.append(u"%1: type %2, state %3"_s.arg(entry.number).arg(entry.type).arg(static_cast<int>(entry.state)));
    }
    EXPECT_EQ(entries.join(u'\n').toStdString(),
              "2001: type 1, state 3\n" // closed
              "2002: type 1, state 2\n" // aside
              "2003: type 1, state 5\n" // cancelled
              "2004: type 1, state 3\n"
              "2005: type 1, state 3\n"
              "2006: type 1, state 3\n"
              "2007: type 2, state 3\n"
              "2008: type 1, state 0"); // open
}

TEST_F(DatabaseOfRelease010, GivesItsMessagesInTheirStates)
{
    const QList<QueueRecord> records = till::store::queueRecords();
    ASSERT_EQ(records.size(), 4);
    EXPECT_EQ(told(records.at(0)), "1 vantiro state 0, attempts 0, queued 2026-11-21T11:38:00.471Z: ");
    EXPECT_EQ(told(records.at(1)),
              "2 vantiro state 1, attempts 0, queued 2026-11-21T11:38:00.597Z: held by the operator");
    EXPECT_EQ(told(records.at(2)),
              "3 vantiro state 2, attempts 1, queued 2026-11-21T11:38:01.023Z: Сервис временно недоступен");
    EXPECT_EQ(told(records.at(3)),
              "4 vantiro state 3, attempts 0, queued 2026-11-21T11:38:01.178Z: the message cannot be read");
    EXPECT_TRUE(bodyOf(records.at(0)).contains(u"<tem:OfflineAccrual>"));
    EXPECT_TRUE(bodyOf(records.at(0)).contains(uR"(ChequeUID="4082DBA8-8FC4-5728-ABBE-68CA1E769E28")"));
    EXPECT_EQ(records.at(3).message.size(), 200) << "the damaged one is kept as it is";
}

TEST_F(DatabaseOfRelease010, GivesTheOpenChequeWithItsPoints)
{
    const QSharedPointer<AbstractDocument> cheque
        = till::store::documentOf(u"372fed39-ccd6-4591-92ef-d327cc08dcee"_s);
    ASSERT_TRUE(cheque);
    EXPECT_EQ(cheque->getChequeNumber(), 2008);
    EXPECT_EQ(cheque->getShiftNumber(), 7);
    EXPECT_EQ(cheque->getOpenTime().toUTC().toString(Qt::ISODateWithMs).toStdString(), "2026-11-21T11:38:01.211Z");
    ASSERT_EQ(cheque->getGoodsItems().size(), 1);
    EXPECT_EQ(cheque->getGoodsItems().constFirst()->getBcode().toStdString(), "4601234567893");
    EXPECT_EQ(cheque->getDocumentSum(), 330.0);
    EXPECT_EQ(cheque->getSumToPay(), 360.0);
    EXPECT_EQ(cheque->getDocumentImpacts().size(), 1);
    EXPECT_TRUE(cheque->hasCardRecord(7));
    EXPECT_EQ(cheque->getValue(u"Vantiro"_s, u"bonusImpacts"_s, QVariant()).toList().size(), 1);
    EXPECT_FALSE(cheque->getValue(u"Vantiro"_s, u"offlineMode"_s, true).toBool());
}

TEST_F(DatabaseOfRelease010, EveryDocumentIsReadWhole)
{
    for (const till::store::DocumentEntry& entry : till::store::documents()) {
        const QSharedPointer<AbstractDocument> document = till::store::documentOf(entry.identity);
        ASSERT_TRUE(document) << entry.number;
        EXPECT_EQ(document->getChequeNumber(), entry.number);
    }
}

TEST_F(DatabaseOfRelease010, GoesOnWithTheNumbersOfItsQueue)
{
    till::store::removeDelivered(1);
    till::store::removeDelivered(4);
    enqueueText(u"a new one"_s);

    QStringList ids;
    for (const QueueRecord& record : till::store::queueRecords()) {
        ids.append(QString::number(record.id));
    }
    EXPECT_EQ(ids.join(u' ').toStdString(), "2 3 5");
    EXPECT_EQ(till::store::firstPending()->id, 5);
}
