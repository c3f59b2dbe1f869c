#include "host/facilities/exceptions.h"
#include "tests/front/till_at_work.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// A spending fails. The server may have taken the points all the same: that is not known here, and nothing is undone.

namespace {

const std::string spending = "info: Создание оплаты бонусами в виде скидки на сумму 30, по карте 9000000001\n";
const char* const earnOnly = "undefined: Нет связи с сервером. Доступно только начисление баллов";

class SpendingFailure : public testing::Test {
protected:
    /// One spending of 10 points went well, the discounts are there again, and 30.75 points are chosen.
    SpendingFailure()
    {
        till.spendWell(10.0);
        till.requestWell("50.00");
        till.plugin.setPointsForSpend(till.document(), 30.75);
    }

    [[nodiscard]] bool spend(const RestOutcome& outcome)
    {
        till.server.end(outcome);
        const bool succeeded = till.plugin.spendPoints();
        EXPECT_TRUE(till.server.take("SubtractBonus45").contains(u"<tem:amount>30.75</tem:amount>"_s));
        till.server.expectNothing(); // above all no cancellation
        return succeeded;
    }

    void expectStateBeforeButForTheDiscounts()
    {
        EXPECT_EQ(till.plugin.discountImpacts.size(), 0);
        ASSERT_EQ(till.plugin.bonusImpacts.size(), 1);
        EXPECT_EQ(till.plugin.bonusImpacts.constFirst()->getTotals()->getDiscountSum(), 10.0);
        EXPECT_EQ(till.plugin.pointsForSpend, 30.75);
    }

    TillAtWork till;
};

struct LostReply {
    const char* rule;
    RestOutcome outcome;
    const char* log;
};

void PrintTo(const LostReply& row, std::ostream* out)
{
    *out << row.rule;
}

class SpendingWithoutConnection : public SpendingFailure, public testing::WithParamInterface<LostReply> { };

struct Refusal {
    const char* rule;
    RestOutcome outcome;
    const char* error; // "key: text"
    const char* log;
};

void PrintTo(const Refusal& row, std::ostream* out)
{
    *out << row.rule;
}

class SpendingRefused : public SpendingFailure, public testing::WithParamInterface<Refusal> { };

/// A reply whose result is one line with these attributes.
RestOutcome line(const QByteArray& attributes)
{
    return RestOutcome::http(
        200,
        soap::reply("<SubtractBonus45Result>&lt;A>&lt;ChequeLine " + attributes + "/>&lt;/A></SubtractBonus45Result>"));
}

}

INSTANTIATE_TEST_SUITE_P(
    Replies, SpendingWithoutConnection,
    testing::Values(LostReply { "None", RestOutcome::connectionError(u"соединение отклонено"_s),
                                "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
                                "error: Нет связи с сервером" },
                    LostReply { "ErrorStatus", RestOutcome::http(503, "<html/>"),
                                "error: Произошла ошибка при выполнении запроса состояние 503\n"
                                "error: Нет связи с сервером" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(SpendingWithoutConnection, MakesTheDocumentOfflineWithThePointsUnspent)
{
    EXPECT_FALSE(spend(GetParam().outcome));

    EXPECT_EQ(till.told(), "post SubtractBonus45\nsave");
    EXPECT_EQ(till.log(), spending + GetParam().log);
    EXPECT_EQ(till.lastError(), earnOnly);
    expectStateBeforeButForTheDiscounts();
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 0);
    EXPECT_EQ(till.stored(u"bonusImpacts"_s).toList().size(), 1);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(30.75));
    EXPECT_EQ(till.card()->fields.pointsForSpend, 30.75);

    EXPECT_TRUE(till.plugin.spendPoints()) << "the next one asks nothing";
    EXPECT_EQ(till.told(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Replies, SpendingRefused,
    testing::Values(
        Refusal { "Fault", RestOutcome::http(500, soap::reply(soap::fault("Недостаточно баллов"))),
                  ": Недостаточно баллов", "error: Недостаточно баллов" },
        Refusal { "NoResult", RestOutcome::http(200, soap::reply("<Other/>")),
                  "requestIncorrectAnswer: Некорректный ответ от сервера", "error: Некорректный ответ от сервера" },
        Refusal { "DecimalComma", line(R"(ChequeLineNo="1" Amount="30,75")"),
                  "requestIncorrectAnswer: Некорректный ответ от сервера", "error: Некорректный ответ от сервера" },
        Refusal { "NoPosition", line(R"(Amount="30.75")"), "requestIncorrectAnswer: Некорректный ответ от сервера",
                  "error: Некорректный ответ от сервера" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(SpendingRefused, StoresNothingAndUndoesNothing)
{
    EXPECT_FALSE(spend(GetParam().outcome));

    EXPECT_EQ(till.told(), "post SubtractBonus45");
    EXPECT_EQ(till.log(), spending + GetParam().log);
    EXPECT_EQ(till.lastError(), GetParam().error);
    expectStateBeforeButForTheDiscounts();
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
    EXPECT_EQ(till.stored(u"discountImpacts"_s).toList().size(), 1) << "as the request before has left it";
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.0)) << "as the request before has left it";
    EXPECT_EQ(till.card()->fields.pointsForSpend, 50.0);
}

TEST_F(SpendingFailure, MayBeTriedAgain)
{
    EXPECT_FALSE(spend(RestOutcome::http(500, soap::reply(soap::fault("Недостаточно баллов")))));
    till.answerSpending("30.75");

    EXPECT_TRUE(till.plugin.spendPoints());

    EXPECT_TRUE(till.server.take("SubtractBonus45").contains(u"<tem:amount>30.75</tem:amount>"_s));
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 2);
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.lastError(), ": Недостаточно баллов") << "cleared by the host alone";
}

TEST_F(SpendingFailure, OfTheStoreReachesTheHostWithTheRecordKept)
{
    till.failSaves(u"диск заполнен"_s);
    till.answerSpending("30.75");

    EXPECT_THROW(static_cast<void>(till.plugin.spendPoints()), BasicException);

    EXPECT_FALSE(till.server.take("SubtractBonus45").isEmpty());
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 2) << "the points are gone";
    EXPECT_EQ(till.plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_F(SpendingFailure, OfTheStoreAfterALostConnectionReachesTheHostWithTheErrorSet)
{
    till.failSaves(u"диск заполнен"_s);
    till.server.refuse();

    EXPECT_THROW(static_cast<void>(till.plugin.spendPoints()), BasicException);

    EXPECT_FALSE(till.server.take("SubtractBonus45").isEmpty());
    expectStateBeforeButForTheDiscounts();
    EXPECT_EQ(till.lastError(), earnOnly);
}

TEST_F(SpendingFailure, OfAnotherTypeReachesTheHost)
{
    till.server.whilePosting([] { throw BasicException(tr::Tr(u"сбой"_s)); });

    EXPECT_THROW(static_cast<void>(till.plugin.spendPoints()), BasicException);

    till.server.whilePosting({});
    EXPECT_FALSE(till.server.take("SubtractBonus45").isEmpty());
    expectStateBeforeButForTheDiscounts();
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
}
