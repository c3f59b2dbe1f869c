#include "tests/front/till_at_work.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

// The host may choose an amount that is no number. It is not checked here, and the server is the one to refuse it; what
// is made of it for the log must have a value all the same.

TEST(SpendingOfNoNumber, IsNothingInTheLogAloneAndTheServersToRefuse)
{
    TillAtWork till;
    till.plugin.setPointsForSpend(till.document(), std::numeric_limits<double>::quiet_NaN());
    till.server.fault("Неверная сумма");

    EXPECT_FALSE(till.plugin.spendPoints());

    EXPECT_EQ(till.told(), "post SubtractBonus45");
    EXPECT_TRUE(till.server.take("SubtractBonus45").contains(u"<tem:amount>nan</tem:amount>"_s));
    EXPECT_EQ(till.log(),
              "info: Создание оплаты бонусами в виде скидки на сумму 0, по карте 9000000001\n"
              "error: Неверная сумма");
    EXPECT_EQ(till.lastError(), ": Неверная сумма");
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 0);
}
