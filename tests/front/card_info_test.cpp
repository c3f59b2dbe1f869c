#include "host/facilities/exceptions.h"
#include "tests/front/till_at_work.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// The balance of the card on the open cheque is refreshed. A balance is information alone: whatever happens to it, the
// cheque stays as it is, on-line or not.

namespace {

const QByteArray cardParameter = "   <tem:discountCardNumber>9000000001</tem:discountCardNumber>\n";
const std::string asking = "info: Запрос информации о карте\n"
                           "info: Получение баланса карты Vantiro";

class CardInfo : public testing::Test {
protected:
    CardInfo()
    {
        till.card()->setBonusBalance(11.0);
    }

    [[nodiscard]] bool refresh(int numberType = 0)
    {
        QSharedPointer<DocumentCardRecord> card = till.card();
        return till.plugin.getCardInfo(card, static_cast<ECardNumberType>(numberType));
    }

    [[nodiscard]] std::string balance() const
    {
        const QVariant value = till.card()->getBonusBalance();
        return value.typeName() + (' ' + value.toString().toStdString());
    }

    TillAtWork till;
};

}

TEST_F(CardInfo, BalanceIsRefreshed)
{
    till.server.answerText("GetCardBalance", uR"(<Balance Value="60.7"/>)"_s);

    EXPECT_TRUE(refresh());

    till.server.expect("GetCardBalance", cardParameter);
    EXPECT_EQ(till.told(), "post GetCardBalance") << "whether the card is valid is not asked, and nothing is stored";
    EXPECT_EQ(till.log(), asking);
    EXPECT_EQ(balance(), "double 60.7");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST_F(CardInfo, NumberOfTheCardIsReadAsText)
{
    till.card()->fields.number = 9000000001LL;
    till.server.answerText("GetCardBalance", uR"(<Balance Value="60.7"/>)"_s);

    EXPECT_TRUE(refresh());

    till.server.expect("GetCardBalance", cardParameter);
}

TEST_F(CardInfo, TypeOfTheNumberMakesNoDifference)
{
    for (const int numberType : { -1, 0, 1, 2, 77 }) {
        till.server.answerText("GetCardBalance", uR"(<Balance Value="60.7"/>)"_s);
        EXPECT_TRUE(refresh(numberType)) << numberType;
        till.server.expect("GetCardBalance", cardParameter);
    }
}

TEST_F(CardInfo, OfflineDocumentIsNoReasonNotToAsk)
{
    till.goOffline();
    till.server.answerText("GetCardBalance", uR"(<Balance Value="60.7"/>)"_s);

    EXPECT_TRUE(refresh());

    till.server.expect("GetCardBalance", cardParameter);
    EXPECT_EQ(till.told(), "post GetCardBalance");
    EXPECT_EQ(balance(), "double 60.7");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true)) << "an answer does not bring the document back";
}

TEST_F(CardInfo, LostConnectionLeavesTheDocumentOnline)
{
    till.server.refuse();

    EXPECT_FALSE(refresh());

    till.server.expect("GetCardBalance", cardParameter);
    EXPECT_EQ(till.told(), "post GetCardBalance");
    EXPECT_EQ(till.log(),
              asking
                  + "\nerror: Произошла ошибка при выполнении запроса соединение отклонено\n"
                    "error: Нет связи с сервером");
    EXPECT_EQ(till.lastError(), "requestNoConnection: Нет связи с сервером");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_EQ(balance(), "double 11");
}

TEST_F(CardInfo, LastErrorOfEarlierStays)
{
    till.server.fault("Баланс недоступен");
    EXPECT_FALSE(refresh());
    till.server.expect("GetCardBalance", cardParameter);
    till.server.answerText("GetCardBalance", uR"(<Balance Value="60.7"/>)"_s);

    EXPECT_TRUE(refresh());

    till.server.expect("GetCardBalance", cardParameter);
    EXPECT_EQ(till.lastError(), ": Баланс недоступен");
}

TEST_F(CardInfo, ExceptionOfAnotherTypeReachesTheHost)
{
    till.server.whilePosting([] { throw BasicException(tr::Tr(u"сбой"_s)); });

    EXPECT_THROW(static_cast<void>(refresh()), BasicException);

    till.server.whilePosting({});
    till.server.expect("GetCardBalance", cardParameter);
    EXPECT_EQ(till.log(), asking);
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(balance(), "double 11");
}

namespace {

struct BadBalance {
    const char* rule;
    RestOutcome outcome;
    const char* error; // "key: text"
    const char* log;
};

void PrintTo(const BadBalance& row, std::ostream* out)
{
    *out << row.error;
}

class CardInfoFailure : public CardInfo, public testing::WithParamInterface<BadBalance> { };

}

INSTANTIATE_TEST_SUITE_P(
    Answers, CardInfoFailure,
    testing::Values(BadBalance { "Fault", RestOutcome::http(500, soap::reply(soap::fault("Баланс недоступен"))),
                                 ": Баланс недоступен", "\nerror: Баланс недоступен" },
                    BadBalance { "NoResult", RestOutcome::http(200, soap::reply("<Other/>")),
                                 "vantiroBalanceNotFound: В ответе от сервера не найден баланс карты",
                                 "\nerror: В ответе от сервера не найден баланс карты" },
                    BadBalance {
                        "NoNumber",
                        RestOutcome::http(200,
                                          soap::reply("<GetCardBalanceResult>&lt;Balance Value=\"1 234,50\"/&gt;"
                                                      "</GetCardBalanceResult>")),
                        "requestIncorrectAnswer: Некорректный ответ от сервера",
                        "\nerror: Некорректный ответ от сервера" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(CardInfoFailure, LeavesBalanceAndDocumentAsTheyWere)
{
    till.server.end(GetParam().outcome);

    EXPECT_FALSE(refresh());

    till.server.expect("GetCardBalance", cardParameter);
    EXPECT_EQ(till.told(), "post GetCardBalance");
    EXPECT_EQ(till.log(), asking + GetParam().log);
    EXPECT_EQ(till.lastError(), GetParam().error);
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_EQ(balance(), "double 11");
}
