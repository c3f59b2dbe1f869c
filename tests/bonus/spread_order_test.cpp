#include "tests/bonus/bonus_client.h"
#include "tests/support/cheque_service.h"
#include "tests/support/log_recorder.h"
#include "tests/support/sample_cheque.h"

#include <gtest/gtest.h>

namespace {

/// What the reply, which names the line 1 with each of these sums, adds up to on that line.
double addedUp(const QList<const char*>& sums)
{
    ChequeService service;
    BonusClient client;
    const LogRecorder log;
    const auto document = sample::cheque(EDocumentType::sale);
    sample::addCard(*document);
    QString answer = QStringLiteral("<A>");
    for (const char* const sum : sums) {
        answer += QStringLiteral(R"(<ChequeLine ChequeLineNo="1" Amount="%1"/>)").arg(QLatin1String(sum));
    }
    service.answerText("SubtractBonus45", answer + QStringLiteral("</A>"));

    const auto impact = client.subtractBonus(document, 100.0);

    EXPECT_FALSE(service.take("SubtractBonus45").isEmpty());
    EXPECT_EQ(impact->getDetails().keys(), QList<int> { 1 });
    return impact->getDetails().value(1)->getDiscountSum();
}

}

// A rouble is lost beside ten quadrillion, and is not lost behind them: the sum tells the order of its parts.
TEST(SpreadOverPositions, LinesAreHandedOverInDocumentOrder)
{
    EXPECT_EQ(addedUp({ "1e16", "-1e16", "1" }), 1.0);
    EXPECT_EQ(addedUp({ "1", "-1e16", "1e16" }), 0.0);
}

TEST(SpreadOverPositions, SumsAreNotRounded)
{
    EXPECT_EQ(addedUp({ "0.0625", "0.001953125" }), 0.064453125);
}
