#include "tests/checkout/checkout_till.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

// Certificates pay beside the rest, and the service hears of them at the close.

namespace {

class Certificates : public CheckoutTill { };

} // namespace

TEST_F(Certificates, PayAPartAndAreToldAtTheClose)
{
    openSaleWithCard();
    till().payCertificate(u"70001"_s, 100.0);
    till().payCertificate(u"70002"_s, 29.80);
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 500.00");
    till().payCash({});
    ASSERT_TRUE(till().close());
    const QString accrual = service.bodies(u"Accrual"_s).constFirst();
    EXPECT_EQ(valueBehind(accrual, u"SubtractedBonus=\""_s), "129.80");
    EXPECT_EQ(accrual.count(u"<Payment "_s), 2);
    EXPECT_THAT(accrual.toStdString(), testing::HasSubstr(R"(DiscountCardNo="70001")"));
}

TEST_F(Certificates, PayTheWholeByThemselves)
{
    openSaleWithCard();
    till().payCertificate(u"70001"_s, {});
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 0.00");
    EXPECT_TRUE(till().close());
}

TEST_F(Certificates, PayOnceWhenTheStoreFailsAndTheStepIsRepeated)
{
    openSaleWithCard();
    ASSERT_TRUE(till().request());
    failStoreAfter(0);
    EXPECT_ANY_THROW(till().payCertificate(u"70001"_s, 100.0));
    repairStore();
    till().payCertificate(u"70001"_s, 100.0);
    EXPECT_EQ(till().contents().payments.size(), 1);
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 529.80");
}

TEST_F(Certificates, SurviveARestart)
{
    openSaleWithCard();
    till().payCertificate(u"70001"_s, 100.0);
    restart();
    ASSERT_TRUE(till().restore());
    till().payCash({});
    ASSERT_TRUE(till().close());
    EXPECT_EQ(valueBehind(service.bodies(u"Accrual"_s).constFirst(), u"SubtractedBonus=\""_s), "100.00");
}
