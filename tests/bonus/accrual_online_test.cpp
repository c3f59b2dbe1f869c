#include "tests/bonus/accrual_operations.h"
#include "tests/support/cheque_service.h"
#include "tests/support/log_recorder.h"
#include "tests/support/scripted_queue.h"

#include <gtest/gtest.h>

namespace {

const QString slip = QStringLiteral("<doc><left>Спасибо</left></doc>");
const QString slipLog = QStringLiteral("info: lastReport = <doc>\n <left>Спасибо</left>\n</doc>\n");
const QString waitingSlip = QStringLiteral("<doc><left>Ждёт</left></doc>");

class OnlineAccrual : public testing::TestWithParam<AccrualPair> {
protected:
    /// The lines up to the request: the start, and what building the cheque writes.
    [[nodiscard]] static QStringList linesOfStart()
    {
        QStringList lines { GetParam().onlineLog };
        if (!GetParam().buildingLog.isEmpty()) {
            lines.append(GetParam().buildingLog);
        }
        return lines;
    }

    void call()
    {
        GetParam().online(client, GetParam().document());
    }

    [[nodiscard]] std::string logged() const
    {
        return readable(log.of(QStringLiteral("vantiro")));
    }

    ChequeService service;
    BonusClient client;
    const ScriptedQueue queue;
    const LogRecorder log;
};

}

TEST_P(OnlineAccrual, PostsTheChequeAsAccrual)
{
    service.answerText("Accrual", QString());

    call();

    service.expect("Accrual", chequeParameter(GetParam().cheque));
    EXPECT_TRUE(queue.records().isEmpty());
}

TEST_P(OnlineAccrual, LogsItsStartBeforeTheRequestAndItsEndAfterTheSlip)
{
    QStringList beforeReply;
    service.whilePosting([&] { beforeReply = log.of(QStringLiteral("vantiro")); });
    service.answerText("Accrual", slip);

    call();

    EXPECT_EQ(readable(beforeReply), readable(linesOfStart()));
    QStringList all = linesOfStart();
    if (GetParam().keepsSlip) {
        all.append(slipLog);
    }
    if (!GetParam().closingLog.isEmpty()) {
        all.append(GetParam().closingLog);
    }
    EXPECT_EQ(logged(), readable(all));
    EXPECT_TRUE(service.take().body.contains("tem:Accrual"));
}

TEST_P(OnlineAccrual, KeepsTheSlipWhereOneIsDue)
{
    service.answerText("Accrual", slip);

    call();

    EXPECT_EQ(readable(client.lastReport.toString(1)),
              GetParam().keepsSlip ? "<doc>\n <left>Спасибо</left>\n</doc>\n" : "");
    EXPECT_TRUE(service.take().body.contains("tem:Accrual"));
}

TEST_P(OnlineAccrual, NeedsNoResultInTheReply)
{
    ASSERT_TRUE(client.lastReport.setContent(waitingSlip));
    service.answer("");

    call();

    EXPECT_EQ(readable(client.lastReport.toString(1)), "<doc>\n <left>Ждёт</left>\n</doc>\n");
    EXPECT_TRUE(service.take().body.contains("tem:Accrual"));
}

TEST_P(OnlineAccrual, FailureRisesWithoutClosingLogAndSlip)
{
    ASSERT_TRUE(client.lastReport.setContent(waitingSlip));

    service.refuse();
    EXPECT_EQ(failureOf([&] { call(); }), failure::noConnection);
    service.expect("Accrual", chequeParameter(GetParam().cheque));

    service.fault("Отказано");
    EXPECT_EQ(failureOf([&] { call(); }), failure::fault("Отказано"));
    service.expect("Accrual", chequeParameter(GetParam().cheque));

    service.end(RestOutcome::http(200, "no XML"));
    EXPECT_EQ(failureOf([&] { call(); }), failure::incorrectAnswer);
    service.expect("Accrual", chequeParameter(GetParam().cheque));

    service.expectNothing();
    EXPECT_TRUE(queue.records().isEmpty()) << "the fallback is the caller's to decide";
    EXPECT_EQ(readable(client.lastReport.toString(1)), "<doc>\n <left>Ждёт</left>\n</doc>\n");
    for (const QString& line : log.of(QStringLiteral("vantiro"))) {
        EXPECT_TRUE(linesOfStart().contains(line) || line.startsWith(QStringLiteral("error: "))) << readable(line);
    }
}

INSTANTIATE_TEST_SUITE_P(Pairs, OnlineAccrual, testing::ValuesIn(accrualPairs()),
                         [](const testing::TestParamInfo<AccrualPair>& tested) { return tested.param.name; });

TEST(OnlineReversal, OfAnUnknownSaleSendsNothing)
{
    ChequeService service;
    BonusClient client;
    const LogRecorder log;
    const auto document = QSharedPointer<till::ReturnBySale>::create(nullptr);

    EXPECT_EQ(failureOf([&] { client.accrual(document); }),
              "VantiroException vantiroSourceDocNotFound: Не обнаружен источник для документа возврата");

    service.expectNothing();
    EXPECT_EQ(readable(log.of(QStringLiteral("vantiro"))), "info: Отмена начисления бонусов в online режиме");
}
