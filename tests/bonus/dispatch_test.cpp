#include "tests/bonus/accrual_operations.h"
#include "tests/support/cheque_service.h"
#include "tests/support/scripted_queue.h"

#include <gtest/gtest.h>

namespace {

using Document = QSharedPointer<AbstractDocument>;
using Coupons = QMap<int, QList<QString>>;

/// A client that notes which of its virtual operations run, in order. Whoever derives from the client may replace each
/// of them, so the others must call it through the class.
class NotingClient : public BonusClient {
public:
    [[nodiscard]] QDomDocument processSoapMessage(QDomDocument& request, const QDomNode& body,
                                                  const QString& action) override
    {
        note("processSoapMessage " + action);
        return BonusClient::processSoapMessage(request, body, action);
    }

    void createXmlRequest(QDomDocument& request, const QDomNode& body) const override
    {
        note(QStringLiteral("createXmlRequest"));
        BonusClient::createXmlRequest(request, body);
    }

    [[nodiscard]] QHash<QString, QString> createHttpHeaders(const QString& action) const override
    {
        note("createHttpHeaders " + action);
        return BonusClient::createHttpHeaders(action);
    }

    [[nodiscard]] QDomDocument buildXmlCheck(const Document& document, const Coupons& positionCoupons,
                                             const QList<QString>& coupons,
                                             const QList<QSharedPointer<DiscountImpact>>& impacts) const override
    {
        note(QStringLiteral("buildXmlCheck"));
        return BonusClient::buildXmlCheck(document, positionCoupons, coupons, impacts);
    }

    [[nodiscard]] QDomDocument buildAccrualXmlCheck(const QDomDocument& cheque,
                                                    const QList<QSharedPointer<BonusImpact>>& impacts,
                                                    const Coupons& positionCoupons, const QList<QString>& coupons,
                                                    const QList<QSharedPointer<MoneyItem>>& certificates) const override
    {
        note(QStringLiteral("buildAccrualXmlCheck"));
        return BonusClient::buildAccrualXmlCheck(cheque, impacts, positionCoupons, coupons, certificates);
    }

    [[nodiscard]] QDomDocument buildBackXmlCheck(const Document& document) const override
    {
        note(QStringLiteral("buildBackXmlCheck"));
        return BonusClient::buildBackXmlCheck(document);
    }

    [[nodiscard]] QDomDocument buildAccrualAnyXmlCheck(const Document& document) const override
    {
        note(QStringLiteral("buildAccrualAnyXmlCheck"));
        return BonusClient::buildAccrualAnyXmlCheck(document);
    }

    [[nodiscard]] QDomDocument buildAccrualCanceledXmlCheck(const Document& document, const Coupons& positionCoupons,
                                                            const QList<QString>& coupons) const override
    {
        note(QStringLiteral("buildAccrualCanceledXmlCheck"));
        return BonusClient::buildAccrualCanceledXmlCheck(document, positionCoupons, coupons);
    }

    void sendOfflineAccrualRequest(QDomDocument& request, const QDomElement& body) const override
    {
        note(QStringLiteral("sendOfflineAccrualRequest"));
        BonusClient::sendOfflineAccrualRequest(request, body);
    }

    void fillReport(const QDomDocument& reply) override
    {
        note(QStringLiteral("fillReport"));
        BonusClient::fillReport(reply);
    }

    [[nodiscard]] QDomDocument transformReport(const QDomNode& source) const override
    {
        note(QStringLiteral("transformReport"));
        return BonusClient::transformReport(source);
    }

    [[nodiscard]] QList<QDomDocument> transformReports(const QDomDocument& source) const override
    {
        note(QStringLiteral("transformReports"));
        return BonusClient::transformReports(source);
    }

    [[nodiscard]] std::string takeNotes()
    {
        return readable(std::exchange(notes, {}));
    }

private:
    void note(const QString& call) const
    {
        notes.append(call);
    }

    mutable QStringList notes;
};

/// The operations that build the cheque of the pair.
std::string building(const AccrualPair& pair)
{
    if (pair.name == "ReversalBySale") {
        return "buildBackXmlCheck\n";
    }
    if (pair.name == "AnyCheck") {
        return "buildAccrualAnyXmlCheck\n";
    }
    if (pair.name == "CanceledCheck") {
        return "buildAccrualCanceledXmlCheck\n";
    }
    return "buildXmlCheck\nbuildAccrualXmlCheck\n";
}

class AccrualSequence : public testing::TestWithParam<AccrualPair> { };

}

TEST_P(AccrualSequence, OnlineBuildsPostsAndKeepsTheSlip)
{
    ChequeService service;
    NotingClient client;
    service.answerText("Accrual", QString());

    GetParam().online(client, GetParam().document());

    EXPECT_EQ(client.takeNotes(),
              building(GetParam()) + "processSoapMessage Accrual\ncreateXmlRequest\ncreateHttpHeaders Accrual"
                  + (GetParam().keepsSlip ? "\nfillReport" : ""));
    EXPECT_TRUE(service.take().body.contains("tem:Accrual"));
}

TEST_P(AccrualSequence, OfflineBuildsAndQueues)
{
    const ScriptedQueue queue;
    NotingClient client;

    GetParam().offline(client, GetParam().document());

    EXPECT_EQ(client.takeNotes(),
              building(GetParam()) + "sendOfflineAccrualRequest\ncreateXmlRequest\ncreateHttpHeaders OfflineAccrual");
    EXPECT_EQ(queue.records().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Pairs, AccrualSequence, testing::ValuesIn(accrualPairs()),
                         [](const testing::TestParamInfo<AccrualPair>& tested) { return tested.param.name; });

TEST(SlipSequence, SlipsAreTransformedThroughTheClass)
{
    NotingClient client;

    ASSERT_TRUE(client.lastReport.setContent(QStringLiteral("<doc/>")));
    EXPECT_FALSE(client.getReport().isEmpty());
    EXPECT_EQ(client.takeNotes(), "transformReport");

    ASSERT_TRUE(client.lastReport.setContent(QStringLiteral("<docs><a><doc/></a><a><doc/></a></docs>")));
    EXPECT_EQ(client.getReports().size(), 2);
    EXPECT_EQ(client.takeNotes(), "transformReports\ntransformReport\ntransformReport");
}
