#include "host/facilities/rest_client.h"
#include "tests/bonus/impact_text.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/sorted_attributes.h"
#include "tests/foreign/foreign_service.h"
#include "tests/support/client_under_test.h"
#include "tests/support/scripted_queue.h"

#include <QMap>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString declaration = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
const QString cardNumber = QStringLiteral("9000000001");

/// The client at a foreign service, over the till's own HTTP client.
class RoundTrip : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        service = std::make_unique<ForeignService>();
    }

    static void TearDownTestSuite()
    {
        service.reset();
    }

    void SetUp() override
    {
        ASSERT_TRUE(service->isRunning());
        client.setHosts({ QUrl(service->address()) });
        client.setTimeout(10);
    }

    void TearDown() override
    {
        EXPECT_TRUE(service->takeUnderstood().isEmpty()) << "a request that nobody has looked at";
    }

    /// The service has understood exactly one request: this operation, with these parameters. The order of attributes
    /// within a parameter is left open.
    static QJsonObject expectUnderstood(const QString& operation, const QMap<QString, QString>& parameters)
    {
        const QList<QJsonObject> requests = service->takeUnderstood();
        EXPECT_EQ(requests.size(), 1) << readable(service->errorOutput());
        if (requests.isEmpty()) {
            return {};
        }
        QJsonObject request = requests.constFirst();
        EXPECT_EQ(readable(request.value(QStringLiteral("operation")).toString()), readable(operation));
        EXPECT_EQ(readable(request.value(QStringLiteral("action")).toString()),
                  "http://tempuri.org/IVantiroService/" + readable(operation));
        EXPECT_EQ(readable(request.value(QStringLiteral("contentType")).toString()), "text/xml; charset=UTF-8");
        const QJsonObject understood = request.value(QStringLiteral("parameters")).toObject();
        EXPECT_EQ(readable(understood.keys()), readable(parameters.keys()));
        for (auto it = parameters.cbegin(); it != parameters.cend(); ++it) {
            EXPECT_TRUE(understood.value(it.key()).isString()) << readable(it.key());
            EXPECT_EQ(readable(sortedAttributes(understood.value(it.key()).toString())),
                      readable(sortedAttributes(it.value())));
        }
        return request;
    }

    static inline std::unique_ptr<ForeignService> service;

    ClientUnderTest client { {} };
    QSharedPointer<till::Cheque> document = sample::cheque(EDocumentType::sale);
    QSharedPointer<till::Card> card = sample::addCard(*document);
    const QString openCheque = declaration + QString::fromUtf8(sample::openChequeWithCard());
    const QString closedCheque
        = declaration
        + QString::fromUtf8(
              sample::chequeTag(
                  R"(Amount="179.80" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Closed")")
              + sample::cardElement("0.00") + sample::lines("179.80", "0.00") + sample::sections + "</Cheque>\n");
};

}

TEST_F(RoundTrip, IsCardValid)
{
    EXPECT_TRUE(client.isCardValid(cardNumber));
    expectUnderstood(QStringLiteral("IsCardValid"), { { QStringLiteral("discountCardNumber"), cardNumber } });

    EXPECT_FALSE(client.isCardValid(QStringLiteral("<7 & \"8\"> карта")));
    expectUnderstood(QStringLiteral("IsCardValid"),
                     { { QStringLiteral("discountCardNumber"), QStringLiteral("<7 & \"8\"> карта") } });
}

TEST_F(RoundTrip, GetCardBalance)
{
    EXPECT_EQ(client.getCardBalance(cardNumber), 1234.5);
    expectUnderstood(QStringLiteral("GetCardBalance"), { { QStringLiteral("discountCardNumber"), cardNumber } });
}

TEST_F(RoundTrip, Ping)
{
    const auto result = client.ping();

    EXPECT_EQ(readable(result->toString()), "сервер доступен - true");
    EXPECT_EQ(result->data.value(QStringLiteral("serverIndex")), QVariant(0));
    expectUnderstood(QStringLiteral("Ping"), {});
}

TEST_F(RoundTrip, GetDiscounts)
{
    const auto impacts = client.getDiscounts(document, {}, {});

    ASSERT_EQ(impacts.size(), 2);
    for (const auto& impact : impacts) {
        impact->getTotals()->setDateTime(QDateTime(QDate(2026, 1, 31), QTime(10, 16)));
    }
    EXPECT_EQ(
        impactTexts(impacts),
        "'Скидка Vantiro на чек' at 2026-01-31T10:16:00, type 2, rate none, mode 2, object 0, position 0, "
        "sum 9.8, code 7, source 2, minimum price kept, card 9000000001, index int 77, details {}\n"
        "'Скидка Vantiro на позицию' at 2026-01-31T10:16:00, type 1, rate double 10, mode 2, object 1, position 1, "
        "sum 17, code 8, source 2, minimum price kept, card 9000000001, index int 77, details {}\n");
    expectUnderstood(QStringLiteral("GetDiscounts"), { { QStringLiteral("cheque"), openCheque } });
}

// What a scanner has read must come through the escapes of the cheque and the CDATA section around it.
TEST_F(RoundTrip, ChequeComesThroughWithItsMarkup)
{
    EXPECT_EQ(client.getDiscounts(document, { { 1, { QStringLiteral("A]]>B<&\"'Ж") } } }, {}).size(), 2);

    QString expected = openCheque;
    expected.replace(QStringLiteral("   <Discounts/>\n"),
                     QStringLiteral("   <Discounts/>\n   <Coupon CouponNo=\"A]]&gt;B&lt;&amp;&quot;'Ж\"/>\n"));
    expectUnderstood(QStringLiteral("GetDiscounts"), { { QStringLiteral("cheque"), expected } });
}

TEST_F(RoundTrip, GetMessages)
{
    EXPECT_EQ(client.getMessages(document, {}, {}, {}),
              (QMap<int, QList<QString>> { { 2, { QStringLiteral("Скидка 10% & баллы") } } }));
    expectUnderstood(QStringLiteral("GetMessages"), { { QStringLiteral("cheque"), openCheque } });
}

TEST_F(RoundTrip, GetCardDiscountAmount)
{
    EXPECT_EQ(client.getCardDiscountAmount(document, {}), 150.75);
    EXPECT_EQ(card->fields.pointsForSpend, 150.75);
    expectUnderstood(
        QStringLiteral("GetCardDiscountAmount"),
        { { QStringLiteral("discountCardNumber"), cardNumber }, { QStringLiteral("cheque"), openCheque } });
}

TEST_F(RoundTrip, SubtractBonus)
{
    const auto impact = client.subtractBonus(document, 100.5);

    EXPECT_EQ(impact->getTotals()->getDiscountSum(), 100.5);
    ASSERT_EQ(impact->getDetails().keys(), QList<int> { 1 });
    EXPECT_EQ(impact->getDetails().value(1)->getDiscountSum(), 100.5);
    expectUnderstood(QStringLiteral("SubtractBonus45"),
                     { { QStringLiteral("discountCardNumber"), cardNumber },
                       { QStringLiteral("amount"), QStringLiteral("100.50") },
                       { QStringLiteral("cheque"), openCheque } });
}

TEST_F(RoundTrip, CancelSubtractBonus)
{
    client.cancelSubtractBonus(document, 100.5);

    expectUnderstood(QStringLiteral("CancelSubtractBonus"),
                     { { QStringLiteral("discountCardNumber"), cardNumber },
                       { QStringLiteral("amount"), QStringLiteral("100.50") },
                       { QStringLiteral("cheque"), openCheque } });
}

TEST_F(RoundTrip, Accrual)
{
    client.accrual(document, {}, {}, {});

    expectUnderstood(QStringLiteral("Accrual"), { { QStringLiteral("cheque"), closedCheque } });
    EXPECT_EQ(readable(sortedAttributes(client.getReport())),
              "<report cached=\"false\" name=\"custom\" title=\"vantiro check\" type=\"document\">\n"
              " <printer op=\"setfont\" size=\"enlarge\"/>\n"
              " <text align=\"center\" maxwidth=\"all\">Спасибо</text>\n"
              " <printer op=\"resetfont\"/>\n"
              "</report>\n");
}

// The record in the queue is all that its delivery needs.
TEST_F(RoundTrip, OfflineAccrual)
{
    const ScriptedQueue queue;
    client.setAuthorizationHeader(QStringLiteral("Basic Og=="));
    client.offlineAccrual(document, {}, {}, {});
    ASSERT_EQ(queue.records().size(), 1);
    const QJsonObject message = queue.records().constFirst().message;

    QHash<QString, QString> headers;
    const QVariantMap recorded = message.value(QStringLiteral("headers")).toObject().toVariantMap();
    for (auto it = recorded.cbegin(); it != recorded.cend(); ++it) {
        headers.insert(it.key(), it.value().toString());
    }
    RestClient delivery;
    delivery.setTimeout(10);
    delivery.post(QUrl(message.value(QStringLiteral("url")).toString()),
                  message.value(QStringLiteral("body")).toString().toUtf8(), headers);

    EXPECT_TRUE(delivery.isSuccess()) << readable(delivery.getErrorText().ru());
    const QJsonObject request
        = expectUnderstood(QStringLiteral("OfflineAccrual"), { { QStringLiteral("cheque"), closedCheque } });
    EXPECT_EQ(readable(request.value(QStringLiteral("authorization")).toString()), "Basic Og==");
}

TEST_F(RoundTrip, GetVerifyCode)
{
    QString found;
    QString code;

    client.getCardNumberAndCodeByPhone(QStringLiteral("+7 (999) 000-00-01"), found, code);

    EXPECT_EQ(readable(found), "5555");
    EXPECT_EQ(readable(code), "1234");
    expectUnderstood(QStringLiteral("GetVerifyCode"),
                     { { QStringLiteral("discountCardNumber"), QStringLiteral("+7 (999) 000-00-01") } });
}

TEST_F(RoundTrip, IsCouponValid)
{
    EXPECT_TRUE(client.isCouponValid(QStringLiteral("vantiro-10")));
    expectUnderstood(QStringLiteral("IsCouponValid"),
                     { { QStringLiteral("couponNumber"), QStringLiteral("vantiro-10") } });
}

TEST_F(RoundTrip, CredentialsArrive)
{
    client.setAuthorizationHeader(QStringLiteral("Basic cm9vdDrRgdC10LrRgNC10YI="));

    EXPECT_TRUE(client.isCardValid(cardNumber));

    const QJsonObject request
        = expectUnderstood(QStringLiteral("IsCardValid"), { { QStringLiteral("discountCardNumber"), cardNumber } });
    EXPECT_EQ(readable(request.value(QStringLiteral("authorization")).toString()), "Basic cm9vdDrRgdC10LrRgNC10YI=");
}

TEST_F(RoundTrip, FaultOfTheServiceIsAFault)
{
    EXPECT_EQ(failureOf([&] { (void)client.isCardValid(QStringLiteral("refused")); }),
              failure::fault("Карта <заблокирована> %1"));
    expectUnderstood(QStringLiteral("IsCardValid"),
                     { { QStringLiteral("discountCardNumber"), QStringLiteral("refused") } });
}

// The prefix of a fault is part of the contract: one with another prefix is an ordinary reply, of no use to the
// operation.
TEST_F(RoundTrip, FaultWithAnotherPrefixIsAnUnusableReply)
{
    client.setHosts({ QUrl(service->rawAddress()) });

    EXPECT_EQ(failureOf([&] { (void)client.isCardValid(QStringLiteral("refused")); }), failure::incorrectAnswer);
    expectUnderstood(QStringLiteral("IsCardValid"),
                     { { QStringLiteral("discountCardNumber"), QStringLiteral("refused") } });
}

// Replies are read by bare names: what shows that rewriting them into the real service's form is not idle.
TEST_F(RoundTrip, ResultWithAPrefixIsAnUnusableReply)
{
    client.setHosts({ QUrl(service->rawAddress()) });

    EXPECT_EQ(failureOf([&] { (void)client.isCardValid(cardNumber); }), failure::incorrectAnswer);
    expectUnderstood(QStringLiteral("IsCardValid"), { { QStringLiteral("discountCardNumber"), cardNumber } });
}

// The foreign service refuses what its description does not know, so its consent means something.
TEST_F(RoundTrip, UnknownOperationIsRefused)
{
    EXPECT_EQ(failureOf([&] { (void)client.exchange(); }).substr(0, 21), "VantiroFaultException");
}
