#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/log_recorder.h"
#include "tests/support/scripted_dialog.h"

#include <gtest/gtest.h>

namespace {

const std::string sumNotFound
    = "VantiroException vantiroPaymentSumNotFound: В ответе от сервера не найдена максимальная сумма оплаты";

/// A discount of the whole cheque that the server has just granted.
QSharedPointer<DiscountImpact> discountOfCheque(double sum)
{
    const auto totals = QSharedPointer<DocumentImpactDetail>::create();
    totals->setDiscountSum(sum);
    return QSharedPointer<DiscountImpact>::create(totals);
}

class DiscountAmount : public testing::Test {
protected:
    /// Asks by the number of a card that the document does not hold.
    [[nodiscard]] double ask()
    {
        return client.getCardDiscountAmount(QStringLiteral("9000000001"), document, {});
    }

    void expectRequest()
    {
        service.expect("GetCardDiscountAmount",
                       "   <tem:discountCardNumber>9000000001</tem:discountCardNumber>\n"
                           + chequeParameter(sample::openCheque()));
    }

    ChequeService service;
    BonusClient client;
    QSharedPointer<till::Cheque> document = sample::cheque(EDocumentType::sale);
    const LogRecorder log;
};

class CardDiscountAmount : public DiscountAmount {
protected:
    CardDiscountAmount()
    {
        card->setPointsForSpend(33.0);
    }

    void expectRequest()
    {
        service.expect("GetCardDiscountAmount",
                       "   <tem:discountCardNumber>9000000001</tem:discountCardNumber>\n"
                           + chequeParameter(sample::openChequeWithCard()));
    }

    QSharedPointer<till::Card> card = sample::addCard(*document);
};

const char* const started = "info vantiro: Получение баллов для списания";

}

TEST_F(DiscountAmount, IsTheNumberOfTheReply)
{
    service.answerText("GetCardDiscountAmount", QStringLiteral("150.75"));

    EXPECT_EQ(ask(), 150.75);

    expectRequest();
    EXPECT_EQ(readable(log.lines()), "") << "the operation by number writes no line of its own";
}

TEST_F(DiscountAmount, RequestCarriesDiscountsAndNoCoupons)
{
    service.answerText("GetCardDiscountAmount", QStringLiteral("0"));

    EXPECT_EQ(client.getCardDiscountAmount(QStringLiteral("7<8&9"), document, { discountOfCheque(79.80) }), 0.0);

    service.expect(
        "GetCardDiscountAmount",
        "   <tem:discountCardNumber>7&lt;8&amp;9</tem:discountCardNumber>\n"
            + chequeParameter(
                sample::chequeTag(
                    R"(Amount="100.00" SubtractedBonus="0.00" PositionCount="1" ChequeType="Sale" Status="Open")")
                + sample::lines("179.80", "0.00") + sample::sections + "</Cheque>\n"));
}

TEST_F(DiscountAmount, IsNotLimited)
{
    for (const auto& [text, amount] : { std::pair { "-5", -5.0 }, { "0", 0.0 }, { "1000000.5", 1000000.5 } }) {
        service.answerText("GetCardDiscountAmount", QString::fromLatin1(text));
        EXPECT_EQ(ask(), amount);
        expectRequest();
    }
}

TEST_F(DiscountAmount, ThatIsNoNumberIsNotFound)
{
    for (const char* const text : { "12,50", "", "сто", "1 234.50", "12.50 RUB" }) {
        service.answerText("GetCardDiscountAmount", QString::fromUtf8(text));
        EXPECT_EQ(failureOf([&] { (void)ask(); }), sumNotFound) << text;
        expectRequest();
    }
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(DiscountAmount, ThatIsMissingIsNotFound)
{
    service.answer(R"(<GetCardDiscountAmountResponse xmlns="http://tempuri.org/"/>)");

    EXPECT_EQ(failureOf([&] { (void)ask(); }), sumNotFound);

    expectRequest();
    EXPECT_EQ(readable(log.lines()), "");
}

TEST_F(DiscountAmount, ThatStandsTwiceIsNotFound)
{
    service.answer("<GetCardDiscountAmountResult>1</GetCardDiscountAmountResult>"
                   "<GetCardDiscountAmountResult>1</GetCardDiscountAmountResult>");

    EXPECT_EQ(failureOf([&] { (void)ask(); }), sumNotFound);

    expectRequest();
}

TEST_F(DiscountAmount, FaultPassesThroughByNumber)
{
    const ScriptedDialog cashier;
    service.fault("Отказано");

    EXPECT_EQ(failureOf([&] { (void)ask(); }), failure::fault("Отказано"));

    expectRequest();
    EXPECT_EQ(readable(cashier.shown()), "");
}

TEST_F(CardDiscountAmount, IsWrittenOnTheCard)
{
    const ScriptedDialog cashier;
    service.answerText("GetCardDiscountAmount", QStringLiteral("150.75"));

    EXPECT_EQ(client.getCardDiscountAmount(document, {}), 150.75);

    expectRequest();
    EXPECT_EQ(card->fields.pointsForSpend, 150.75);
    EXPECT_EQ(readable(log.lines()), started);
    EXPECT_EQ(readable(cashier.shown()), "");
}

TEST_F(CardDiscountAmount, ReadsTheNumberOfTheCardAsText)
{
    card->fields.number = 9000000001LL;
    service.answerText("GetCardDiscountAmount", QStringLiteral("1"));

    EXPECT_EQ(client.getCardDiscountAmount(document, {}), 1.0);

    expectRequest();
}

TEST_F(CardDiscountAmount, WithoutACardSendsNothing)
{
    const ScriptedDialog cashier;

    EXPECT_EQ(failureOf([&] { (void)client.getCardDiscountAmount(sample::cheque(EDocumentType::sale), {}); }),
              "VantiroException vantiroCardNotFound: В документе нет карты Vantiro");

    service.expectNothing();
    EXPECT_EQ(readable(log.lines()), started);
    EXPECT_EQ(readable(cashier.shown()), "");
}

TEST_F(CardDiscountAmount, FaultIsShownAndCountsAsNothingToSpend)
{
    const ScriptedDialog cashier;
    service.fault("Карта заблокирована");

    EXPECT_EQ(client.getCardDiscountAmount(document, {}), 0.0);

    expectRequest();
    EXPECT_EQ(readable(cashier.shown()),
              "error 0 0 cardExceptionLoyaltyIdentify: Система лояльности: Карта заблокирована");
    EXPECT_EQ(card->fields.pointsForSpend, 33.0);
    EXPECT_EQ(readable(log.lines()), started);
}

TEST_F(CardDiscountAmount, FaultTextIsNoFormat)
{
    const ScriptedDialog cashier;
    service.fault("Отказ %1 по карте %2: 100%");

    EXPECT_EQ(client.getCardDiscountAmount(document, {}), 0.0);

    expectRequest();
    EXPECT_EQ(readable(cashier.shown()),
              "error 0 0 cardExceptionLoyaltyIdentify: Система лояльности: Отказ %1 по карте %2: 100%");
}

TEST_F(CardDiscountAmount, AnyOtherFailurePassesThrough)
{
    const ScriptedDialog cashier;

    service.answerText("GetCardDiscountAmount", QStringLiteral("12,50"));
    EXPECT_EQ(failureOf([&] { (void)client.getCardDiscountAmount(document, {}); }), sumNotFound);
    expectRequest();

    service.refuse();
    EXPECT_EQ(failureOf([&] { (void)client.getCardDiscountAmount(document, {}); }), failure::noConnection);
    expectRequest();

    service.end(RestOutcome::http(200, "<a>"));
    EXPECT_EQ(failureOf([&] { (void)client.getCardDiscountAmount(document, {}); }), failure::incorrectAnswer);
    expectRequest();

    EXPECT_EQ(card->fields.pointsForSpend, 33.0);
    EXPECT_EQ(readable(cashier.shown()), "");
}

namespace {

/// A client whose operation by number would show if it were called through the class.
class ClientWithOwnAmount : public BonusClient {
public:
    using BonusClient::getCardDiscountAmount;

    [[nodiscard]] double getCardDiscountAmount(const QString&, const QSharedPointer<AbstractDocument>&,
                                               const QList<QSharedPointer<DiscountImpact>>&) override
    {
        ADD_FAILURE() << "the operation of the base class is called as the base class has it";
        return -1.0;
    }
};

}

TEST(CardDiscountAmountOverload, CallsTheOperationOfTheBaseClassDirectly)
{
    ChequeService service;
    ClientWithOwnAmount client;
    const auto document = sample::cheque(EDocumentType::sale);
    sample::addCard(*document);
    service.answerText("GetCardDiscountAmount", QStringLiteral("7"));

    EXPECT_EQ(client.getCardDiscountAmount(document, {}), 7.0);

    EXPECT_TRUE(service.take().body.contains("tem:GetCardDiscountAmount"));
}
