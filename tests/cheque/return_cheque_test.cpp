#include "tests/cheque/cheque_support.h"
#include "tests/support/client_under_test.h"
#include "tests/support/document_builder.h"
#include "tests/support/scripted_documents_dao.h"
#include "tests/support/xml_compare.h"

using namespace Qt::StringLiterals;

namespace {

const std::string sourceNotFound
    = "VantiroException vantiroSourceDocNotFound: Не обнаружен источник для документа возврата";

class ReturnCheque : public ChequeTest {
protected:
    ReturnCheque()
    {
        document.type(EDocumentType::returnBySale).closed().line(Goods(1, u"1001"_s, 90.0));
    }

    /// The sale 900, found by the key 4711.
    [[nodiscard]] DocumentBuilder storedSale() const
    {
        return DocumentBuilder().number(900).openedAt(at("2024-03-01T10:00:00")).closedAt(at("2024-03-01T10:05:00"));
    }

    ScriptedDocumentsDao dao;
    DocumentBuilder document; // a closed return by sale, of one line
};

TEST_F(ReturnCheque, NamesTheSaleThatItsKeyFinds)
{
    dao.add(4711, storedSale().build());

    const QDomDocument cheque = client.buildBackXmlCheck(document.card(u"9000000001"_s).sourceKey(4711).build());

    EXPECT_TRUE(sameXml(cheque, uR"(
        <Cheque xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema"
            ShiftNo="17" ChequeUID="11116E73-1C03-5DE6-9130-5F9925AE8AB4" ChequeNo="1042"
            OpenTime="2024-03-05T14:07:09" CloseTime="2024-03-05T14:09:30" Amount="90.00" SubtractedBonus="0.00"
            PositionCount="1" ChequeType="Return" Status="Closed">
          <DiscountCard DiscountCardID="0" EnteredAsPhoneNumber="false" SubtractAmount="0.00" SubtractedBonus="0"
              DiscountCardNo="9000000001" BonusCard="true"/>
          <SaleCheque ChequeNo="900" OpenTime="2024-03-01T10:00:00" CloseTime="2024-03-01T10:05:00" Amount="0"
              SubtractedBonus="0.00" PositionCount="0" Status="Closed" ChequeType="Sale">
            <ChequeLines/>
          </SaleCheque>
          <ChequeLines>
            <ChequeLine ChequeLineNo="1" NoPayBonus="false" NoAddBonus="false" NoDiscounts="false" Price="90.00"
                Quantity="1.000" Amount="90.00" MinAmount="0.00" MinPrice="0.00" MaxDiscount="100.0"
                BonusDiscount="0.00">
              <Item ItemID="1001" Barcode=""/>
              <Discounts/>
            </ChequeLine>
          </ChequeLines>
          <Discounts/>
          <Payments/>
          <Messages/>
        </Cheque>)"_s));
    EXPECT_EQ(dao.questions(), QStringList(u"4711 flags 0"_s));
}

TEST_F(ReturnCheque, SaleIsLookedUpByWhateverKeyTheHostGives)
{
    dao.add(u"shop-1/900"_s, storedSale().build());

    const QDomDocument cheque = client.buildBackXmlCheck(document.sourceKey(u"shop-1/900"_s).build());

    EXPECT_EQ(attribute(below(cheque.documentElement(), "SaleCheque"), "ChequeNo"), "900");
    EXPECT_EQ(dao.questions(), QStringList(u"shop-1/900 flags 0"_s));
}

TEST_F(ReturnCheque, WithoutKeyNamesTheSaleOfItsRecord)
{
    const auto source = saleSource(901, at("2024-02-29T23:59:59"), at("2024-03-01T00:01:00"));

    const QDomDocument cheque = client.buildBackXmlCheck(document.buildReturn(source));

    EXPECT_EQ(attributesOf(below(cheque.documentElement(), "SaleCheque")),
              "Amount = 0\n"
              "ChequeNo = 901\n"
              "ChequeType = Sale\n"
              "CloseTime = 2024-03-01T00:01:00\n"
              "OpenTime = 2024-02-29T23:59:59\n"
              "PositionCount = 0\n"
              "Status = Closed\n"
              "SubtractedBonus = 0.00");
    EXPECT_EQ(childrenOf(below(cheque.documentElement(), "SaleCheque")), "ChequeLines");
    EXPECT_EQ(dao.questions(), QStringList());
}

TEST_F(ReturnCheque, KeyWinsOverTheRecord)
{
    dao.add(4711, storedSale().build());
    const auto source = saleSource(901, at("2024-02-29T23:59:59"), at("2024-03-01T00:01:00"));

    const QDomDocument cheque = client.buildBackXmlCheck(document.sourceKey(4711).buildReturn(source));

    EXPECT_EQ(attribute(below(cheque.documentElement(), "SaleCheque"), "ChequeNo"), "900");
}

TEST_F(ReturnCheque, KeyThatFindsNothingDoesNotFallBackOnTheRecord)
{
    const auto source = saleSource(901, at("2024-02-29T23:59:59"), at("2024-03-01T00:01:00"));
    const auto back = document.sourceKey(4711).buildReturn(source);

    EXPECT_EQ(failureOf([&] { (void)client.buildBackXmlCheck(back); }), sourceNotFound);
}

TEST_F(ReturnCheque, WithUnknownSaleIsRefused)
{
    const auto keyOfNothing = DocumentBuilder(document).sourceKey(4712).build();
    const auto recordOfNothing = document.buildReturn(nullptr);
    const auto neither = document.build();

    EXPECT_EQ(failureOf([&] { (void)client.buildBackXmlCheck(keyOfNothing); }), sourceNotFound);
    EXPECT_EQ(failureOf([&] { (void)client.buildBackXmlCheck(recordOfNothing); }), sourceNotFound);
    EXPECT_EQ(failureOf([&] { (void)client.buildBackXmlCheck(neither); }), sourceNotFound);
}

TEST_F(ReturnCheque, WithUnknownSaleIsNotSent)
{
    const ScriptedRestClient server;
    client.setHosts({ QUrl(u"http://server/"_s) });
    const auto back = document.build();

    EXPECT_EQ(failureOf([&] { client.accrual(back); }), sourceNotFound);
    EXPECT_EQ(server.posts().size(), 0);
}

struct TypeRow {
    int documentType;
};

class TypeOfReturnCheque : public ReturnCheque, public testing::WithParamInterface<TypeRow> { };

TEST_P(TypeOfReturnCheque, IsReturnWhateverTheDocument)
{
    dao.add(4711, storedSale().build());

    const QDomElement cheque
        = rootOf(client.buildBackXmlCheck(document.type(GetParam().documentType).sourceKey(4711).build()));

    EXPECT_EQ(attribute(cheque, "ChequeType"), "Return");
    EXPECT_EQ(attribute(cheque, "Status"), "Closed");
}

INSTANTIATE_TEST_SUITE_P(Types, TypeOfReturnCheque,
                         testing::Values(TypeRow { 25 }, TypeRow { 2 }, TypeRow { 1 }, TypeRow { 7 }));

TEST_F(ReturnCheque, WithoutCardHasNoCard)
{
    dao.add(4711, storedSale().build());

    EXPECT_EQ(childrenOf(client.buildBackXmlCheck(document.sourceKey(4711).build()).documentElement()),
              "SaleCheque ChequeLines Discounts Payments Messages");
}

TEST_F(ReturnCheque, ShowsPointsAndDiscountsOfItsLines)
{
    dao.add(4711, storedSale().build());
    document.sourceKey(4711).impact(bonusImpact({ { 1, 10.0 } }));
    document.discount(Detail(record_name::positionDiscount).code(41), { { 1, 2.0 } });

    const QDomDocument cheque = client.buildBackXmlCheck(document.build());

    EXPECT_EQ(attribute(cheque.documentElement(), "SubtractedBonus"), "10.00");
    EXPECT_EQ(attribute(lineOf(cheque, 1), "Amount"), "100.00");
    EXPECT_EQ(attribute(lineOf(cheque, 1), "BonusDiscount"), "10.00");
    EXPECT_EQ(discountsOf(lineOf(cheque, 1)), "41 Amount 0 2.00");
}

TEST_F(ReturnCheque, SaleWithoutClosingTimeSaysNothingInItsPlace)
{
    dao.add(4711, storedSale().closedAt({}).build());

    const QDomDocument byKey = client.buildBackXmlCheck(DocumentBuilder(document).sourceKey(4711).build());
    const QDomDocument byRecord
        = client.buildBackXmlCheck(document.buildReturn(saleSource(901, at("2024-02-29T23:59:59"), {})));

    EXPECT_EQ(attribute(below(byKey.documentElement(), "SaleCheque"), "CloseTime"), "");
    EXPECT_EQ(attribute(below(byRecord.documentElement(), "SaleCheque"), "CloseTime"), "");
}

TEST_F(ReturnCheque, SaleElementIsWrittenFromWhatIsGiven)
{
    QDomDocument target;
    QDomElement cheque = newElement(target, "Cheque");

    client.addSaleChequeTag(-3, at("2024-02-29T23:59:59"), QDateTime(), cheque);

    EXPECT_TRUE(sameXml(target, uR"(
        <Cheque>
          <SaleCheque ChequeNo="-3" OpenTime="2024-02-29T23:59:59" CloseTime="" Amount="0" SubtractedBonus="0.00"
              PositionCount="0" Status="Closed" ChequeType="Sale">
            <ChequeLines/>
          </SaleCheque>
        </Cheque>)"_s));
}

TEST_F(ReturnCheque, MissingSaleIsLeftOutWhereItIsNotRequired)
{
    QDomDocument target;
    QDomElement cheque = newElement(target, "Cheque");

    client.addSaleChequeTag(DocumentBuilder(document).sourceKey(4712).build(), cheque, false);
    client.addSaleChequeTag(document.buildReturn(nullptr), cheque, false);
    client.addSaleChequeTag(document.build(), cheque, false);

    EXPECT_TRUE(sameXml(target, u"<Cheque/>"_s));
}

TEST_F(ReturnCheque, KnownSaleIsNamedWhereItIsNotRequired)
{
    dao.add(4711, storedSale().build());
    QDomDocument target;
    QDomElement cheque = newElement(target, "Cheque");

    client.addSaleChequeTag(document.sourceKey(4711).build(), cheque, false);

    EXPECT_EQ(attribute(below(cheque, "SaleCheque"), "ChequeNo"), "900");
}

struct NumberRow {
    const char* pluginData;
    const char* chequeNumber; // of a sale that the host knows as 900
};

class NumberOfSale : public ReturnCheque, public testing::WithParamInterface<NumberRow> { };

TEST_P(NumberOfSale, IsTheOneThatTheServerKnowsItBy)
{
    const QString pluginData = QString::fromUtf8(GetParam().pluginData);
    dao.add(4711, storedSale().pluginDataJson(pluginData).build());
    const auto source = saleSource(900, at("2024-03-01T10:00:00"), at("2024-03-01T10:05:00"), pluginData);

    const QDomDocument byKey = client.buildBackXmlCheck(DocumentBuilder(document).sourceKey(4711).build());
    const QDomDocument byRecord = client.buildBackXmlCheck(document.buildReturn(source));

    EXPECT_EQ(attribute(below(byKey.documentElement(), "SaleCheque"), "ChequeNo"), GetParam().chequeNumber);
    EXPECT_EQ(attribute(below(byRecord.documentElement(), "SaleCheque"), "ChequeNo"), GetParam().chequeNumber);
}

INSTANTIATE_TEST_SUITE_P(
    PluginData, NumberOfSale,
    testing::Values(NumberRow { R"({"vantiro":{"chequeNo":"12"}})", "12" },
                    NumberRow { R"({"other":{"chequeNo":"5"},"vantiro":{"chequeNo":"12","more":1}})", "12" },
                    NumberRow { R"({"vantiro":{"chequeNo":"-12"}})", "-12" },
                    NumberRow { R"({"vantiro":{"chequeNo":"2147483647"}})", "2147483647" },
                    // Nothing stored by us: the host's number stands.
                    NumberRow { R"({"other":{}})", "900" }, NumberRow { R"({"other":{"chequeNo":"12"}})", "900" },
                    NumberRow { R"({"Vantiro":{"chequeNo":"12"}})", "900" }, NumberRow { "{}", "900" },
                    NumberRow { "", "900" }, NumberRow { "[]", "900" }, NumberRow { R"("vantiro")", "900" },
                    NumberRow { R"({"vantiro":{"chequeNo":"12"})", "900" }, NumberRow { "не JSON", "900" },
                    // Stored by us, but no number.
                    NumberRow { R"({"vantiro":{}})", "0" }, NumberRow { R"({"vantiro":null})", "0" },
                    NumberRow { R"({"vantiro":"12"})", "0" }, NumberRow { R"({"vantiro":{"chequeNo":null}})", "0" },
                    NumberRow { R"({"vantiro":{"chequeNo":12}})", "0" },
                    NumberRow { R"({"vantiro":{"chequeNo":""}})", "0" },
                    NumberRow { R"({"vantiro":{"chequeNo":"abc"}})", "0" },
                    NumberRow { R"({"vantiro":{"chequeNo":"12a"}})", "0" },
                    NumberRow { R"({"vantiro":{"chequeNo":"0x10"}})", "0" },
                    NumberRow { R"({"vantiro":{"chequeNo":"2147483648"}})", "0" },
                    NumberRow { R"({"vantiro":{"chequeNo":"99999999999"}})", "0" }));

} // namespace
