#include "host/framework/documents_dao.h"
#include "host/framework/save_to_file_logic.h"
#include "tests/store/child_process.h"
#include "tests/store/foreign_document.h"
#include "tests/store/raw_database.h"
#include "tests/store/store_test.h"
#include "till/document/cheque.h"
#include "till/document/return_by_sale.h"
#include "till/store/store.h"

#include <gmock/gmock.h>

#include <limits>

using namespace Qt::StringLiterals;
using ::testing::StartsWith;

namespace {

class DocumentsOfTheTill : public StoreTest {
protected:
    DocumentsOfTheTill()
    {
        till::store::open(folder());
    }

    static void save(const QSharedPointer<AbstractDocument>& document, const QString& extra = {})
    {
        MockFactory<SaveToFileLogic>::create()->save(document, extra);
    }

    [[nodiscard]] static QSharedPointer<AbstractDocument> read(const QVariant& key)
    {
        return DocumentsDao().getDocument(key, 0);
    }
};

[[nodiscard]] QSharedPointer<till::Cheque> sale(const QString& identity, int number)
{
    till::ChequeHead head;
    head.number = number;
    return QSharedPointer<till::Cheque>::create(head, identity);
}

} // namespace

TEST_F(DocumentsOfTheTill, SavedOneIsFound)
{
    save(sale(u"a"_s, 1041));
    save(sale(u"b"_s, 1042));

    ASSERT_TRUE(read(u"b"_s));
    EXPECT_EQ(read(u"b"_s)->getChequeNumber(), 1042);
    EXPECT_EQ(read(u"b"_s)->getDocumentIdentity().toStdString(), "b");
    EXPECT_NE(read(u"b"_s), read(u"b"_s)) << "each reading makes a document of its own";
}

TEST_F(DocumentsOfTheTill, AbsentOneIsNull)
{
    save(sale(u"a"_s, 1041));

    EXPECT_TRUE(read(u"b"_s).isNull());
    EXPECT_TRUE(read(u"A"_s).isNull());
    EXPECT_TRUE(read(u"a "_s).isNull());
    EXPECT_TRUE(read(u"%"_s).isNull());
    EXPECT_TRUE(read(QVariant()).isNull());
    EXPECT_TRUE(read(0).isNull());
}

TEST_F(DocumentsOfTheTill, KeyMayBeANumberOrItsText)
{
    save(sale(u"77"_s, 1041));
    save(sale(u"077"_s, 1042));

    EXPECT_EQ(read(77)->getChequeNumber(), 1041);
    EXPECT_EQ(read(Q_INT64_C(77))->getChequeNumber(), 1041);
    EXPECT_EQ(read(u"77"_s)->getChequeNumber(), 1041);
    EXPECT_EQ(read(u"077"_s)->getChequeNumber(), 1042);
}

TEST_F(DocumentsOfTheTill, KeyFoundInAStoredReturnFindsItsSale)
{
    save(sale(u"77"_s, 1041));
    till::ChequeHead head;
    head.sourceDocumentId = 77;
    save(QSharedPointer<till::ReturnBySale>::create(nullptr, head, u"back"_s));

    const auto found = read(read(u"back"_s)->getSourceDocumentId());
    ASSERT_TRUE(found);
    EXPECT_EQ(found->getChequeNumber(), 1041);
}

TEST_F(DocumentsOfTheTill, FlagsAreTheHostsAndChangeNothing)
{
    save(sale(u"a"_s, 1041));

    EXPECT_TRUE(DocumentsDao().getDocument(u"a"_s, 1));
    EXPECT_TRUE(DocumentsDao().getDocument(u"a"_s, -1));
}

TEST_F(DocumentsOfTheTill, DamagedOneIsRefusedAndTheOthersAreRead)
{
    save(sale(u"a"_s, 1041));
    save(sale(u"b"_s, 1042));
    for (const QString& body : { u"''"_s, u"'text'"_s, u"'{}'"_s, u"substr(body, 1, 100)"_s, u"x'ff00ff'"_s }) {
        save(sale(u"a"_s, 1041));
        RawDatabase(file()).run(u"UPDATE documents SET body = %1 WHERE identity = 'a'"_s.arg(body));

        EXPECT_THAT(refusal([] { (void)read(u"a"_s); }), StartsWith("Документ не записывается и не читается: "))
            << body.toStdString();
    }

    EXPECT_EQ(read(u"b"_s)->getChequeNumber(), 1042);
    save(sale(u"a"_s, 1043));
    EXPECT_EQ(read(u"a"_s)->getChequeNumber(), 1043);
}

TEST_F(DocumentsOfTheTill, SavingAgainReplaces)
{
    const auto document = sale(u"a"_s, 1041);
    document->addLine({});
    document->setValue(u"Vantiro"_s, u"offlineMode"_s, true);
    save(document, u"first"_s);
    document->remove(1);
    document->setValue(u"Vantiro"_s, u"offlineMode"_s, false);
    save(document, u"second"_s);

    EXPECT_EQ(RawDatabase(file()).text(u"SELECT identity, extra FROM documents"_s), "a|second");
    EXPECT_EQ(read(u"a"_s)->getPositionCount(), 0);
    EXPECT_EQ(read(u"a"_s)->getDeletedGoodsItems().size(), 1);
    EXPECT_EQ(read(u"a"_s)->getValue(u"Vantiro"_s, u"offlineMode"_s, {}), QVariant(false));
}

TEST_F(DocumentsOfTheTill, FormerVersionIsGoneFromTheBytesOfTheStore)
{
    const auto document = sale(u"a"_s, 1041);
    document->setPluginDataJson(QString(20'000, u'x') + u"former"_s);
    save(document);
    ASSERT_TRUE(bytesOf(file()).contains("former"));
    document->setPluginDataJson(QString());
    save(document);

    EXPECT_FALSE(bytesOf(file()).contains("former"));
}

TEST_F(DocumentsOfTheTill, WhatIsChangedAfterSavingIsNotSaved)
{
    const auto document = sale(u"a"_s, 1041);
    save(document);
    document->setValue(u"Vantiro"_s, u"offlineMode"_s, true);

    EXPECT_FALSE(read(u"a"_s)->getValue(u"Vantiro"_s, u"offlineMode"_s, {}).isValid());
}

TEST_F(DocumentsOfTheTill, OneOfAnotherHostIsRefusedAndNothingIsSaved)
{
    const std::string reason = "Документ не записывается и не читается: the document is not of this till";

    EXPECT_EQ(refusal([] { save(QSharedPointer<ForeignDocument>::create()); }), reason);
    EXPECT_EQ(refusal([] { save(nullptr); }), reason);
    EXPECT_EQ(RawDatabase(file()).text(u"SELECT count(*) FROM documents"_s), "0");
}

TEST_F(DocumentsOfTheTill, OneThatCannotBeWrittenLeavesTheFormerVersion)
{
    save(sale(u"a"_s, 1041));
    const auto unwritable = sale(u"a"_s, 1042);
    unwritable->head.documentSum = std::numeric_limits<double>::infinity();
    EXPECT_NE(refusal([&unwritable] { save(unwritable); }), "(none)");

    EXPECT_EQ(read(u"a"_s)->getChequeNumber(), 1041);
}

TEST_F(DocumentsOfTheTill, NewProcessReadsWhatThisOneHasSaved)
{
    const auto document = sale(u"0077"_s, 1042);
    till::LineFields line;
    line.price = 89.9;
    line.sum = 80.05;
    document->addLine(line);
    document->addLine(line);
    document->setValue(u"Vantiro"_s, u"offlineMode"_s, u"да"_s);
    document->setPluginDataJson(uR"({"vantiro":{"chequeNo":"1042"}})"_s);
    save(document);
    const QJsonObject facts = factsOf({ u"read"_s, folder(), u"0077"_s });

    EXPECT_EQ(facts.value(u"identity"_s).toString().toStdString(), "0077");
    EXPECT_EQ(facts.value(u"number"_s).toInt(), 1042);
    EXPECT_EQ(facts.value(u"lines"_s).toInt(), 2);
    EXPECT_EQ(facts.value(u"sum"_s).toDouble(), 160.1);
    EXPECT_EQ(facts.value(u"offlineMode"_s).toString().toStdString(), "да");
    EXPECT_EQ(facts.value(u"pluginDataJson"_s).toString().toStdString(), R"({"vantiro":{"chequeNo":"1042"}})");
}

TEST_F(DocumentsOfTheTill, NewProcessFindsNoneWhereNoneWasSaved)
{
    EXPECT_TRUE(factsOf({ u"read"_s, folder(), u"0077"_s }).isEmpty());
}
