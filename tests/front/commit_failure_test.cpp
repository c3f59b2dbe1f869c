#include "client/exceptions.h"
#include "host/facilities/exceptions.h"
#include "tests/front/closing_till.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

// The close of a cheque that fails: at the server, at the queue, at the printer.

namespace {

/// A printer that throws; the journal's takes its place again afterwards.
class FailingPrinter : public TextPrinter {
public:
    explicit FailingPrinter(const std::function<void()>& failure)
        : fail(failure)
        , former(std::exchange(MockFactory<TextPrinter>::mocked, this))
    {
    }

    ~FailingPrinter() override
    {
        MockFactory<TextPrinter>::mocked = former;
    }

    void printText(const QString&, int) override
    {
        fail();
    }

private:
    std::function<void()> fail;
    TextPrinter* former;
};

} // namespace

TEST(FailedCommit, RefusalIsToldAndLeavesNoState)
{
    TillAtWork till;
    fillState(till);
    till.server.fault("Чек отклонён");

    EXPECT_FALSE(till.plugin.commit(till.document()));

    EXPECT_EQ(till.lastError(), ": Чек отклонён");
    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_EQ(till.log(),
              "info: Подтверждение операций бонусной системы\n"
              "info: Начисление бонусов в online режиме\n"
              "info: Создание xml-чека для commit\n"
              "error: Чек отклонён");
    EXPECT_EQ(stateOf(till), emptyState);
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
}

TEST(FailedCommit, UnreadableReplyIsToldAndLeavesNoState)
{
    TillAtWork till;
    fillState(till);
    till.server.end(RestOutcome::http(200, "<not XML"));

    EXPECT_FALSE(till.plugin.commit(till.document()));

    EXPECT_EQ(till.lastError(), "requestIncorrectAnswer: Некорректный ответ от сервера");
    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_EQ(stateOf(till), emptyState);
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(FailedCommit, RefusalWhilePrintingCountsAsItsOwn)
{
    TillAtWork till;
    fillState(till);
    till.server.answerText("Accrual", u"Спасибо"_s);
    const FailingPrinter broken([] { throw VantiroException(tr::Tr(u"key"_s, u"нет бумаги"_s)); });

    EXPECT_FALSE(till.plugin.commit(till.document()));

    EXPECT_EQ(till.lastError(), "key: нет бумаги");
    EXPECT_EQ(till.told(), "post Accrual");
    EXPECT_EQ(stateOf(till), emptyState);
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(FailedCommit, LostConnectionWhilePrintingLeadsToTheQueue)
{
    TillAtWork till;
    fillState(till);
    till.server.answerText("Accrual", u"Спасибо"_s);
    const FailingPrinter broken([] { throw VantiroNoConnectionException(tr::Tr(u"принтер в сети"_s)); });

    EXPECT_TRUE(till.plugin.commit(till.document()));

    EXPECT_EQ(till.told(), "post Accrual\nenqueue vantiro OfflineAccrual");
    ASSERT_EQ(till.queue.records().size(), 1);
    EXPECT_TRUE(till.queue.records()[0].message[u"body"_s].toString().contains(u"BonusDiscount=\"30.00\""_s));
    EXPECT_EQ(stateOf(till), emptyState);
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(FailedCommit, FailureOfTheQueueOfAnOfflineSalePassesToTheHostAndTheStateStays)
{
    TillAtWork till;
    fillState(till);
    till.goOffline();
    till.queue.fail(tr::Tr(u"очередь недоступна"_s));

    EXPECT_THROW(static_cast<void>(till.plugin.commit(till.document())), BasicException);

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(),
              "info: Подтверждение операций бонусной системы\n"
              "info: Начисление бонусов в offline режиме\n"
              "info: Создание xml-чека для commit");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(stateOf(till), wholeState) << "so that the host can try again";
}

TEST(FailedCommit, FailureOfTheQueueAfterALostConnectionPassesToTheHostAndTheStateStays)
{
    TillAtWork till;
    fillState(till);
    till.server.refuse();
    till.queue.fail(tr::Tr(u"очередь недоступна"_s));

    EXPECT_THROW(static_cast<void>(till.plugin.commit(till.document())), BasicException);

    EXPECT_EQ(till.log(),
              "info: Подтверждение операций бонусной системы\n"
              "info: Начисление бонусов в online режиме\n"
              "info: Создание xml-чека для commit\n"
              "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
              "error: Ошибка online начисления бонусов\n"
              "info: Начисление бонусов в offline режиме\n"
              "info: Создание xml-чека для commit");
    EXPECT_EQ(stateOf(till), wholeState);
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}

TEST(FailedCommit, FailureOfAnotherKindWhilePrintingPassesToTheHost)
{
    TillAtWork till;
    fillState(till);
    till.server.answerText("Accrual", u"Спасибо"_s);
    const FailingPrinter broken([] { throw BasicException(tr::Tr(u"нет бумаги"_s)); });

    EXPECT_THROW(static_cast<void>(till.plugin.commit(till.document())), BasicException);

    EXPECT_EQ(till.told(), "post Accrual") << "no second accrual";
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_FALSE(till.server.take("Accrual").isEmpty());
}
