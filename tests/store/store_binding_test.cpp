#include "host/framework/db_queue_broker.h"
#include "host/framework/documents_dao.h"
#include "host/framework/save_to_file_logic.h"
#include "tests/store/store_test.h"
#include "till/document/cheque.h"
#include "till/store/store.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlQuery>

#include <ostream>

using namespace Qt::StringLiterals;

namespace {

struct Text {
    const char* name;
    QString text;
};

void PrintTo(const Text& row, std::ostream* stream)
{
    *stream << row.name;
}

class StoreBinding : public StoreTest, public ::testing::WithParamInterface<Text> {
protected:
    StoreBinding()
    {
        till::store::open(folder());
    }
};

} // namespace

TEST_P(StoreBinding, QueueKeepsNameContentAndExtraAsTheyAre)
{
    const QString& text = GetParam().text;
    DBQueueBroker().enqueue(text, { { u"body"_s, text } }, text);

    QSqlQuery query = till::store::prepare(u"SELECT queue, message, extra FROM queue"_s);
    till::store::execute(query);
    ASSERT_TRUE(query.next());
    EXPECT_TRUE(query.value(0).toString() == text);
    EXPECT_TRUE(QJsonDocument::fromJson(query.value(1).toByteArray()).object().value(u"body"_s).toString() == text);
    EXPECT_TRUE(query.value(2).toString() == text);
    EXPECT_FALSE(query.next());
}

TEST_P(StoreBinding, DocumentIsFoundByItsIdentity)
{
    const QString& text = GetParam().text;
    till::ChequeHead head;
    head.number = 1042;
    const auto document = QSharedPointer<till::Cheque>::create(head, text);
    document->setPluginDataJson(text);
    SaveToFileLogic().save(document, text);
    SaveToFileLogic().save(QSharedPointer<till::Cheque>::create(till::ChequeHead(), u"another"_s), QString());

    const QSharedPointer<AbstractDocument> found = DocumentsDao().getDocument(text, 0);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->getChequeNumber(), 1042);
    EXPECT_TRUE(found->getDocumentIdentity() == text);
    EXPECT_TRUE(found->getPluginDataJson() == text);
}

INSTANTIATE_TEST_SUITE_P(Texts, StoreBinding,
                         ::testing::Values(Text { "SingleQuotes", u"it's ''quoted''"_s },
                                           Text { "DoubleQuotes", u"\"queue\" `queue` [queue]"_s },
                                           Text { "Statement", u"'; DROP TABLE queue; DROP TABLE documents; --"_s },
                                           Text { "PlaceMarkers", u"? ?1 :name @name $name %1 %n"_s },
                                           Text { "Nul", u"before\0after"_s }, Text { "Control", u"a\r\n\t\x01\x1f"_s },
                                           Text { "Cyrillic", u"Баллы за чек № 17 — «Ёлка»"_s },
                                           Text { "Emoji", u"🧾🛒👩🏽‍🍳"_s }, Text { "Digits", u"0042"_s },
                                           Text { "Blanks", u"  two  "_s },
                                           Text { "Mebibyte", QString(1'048'576, u'ж') }),
                         [](const ::testing::TestParamInfo<Text>& row) { return std::string(row.param.name); });
