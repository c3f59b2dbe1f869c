#include "client/exceptions.h"
#include "tests/front/till_at_work.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// The second request on a cheque fails at one of its three questions. What came before the failure is kept in memory;
// only a lost connection stores it.

namespace {

const std::string begun = "info: Запрос к бонусной системе Vantiro\n";
const std::string discounted = begun
    + "info: Нет дисконтных воздействий\n"
      "info: Дисконт получен\n"
      "info: Получение сообщений от системы лояльности\n";
const std::string informed = discounted + "info: Получение баллов для списания\n";
const std::string lost = "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                         "error: Нет связи с сервером";

// The first request has left one discount, one message for each and 50 points; the second has nothing to give.
const char* const ofTheFirst = "discounts 1; cashier 1; client 1; points 50.00";
const char* const withoutDiscounts = "discounts 0; cashier 1; client 1; points 50.00";
const char* const withoutMessages = "discounts 0; cashier 0; client 0; points 50.00";

struct Failure {
    const char* rule;
    int answered; // of the three questions, before the one that fails
    RestOutcome outcome;
    std::string error; // "key: text"
    std::string log;
    const char* state;
};

void PrintTo(const Failure& row, std::ostream* out)
{
    *out << row.rule;
}

class RequestFailure : public testing::TestWithParam<Failure> {
protected:
    RequestFailure()
    {
        till.requestWell("50.00");
    }

    [[nodiscard]] bool request()
    {
        for (int i = 0; i < GetParam().answered; ++i) {
            till.server.answerText(questions.at(i), QString());
        }
        till.server.end(GetParam().outcome);
        const bool succeeded = till.plugin.request(till.document());
        for (int i = 0; i <= GetParam().answered; ++i) {
            EXPECT_FALSE(till.server.take(questions.at(i)).isEmpty());
        }
        till.server.expectNothing();
        return succeeded;
    }

    [[nodiscard]] std::string posts() const
    {
        const QByteArrayList asked = questions.mid(0, GetParam().answered + 1);
        return "post " + asked.join("\npost ").toStdString();
    }

    [[nodiscard]] std::string state()
    {
        return readable(u"discounts %1; cashier %2; client %3; points %4"_s.arg(
            QString::number(till.plugin.discountImpacts.size()), QString::number(till.plugin.messagesToCashier.size()),
            QString::number(till.plugin.messagesToClient.size()), QString::number(till.plugin.pointsForSpend, 'f', 2)));
    }

    const QByteArrayList questions { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" };
    TillAtWork till;
};

class RequestWithoutConnection : public RequestFailure { };

std::string ruleOf(const testing::TestParamInfo<Failure>& row)
{
    return row.param.rule;
}

RestOutcome refused()
{
    return RestOutcome::connectionError(u"соединение отклонено"_s);
}

RestOutcome fault(const QByteArray& text)
{
    return RestOutcome::http(500, soap::reply(soap::fault(text)));
}

RestOutcome other()
{
    return RestOutcome::http(200, soap::reply("<Other/>"));
}

const std::string earnOnly = "undefined: Нет связи с сервером. Доступно только начисление баллов";

}

INSTANTIATE_TEST_SUITE_P(
    At, RequestFailure,
    testing::Values(
        Failure { "DiscountsMissing", 0, other(),
                  "vantiroDiscountsNotFound: В ответе от сервера не найден результат дисконтных воздействий",
                  begun + "error: В ответе от сервера не найден результат дисконтных воздействий", ofTheFirst },
        Failure { "DiscountsRefused", 0, fault("Чек не принят"), ": Чек не принят", begun + "error: Чек не принят",
                  ofTheFirst },
        Failure { "MessagesRefused", 1, fault("Чек не принят"), ": Чек не принят", discounted + "error: Чек не принят",
                  withoutDiscounts },
        Failure { "PointsMissing", 2, other(),
                  "vantiroPaymentSumNotFound: В ответе от сервера не найдена максимальная сумма оплаты",
                  informed + "error: В ответе от сервера не найдена максимальная сумма оплаты", withoutMessages }),
    ruleOf);

TEST_P(RequestFailure, IsToldAndStoresNothing)
{
    EXPECT_FALSE(request());

    EXPECT_EQ(till.told(), posts()) << "no save";
    EXPECT_EQ(till.log(), GetParam().log);
    EXPECT_EQ(till.lastError(), GetParam().error);
    EXPECT_EQ(state(), GetParam().state);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false)) << "as the first request has left it";
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 1) << "as the first request has left it";
    EXPECT_EQ(till.card()->fields.pointsForSpend, 50.0);
}

INSTANTIATE_TEST_SUITE_P(
    At, RequestWithoutConnection,
    testing::Values(Failure { "Discounts", 0, refused(), earnOnly, begun + lost, ofTheFirst },
                    Failure { "Messages", 1, refused(), earnOnly, discounted + lost, withoutDiscounts },
                    Failure { "Points", 2, refused(), earnOnly, informed + lost, withoutMessages },
                    Failure { "DiscountsByStatus", 0, RestOutcome::http(503, "<html/>"), earnOnly,
                              begun
                                  + "error: Произошла ошибка при выполнении запроса состояние 503\n"
                                    "error: Нет связи с сервером",
                              ofTheFirst }),
    ruleOf);

TEST_P(RequestWithoutConnection, MakesTheDocumentOfflineAndStoresWhatIsThere)
{
    EXPECT_FALSE(request());

    EXPECT_EQ(till.told(), posts() + "\nsave");
    EXPECT_EQ(till.log(), GetParam().log);
    EXPECT_EQ(till.lastError(), GetParam().error);
    EXPECT_EQ(state(), GetParam().state);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), till.plugin.discountImpacts.size());
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.0));

    EXPECT_TRUE(till.plugin.request(till.document())) << "the request that follows asks nothing";
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "info: Запрос к бонусной системе Vantiro");
    EXPECT_EQ(state(), GetParam().state);
}

TEST(RequestLostConnection, WithoutACardSaysNothingOfEarning)
{
    TillAtWork till(TillAtWork::saleWithoutCard());
    till.server.refuse();

    EXPECT_FALSE(till.plugin.request(till.document()));

    EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());
    EXPECT_EQ(till.lastError(), "undefined: Нет связи с сервером");
    EXPECT_EQ(till.told(), "post GetDiscounts\nsave");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));

    EXPECT_TRUE(till.plugin.request(till.document())) << "the request that follows asks nothing";
    EXPECT_EQ(till.told(), "");
}

TEST(RequestLostConnection, CardOfAnotherSystemEarnsNothingHere)
{
    TillAtWork till(TillAtWork::saleWithoutCard().cardOfMode(6, u"777"_s));
    till.server.refuse();

    EXPECT_FALSE(till.plugin.request(till.document()));

    EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());
    EXPECT_EQ(till.lastError(), "undefined: Нет связи с сервером");
}

TEST(RequestLostConnection, CardOfTheGivenDocumentDecidesOnTheRemark)
{
    TillAtWork till;
    const QSharedPointer<AbstractDocument> given = TillAtWork::saleWithoutCard().identity(u"2"_s).build();
    till.server.refuse();

    EXPECT_FALSE(till.plugin.request(given));

    EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());
    EXPECT_EQ(till.lastError(), "undefined: Нет связи с сервером");
    EXPECT_EQ(given->getValue(u"Vantiro"_s, u"offlineMode"_s, QVariant()), QVariant(true));
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid()) << "the open document";
}

TEST(RequestError, StaysUntilTheHostClearsIt)
{
    TillAtWork till;
    till.server.fault("Чек не принят");
    EXPECT_FALSE(till.plugin.request(till.document()));
    EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());

    till.requestWell();
    EXPECT_EQ(till.lastError(), ": Чек не принят");

    till.plugin.clearLastErrorString();
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(RequestError, FaultTextIsNoFormat)
{
    TillAtWork till;
    till.server.fault("Отказ %1 из %2");

    EXPECT_FALSE(till.plugin.request(till.document()));

    EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());
    EXPECT_EQ(till.lastError(), ": Отказ %1 из %2");
    EXPECT_EQ(till.log(), begun + "error: Отказ %1 из %2");
}

TEST(RequestException, OfTheStoreReachesTheHostWithTheStateInMemory)
{
    TillAtWork till;
    till.answerRequest("50.00");
    till.failSaves(u"диск заполнен"_s);

    EXPECT_THROW(static_cast<void>(till.plugin.request(till.document())), BasicException);

    for (const QByteArray action : { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" }) {
        EXPECT_FALSE(till.server.take(action).isEmpty());
    }
    EXPECT_EQ(till.plugin.discountImpacts.size(), 1);
    EXPECT_EQ(till.plugin.pointsForSpend, 50.0);
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(RequestException, OfTheStoreAfterALostConnectionReachesTheHostWithTheErrorSet)
{
    TillAtWork till;
    till.server.refuse();
    till.failSaves(u"диск заполнен"_s);

    EXPECT_THROW(static_cast<void>(till.plugin.request(till.document())), BasicException);

    EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());
    EXPECT_EQ(till.lastError(), earnOnly);
    EXPECT_EQ(till.log(), begun + lost);
}

TEST(RequestException, OfAnotherTypeReachesTheHostWithTheFormerState)
{
    TillAtWork till;
    till.requestWell("50.00");
    till.server.whilePosting([] { throw BasicException(tr::Tr(u"сбой"_s)); });

    EXPECT_THROW(static_cast<void>(till.plugin.request(till.document())), BasicException);

    till.server.whilePosting({});
    EXPECT_FALSE(till.server.take("GetDiscounts").isEmpty());
    EXPECT_EQ(till.plugin.discountImpacts.size(), 1);
    EXPECT_EQ(till.plugin.pointsForSpend, 50.0);
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
    EXPECT_EQ(till.log(), "info: Запрос к бонусной системе Vantiro");
}
