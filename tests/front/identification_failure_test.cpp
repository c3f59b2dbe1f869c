#include "tests/front/presented_card.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// The look-up of a presented card fails, though the server could be reached.

namespace {

/// An answer that makes the look-up fail, as a failure that is no lost connection.
struct BadAnswer {
    const char* rule;
    RestOutcome outcome;
    const char* error; // "key: text"
    const char* log;
};

void PrintTo(const BadAnswer& row, std::ostream* out)
{
    *out << row.error;
}

class IdentificationAtValidity : public Identification, public testing::WithParamInterface<BadAnswer> { };
class IdentificationAtBalance : public Identification, public testing::WithParamInterface<BadAnswer> { };

std::string ruleOf(const testing::TestParamInfo<BadAnswer>& row)
{
    return row.param.rule;
}

}

INSTANTIATE_TEST_SUITE_P(
    Answers, IdentificationAtValidity,
    testing::Values(BadAnswer { "Fault", RestOutcome::http(500, soap::reply(soap::fault("Карта заблокирована"))),
                                ": Карта заблокирована", "error: Карта заблокирована" },
                    BadAnswer { "NoResult", RestOutcome::http(200, soap::reply("<Other/>")),
                                "requestIncorrectAnswer: Некорректный ответ от сервера",
                                "error: Некорректный ответ от сервера" },
                    BadAnswer { "TwoResults",
                                RestOutcome::http(200,
                                                  soap::reply("<IsCardValidResult>true</IsCardValidResult>"
                                                              "<IsCardValidResult>true</IsCardValidResult>")),
                                "requestIncorrectAnswer: Некорректный ответ от сервера",
                                "error: Некорректный ответ от сервера" }),
    ruleOf);

TEST_P(IdentificationAtValidity, IsAFailureThatLeavesTheDocumentOnline)
{
    till.server.end(GetParam().outcome);

    EXPECT_FALSE(identify());

    till.server.expect("IsCardValid", cardParameter);
    EXPECT_EQ(till.told(), "post IsCardValid");
    EXPECT_EQ(till.log(), validating + GetParam().log);
    EXPECT_EQ(till.lastError(), GetParam().error);
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_EQ(balance(), "double 11");
}

INSTANTIATE_TEST_SUITE_P(
    Answers, IdentificationAtBalance,
    testing::Values(BadAnswer { "Fault", RestOutcome::http(500, soap::reply(soap::fault("Баланс недоступен"))),
                                ": Баланс недоступен", "error: Баланс недоступен" },
                    BadAnswer { "NoResult", RestOutcome::http(200, soap::reply("<Other/>")),
                                "vantiroBalanceNotFound: В ответе от сервера не найден баланс карты",
                                "error: В ответе от сервера не найден баланс карты" },
                    BadAnswer { "NoNumber",
                                RestOutcome::http(200,
                                                  soap::reply("<GetCardBalanceResult>&lt;Balance Value=\"x\"/&gt;"
                                                              "</GetCardBalanceResult>")),
                                "requestIncorrectAnswer: Некорректный ответ от сервера",
                                "error: Некорректный ответ от сервера" }),
    ruleOf);

TEST_P(IdentificationAtBalance, IsAFailureThoughTheCardIsValid)
{
    till.server.answerText("IsCardValid", u"true"_s);
    till.server.end(GetParam().outcome);

    EXPECT_FALSE(identify());

    expectBothQuestions();
    EXPECT_EQ(till.told(), "post IsCardValid\npost GetCardBalance");
    EXPECT_EQ(till.log(), weighing + GetParam().log);
    EXPECT_EQ(till.lastError(), GetParam().error);
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_EQ(balance(), "double 11");
}
