#include "host/facilities/exceptions.h"
#include "tests/front/closing_till.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// The spending of points undone, and the state dropped without telling anyone.

namespace {

constexpr const char* begun = "info: Отмена операций бонусной системы";
constexpr const char* nothingToUndo = "info: Отмена операций бонусной системы\n"
                                      "info: Операции бонусной системы отменены";

constexpr const char* withCouponsOnly
    = "0 discounts, 0 spendings, points 0.00, card 0.00, coupons vantiro-c1 | 1: vantiro-p1";

void answerCancel(TillAtWork& till)
{
    till.server.answer(R"(<CancelSubtractBonusResponse xmlns="http://tempuri.org/"/>)");
}

} // namespace

TEST(Rollback, GivesThePointsBackAndLeavesTheCoupons)
{
    TillAtWork till;
    fillState(till);
    answerCancel(till);

    EXPECT_TRUE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.told(), "post CancelSubtractBonus");
    EXPECT_EQ(till.log(),
              "info: Отмена операций бонусной системы\n"
              "info: Отмена оплаты бонусами в виде скидки на сумму 30.00\n"
              "info: Операции бонусной системы отменены");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(till.card()->fields.spentSum, 0.0);
    EXPECT_EQ(stateOf(till), withCouponsOnly);
    const QString request = till.server.take("CancelSubtractBonus");
    EXPECT_TRUE(request.contains(u"<tem:discountCardNumber>9000000001</tem:discountCardNumber>"_s));
    EXPECT_TRUE(request.contains(u"<tem:amount>30.00</tem:amount>"_s));
}

TEST(Rollback, GivesTheSumOfAllSpendingsBackInOneRequest)
{
    TillAtWork till;
    till.plugin.bonusImpacts
        = { bonusImpact({ { 1, 10.25 } }), bonusImpact({ { 1, 20.0 }, { 2, 0.5 } }), bonusImpact({ { 1, 3.0 } }) };
    answerCancel(till);

    EXPECT_TRUE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.log(),
              "info: Отмена операций бонусной системы\n"
              "info: Отмена оплаты бонусами в виде скидки на сумму 33.75\n"
              "info: Операции бонусной системы отменены");
    EXPECT_TRUE(till.server.take("CancelSubtractBonus").contains(u"<tem:amount>33.75</tem:amount>"_s));
}

// A record that was none when it was stored comes back as none.
TEST(Rollback, PassesOverASpendingThatIsNone)
{
    TillAtWork till;
    till.plugin.bonusImpacts = { nullptr, bonusImpact({ { 1, 10.25 } }) };
    answerCancel(till);

    EXPECT_TRUE(till.plugin.rollback(till.document()));

    EXPECT_TRUE(till.server.take("CancelSubtractBonus").contains(u"<tem:amount>10.25</tem:amount>"_s));
}

TEST(Rollback, SumIsOfTheTotalsAndNotOfTheDetails)
{
    TillAtWork till;
    till.answerSpending("29.00"); // the server has spread less than was asked for
    till.plugin.setPointsForSpend(till.document(), 30.0);
    EXPECT_TRUE(till.plugin.spendPoints());
    EXPECT_FALSE(till.server.take("SubtractBonus45").isEmpty());
    answerCancel(till);

    EXPECT_TRUE(till.plugin.rollback(till.document()));

    EXPECT_TRUE(till.server.take("CancelSubtractBonus").contains(u"<tem:amount>30.00</tem:amount>"_s));
}

TEST(Rollback, WithoutSpendingsAsksNobody)
{
    TillAtWork till;
    fillState(till);
    till.plugin.bonusImpacts.clear();

    EXPECT_TRUE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), nothingToUndo);
    EXPECT_EQ(till.card()->fields.spentSum, 30.0) << "no spending of this system";
    EXPECT_EQ(stateOf(till), withCouponsOnly);
}

TEST(Rollback, OfAnOfflineDocumentAsksNobody)
{
    TillAtWork till;
    fillState(till);
    till.goOffline();

    EXPECT_TRUE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), nothingToUndo);
    EXPECT_EQ(till.card()->fields.spentSum, 30.0);
    EXPECT_EQ(stateOf(till), withCouponsOnly);
}

TEST(Rollback, SumOfExactlyHalfAKopeckCountsAsNothing)
{
    TillAtWork till;
    fillState(till);
    till.plugin.bonusImpacts = { bonusImpact({ { 1, 0.005 } }) };

    EXPECT_TRUE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), nothingToUndo);
    EXPECT_EQ(till.card()->fields.spentSum, 30.0);
    EXPECT_EQ(stateOf(till), withCouponsOnly);
}

TEST(Rollback, SumAboveHalfAKopeckIsGivenBack)
{
    TillAtWork till;
    till.plugin.bonusImpacts = { bonusImpact({ { 1, 0.0051 } }) };
    answerCancel(till);

    EXPECT_TRUE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.log(),
              "info: Отмена операций бонусной системы\n"
              "info: Отмена оплаты бонусами в виде скидки на сумму 0.01\n"
              "info: Операции бонусной системы отменены");
    EXPECT_TRUE(till.server.take("CancelSubtractBonus").contains(u"<tem:amount>0.01</tem:amount>"_s));
}

TEST(Rollback, NegativeSumCountsAsNothing)
{
    TillAtWork till;
    till.plugin.bonusImpacts = { bonusImpact({ { 1, -30.0 } }) };

    EXPECT_TRUE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 0);
}

TEST(Rollback, RefusalKeepsAllSoThatItCanBeRepeated)
{
    TillAtWork till;
    fillState(till);
    till.server.fault("Отказано");

    EXPECT_FALSE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.told(), "post CancelSubtractBonus");
    EXPECT_EQ(till.log(),
              "info: Отмена операций бонусной системы\n"
              "info: Отмена оплаты бонусами в виде скидки на сумму 30.00\n"
              "error: Отказано");
    EXPECT_EQ(till.lastError(), ": Отказано");
    EXPECT_EQ(till.card()->fields.spentSum, 30.0);
    EXPECT_EQ(stateOf(till), wholeState);
    EXPECT_FALSE(till.server.take("CancelSubtractBonus").isEmpty());

    answerCancel(till);
    EXPECT_TRUE(till.plugin.rollback(till.document()));
    EXPECT_TRUE(till.server.take("CancelSubtractBonus").contains(u"<tem:amount>30.00</tem:amount>"_s));
    EXPECT_EQ(till.card()->fields.spentSum, 0.0);
    EXPECT_EQ(stateOf(till), withCouponsOnly);
}

TEST(Rollback, LostConnectionIsAFailureLikeAnyOther)
{
    TillAtWork till;
    fillState(till);
    till.server.refuse();

    EXPECT_FALSE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.told(), "post CancelSubtractBonus") << "nothing is queued and nothing saved";
    EXPECT_EQ(till.log(),
              "info: Отмена операций бонусной системы\n"
              "info: Отмена оплаты бонусами в виде скидки на сумму 30.00\n"
              "error: Произошла ошибка при выполнении запроса соединение отклонено\n"
              "error: Нет связи с сервером");
    EXPECT_EQ(till.lastError(), "requestNoConnection: Нет связи с сервером") << "without a remark about earning";
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_EQ(till.card()->fields.spentSum, 30.0);
    EXPECT_EQ(stateOf(till), wholeState);
    EXPECT_FALSE(till.server.take("CancelSubtractBonus").isEmpty());
}

TEST(Rollback, ReplyWithoutItsElementIsAFailure)
{
    TillAtWork till;
    fillState(till);
    till.server.answer("<CancelSubtractBonusResult/>");

    EXPECT_FALSE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.lastError(), "requestIncorrectAnswer: Некорректный ответ от сервера");
    EXPECT_EQ(stateOf(till), wholeState);
    EXPECT_FALSE(till.server.take("CancelSubtractBonus").isEmpty());
}

TEST(Rollback, CardTakenOffMeanwhileIsAFailure)
{
    TillAtWork till(TillAtWork::saleWithoutCard());
    till.plugin.bonusImpacts = { bonusImpact({ { 1, 30.0 } }) };

    EXPECT_FALSE(till.plugin.rollback(till.document()));

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.lastError(), "vantiroCardNotFound: В документе нет карты Vantiro");
    EXPECT_EQ(till.plugin.bonusImpacts.size(), 1);
}

TEST(Rollback, FailureOfAnotherKindPassesToTheHostAndTheStateStays)
{
    TillAtWork till;
    fillState(till);
    answerCancel(till);
    till.server.whilePosting([] { throw BasicException(tr::Tr(u"сбой"_s)); });

    EXPECT_THROW(static_cast<void>(till.plugin.rollback(till.document())), BasicException);

    EXPECT_EQ(till.log(), std::string(begun) + "\ninfo: Отмена оплаты бонусами в виде скидки на сумму 30.00");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(stateOf(till), wholeState);

    till.server.whilePosting([] {});
    EXPECT_TRUE(till.plugin.rollback(till.document())); // asks for the answer that is still waiting
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(till.server.take("CancelSubtractBonus").isEmpty());
    }
}

TEST(Cancel, DropsTheStateTellsNobodyAndLeavesTheCoupons)
{
    TillAtWork till;
    fillState(till);

    EXPECT_TRUE(till.plugin.cancel());

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "info: Сброс состояния бонусной системы");
    EXPECT_EQ(till.lastError(), ": ");
    EXPECT_EQ(till.card()->fields.spentSum, 30.0);
    EXPECT_EQ(stateOf(till), withCouponsOnly);
}

TEST(Cancel, WithoutADocumentIsGood)
{
    TillAtWork till;
    till.open(nullptr);

    EXPECT_TRUE(till.plugin.cancel());

    EXPECT_EQ(till.log(), "info: Сброс состояния бонусной системы");
}
