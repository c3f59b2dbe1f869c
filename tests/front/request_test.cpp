#include "tests/front/till_at_work.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// What the host asks while the cheque is open: the discounts, the messages, the points.

TEST(Request, GoodAnswersAreKeptAndSaved)
{
    TillAtWork till;
    till.answerRequest("50.25");

    EXPECT_TRUE(till.plugin.request(till.document()));

    EXPECT_EQ(till.told(), "post GetDiscounts\npost GetMessages\npost GetCardDiscountAmount\nsave");
    EXPECT_EQ(till.log(),
              "info: Запрос к бонусной системе Vantiro\n"
              "info: Дисконт получен\n"
              "info: Получение сообщений от системы лояльности\n"
              "info: Получение баллов для списания");
    EXPECT_EQ(till.plugin.discountImpacts.size(), 1);
    EXPECT_EQ(till.plugin.getMessagesToCashier().join(u'|').toStdString(), "Предложите пакет");
    EXPECT_EQ(till.plugin.getMessagesToClient().join(u'|').toStdString(), "Спасибо за покупку");
    EXPECT_EQ(till.plugin.pointsForSpend, 50.25);
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.25));
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
    for (const QByteArray action : { "GetDiscounts", "GetMessages", "GetCardDiscountAmount" }) {
        EXPECT_TRUE(till.server.take(action).contains(u"ChequeNo=\"1042\""_s));
    }
}
