#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/log_recorder.h"
#include "tests/support/sample_cheque.h"
#include "tests/support/scripted_dialog.h"
#include "tests/support/scripted_queue.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <vector>

// What an exchange ends with, each operation passes on: nothing is caught, asked again or compensated on the way.

namespace {

using Document = QSharedPointer<AbstractDocument>;

struct Operation {
    const char* name; // the action
    std::function<void(BonusClient&, const Document&)> call;
    std::string uselessReply; // what comes of a reply that holds nothing the operation knows
};

void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name;
}

const QString card = QStringLiteral("9000000001");

std::vector<Operation> operations()
{
    return {
        { "GetDiscounts", [](BonusClient& client, const Document& sale) { (void)client.getDiscounts(sale, {}, {}); },
          "VantiroException vantiroDiscountsNotFound: В ответе от сервера не найден результат дисконтных воздействий" },
        { "GetMessages", [](BonusClient& client, const Document& sale) { (void)client.getMessages(sale, {}, {}, {}); },
          "nothing" },
        { "GetCardDiscountAmount",
          [](BonusClient& client, const Document& sale) { (void)client.getCardDiscountAmount(card, sale, {}); },
          "VantiroException vantiroPaymentSumNotFound: В ответе от сервера не найдена максимальная сумма оплаты" },
        { "SubtractBonus45", [](BonusClient& client, const Document& sale) { (void)client.subtractBonus(sale, 10.0); },
          failure::incorrectAnswer },
        { "CancelSubtractBonus",
          [](BonusClient& client, const Document& sale) { client.cancelSubtractBonus(sale, 10.0); },
          failure::incorrectAnswer },
        { "Accrual", [](BonusClient& client, const Document& sale) { client.accrual(sale, {}, {}, {}); }, "nothing" },
        { "GetVerifyCode",
          [](BonusClient& client, const Document&) {
              QString number;
              QString code;
              client.getCardNumberAndCodeByPhone(QStringLiteral("+79990000001"), number, code);
          },
          "VantiroException vantiroConfirmCodeNotFound: В ответе от сервера не найден код подтверждения для добавления "
          "карты" },
        { "IsCouponValid",
          [](BonusClient& client, const Document&) { (void)client.isCouponValid(QStringLiteral("vantiro-10")); },
          failure::incorrectAnswer },
    };
}

class ExchangeFailure : public testing::TestWithParam<Operation> {
protected:
    /// What the operation throws after one request that ends like this.
    [[nodiscard]] std::string afterOne(const RestOutcome& outcome)
    {
        service.end(outcome);
        std::string thrown = failureOf([&] { GetParam().call(client, document); });
        EXPECT_FALSE(service.take(GetParam().name).isEmpty());
        service.expectNothing();
        return thrown;
    }

    ChequeService service;
    BonusClient client;
    const ScriptedQueue queue;
    const ScriptedDialog cashier;
    const LogRecorder log;
    const QSharedPointer<till::Cheque> document = sample::cheque(EDocumentType::sale);
    const QSharedPointer<till::Card> customer = sample::addCard(*document);
};

}

TEST_P(ExchangeFailure, LostConnectionPassesThrough)
{
    EXPECT_EQ(afterOne(RestOutcome::connectionError(QStringLiteral("время вышло"))), failure::noConnection);
    EXPECT_EQ(log.lines().filter(QStringLiteral("error ")).join(u'\n').toStdString(),
              "error vantiro: Произошла ошибка при выполнении запроса время вышло");
}

TEST_P(ExchangeFailure, StatusOfSomethingInBetweenIsALostConnection)
{
    for (const int status : { 302, 404, 502, 503 }) {
        EXPECT_EQ(afterOne(RestOutcome::http(status, "<html/>")), failure::noConnection) << status;
    }
}

TEST_P(ExchangeFailure, ReplyThatIsNoXmlPassesThrough)
{
    for (const char* const body : { "", "no XML", "<s:Envelope><s:Body></s:Envelope>", "<a/><b/>" }) {
        EXPECT_EQ(afterOne(RestOutcome::http(200, body)), failure::incorrectAnswer) << body;
    }
    EXPECT_EQ(afterOne(RestOutcome::http(500, "Internal Server Error")), failure::incorrectAnswer);
}

TEST_P(ExchangeFailure, FaultPassesThroughWhateverItsStatus)
{
    const QByteArray reply = soap::reply(soap::fault("Отказано"));

    EXPECT_EQ(afterOne(RestOutcome::http(500, reply)), failure::fault("Отказано"));
    EXPECT_EQ(afterOne(RestOutcome::http(200, reply)), failure::fault("Отказано"));
    EXPECT_TRUE(log.lines().filter(QStringLiteral("error ")).isEmpty()) << "a fault has no line of its own";
}

TEST_P(ExchangeFailure, FaultWithAnotherPrefixIsAReplyOfNoUse)
{
    const QByteArray reply = R"(<soap:Envelope xmlns:soap="http://schemas.xmlsoap.org/soap/envelope/"><soap:Body>)"
                             "<soap:Fault><faultcode>soap:Client</faultcode><faultstring>Отказано</faultstring>"
                             "</soap:Fault></soap:Body></soap:Envelope>";

    EXPECT_EQ(afterOne(RestOutcome::http(500, reply)), GetParam().uselessReply);
    EXPECT_TRUE(log.lines().filter(QStringLiteral("error ")).isEmpty());
}

TEST_P(ExchangeFailure, LeavesQueueCashierCardAndSlipAlone)
{
    ASSERT_TRUE(client.lastReport.setContent(QStringLiteral("<doc><left>Ждёт</left></doc>")));

    EXPECT_EQ(afterOne(RestOutcome::connectionError(QStringLiteral("время вышло"))), failure::noConnection);
    EXPECT_EQ(afterOne(RestOutcome::http(200, "no XML")), failure::incorrectAnswer);
    EXPECT_EQ(afterOne(RestOutcome::http(500, soap::reply(soap::fault("Отказано")))), failure::fault("Отказано"));

    EXPECT_TRUE(queue.records().isEmpty());
    EXPECT_EQ(readable(cashier.shown()), "");
    EXPECT_EQ(customer->fields.pointsForSpend, 0.0);
    EXPECT_TRUE(document->impacts.isEmpty());
    EXPECT_EQ(readable(client.lastReport.toString(1)), "<doc>\n <left>Ждёт</left>\n</doc>\n");
}

INSTANTIATE_TEST_SUITE_P(Operations, ExchangeFailure, testing::ValuesIn(operations()),
                         [](const testing::TestParamInfo<Operation>& row) { return std::string(row.param.name); });
