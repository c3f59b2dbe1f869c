#include "host/framework/activity_notifier.h"
#include "tests/checkout/checkout_till.h"

using namespace Qt::StringLiterals;

// Which hooks and events the plug-in sees at each step of the cashier, and in which order.

namespace {

class OrderOfCalls : public CheckoutTill { };

} // namespace

TEST_F(OrderOfCalls, OpeningAndScanningAskNobody)
{
    till().openSale(7);
    scan(u"1"_s, 10.0);
    EXPECT_EQ(told(), "");
    EXPECT_EQ(states(), "7 open");
    EXPECT_EQ(money(), "10.00 | discount 0.00, points 0.00, due 10.00");
}

TEST_F(OrderOfCalls, CardIsIdentifiedAndItsBalanceShown)
{
    openSale();
    EXPECT_TRUE(till().presentCard(u"9000000001"_s));
    EXPECT_EQ(told(),
              "hook identifyByCard\npost IsCardValid\npost GetCardBalance\nshow Карта 9000000001, баллов: 1000.00");
}

TEST_F(OrderOfCalls, PhoneFindsTheCardByACodeThatTheCashierKeysIn)
{
    openSale();
    answers = { u"1234"_s };
    EXPECT_TRUE(till().presentPhone(u"+79990000001"_s));
    EXPECT_EQ(told(),
              "hook getCardNumber\npost GetVerifyCode\nshow Ввод кода подтверждения\nask Введите код подтверждения\n"
              "hook identifyByCard\npost IsCardValid\npost GetCardBalance\nshow Карта 9000000001, баллов: 1000.00");
}

TEST_F(OrderOfCalls, RequestAsksForDiscountsMessagesAndPoints)
{
    openSaleWithCard();
    service.answer(u"GetMessages"_s, uR"(<R><Msg Device="1" Body="Спасибо"/><Msg Device="2" Body="Пакет"/></R>)"_s);
    EXPECT_TRUE(till().request());
    EXPECT_EQ(told(),
              "hook request\npost GetDiscounts\npost GetMessages\npost GetCardDiscountAmount\n"
              "show Кассиру: Пакет\nshow Покупателю: Спасибо");
}

TEST_F(OrderOfCalls, PointsAreAskedForLimitedSetAndSpent)
{
    openSaleWithCard();
    EXPECT_TRUE(till().request());
    static_cast<void>(told());
    service.answer(u"SubtractBonus45"_s, spreadOf({ { 1, u"30.00"_s } }));
    EXPECT_TRUE(till().payPoints(30.0));
    EXPECT_EQ(
        told(),
        "hook hasPointsForSpend\npost GetCardDiscountAmount\nhook getPointsForSpend\n"
        "show Баллами можно оплатить 50.00, не больше: сервис предлагает 50.00\n"
        "show Можно и меньше: 49.00, 48.00, 47.00\n"
        "hook setPointsForSpend 30.00\nhook spendPoints\npost SubtractBonus45");
}

TEST_F(OrderOfCalls, PointsOnAChangedChequeAreAskedAfterTheRequest)
{
    openSaleWithCard();
    EXPECT_TRUE(till().payPoints({}));
    EXPECT_EQ(
        told(u"hook"_s),
        "hook request\nhook hasPointsForSpend\nhook getPointsForSpend\nhook setPointsForSpend 50.00\nhook spendPoints");
}

TEST_F(OrderOfCalls, CloseWithACardCommitsThenTellsTheEvent)
{
    openSaleWithCard();
    till().payCash({});
    static_cast<void>(told());
    service.answer(u"Accrual"_s, u"Начислено 6"_s);
    EXPECT_TRUE(till().close());
    EXPECT_EQ(told(), "hook commit\npost Accrual\nslip Начислено 6\nevent 10\nhook clearAfterClose");
    EXPECT_EQ(states(), "1042 closed");
    EXPECT_FALSE(till().isOpen());
}

TEST_F(OrderOfCalls, CloseWithoutACardTellsTheEventAlone)
{
    openSale();
    till().payCash({});
    static_cast<void>(told());
    EXPECT_TRUE(till().close());
    EXPECT_EQ(told(), "event 10\npost Accrual\nhook clearAfterClose");
}

TEST_F(OrderOfCalls, CancelTellsTheEventThenDropsTheState)
{
    openSaleWithCard();
    EXPECT_TRUE(till().cancel());
    EXPECT_EQ(told(), "event 12\npost Accrual\nhook cancel\nhook clearAfterClose");
    EXPECT_EQ(states(), "1042 cancelled");
    EXPECT_FALSE(till().isOpen());
}

TEST_F(OrderOfCalls, CancelGivesThePointsBackFirst)
{
    openSaleWithCard();
    EXPECT_TRUE(till().payPoints({}));
    static_cast<void>(told());
    EXPECT_TRUE(till().cancel());
    EXPECT_EQ(told(),
              "hook rollback\npost CancelSubtractBonus\nevent 12\npost Accrual\nhook cancel\nhook clearAfterClose");
}

TEST_F(OrderOfCalls, RemovalTellsTheEventAfterTheLineIsGone)
{
    openSale();
    till().remove(1);
    EXPECT_EQ(told(), "event 21");
    EXPECT_EQ(money(), "450.00 | discount 0.00, points 0.00, due 450.00");
}

TEST_F(OrderOfCalls, CouponIsValidatedBetweenItsEvents)
{
    openSale();
    EXPECT_TRUE(till().addCoupon(u"c-1"_s));
    EXPECT_EQ(told(), "event 72\nshow Обращение к системе лояльности\npost IsCouponValid\nevent 73");
}

TEST_F(OrderOfCalls, SettingAsideSavesBetweenItsHooks)
{
    openSaleWithCard();
    till().putOut();
    EXPECT_EQ(told(), "hook beforePutoutCheck\nhook afterPutoutCheck\nhook clearAfterClose");
    EXPECT_EQ(states(), "1042 aside");
    EXPECT_FALSE(till().isOpen());
}

TEST_F(OrderOfCalls, RevealingCallsItsHookOnTheOpenDocument)
{
    openSaleWithCard();
    till().putOut();
    static_cast<void>(told());
    till().reveal(1042, 1044);
    EXPECT_EQ(told(), "hook revealCheck");
    EXPECT_EQ(states(), "1044 open");
}

TEST_F(OrderOfCalls, RestoreTellsItsEventAndNothingIsAsked)
{
    openSaleWithCard();
    restart();
    EXPECT_TRUE(till().restore());
    EXPECT_EQ(told(), "event 9\nshow Восстановлен чек 1042");
}

TEST_F(OrderOfCalls, RestoreWithoutADocumentDoesNothing)
{
    restart();
    EXPECT_FALSE(till().restore());
    EXPECT_EQ(told(), "");
}

TEST_F(OrderOfCalls, FirstPaymentAsksForTheDiscountsOfAChangedCheque)
{
    openSale();
    till().payCash(100.0);
    EXPECT_EQ(told(), "hook request\npost GetDiscounts\npost GetMessages");
    till().payCash({});
    EXPECT_EQ(told(), "");
}

TEST_F(OrderOfCalls, CertificateAsksForTheDiscountsJustTheSame)
{
    openSale();
    till().payCertificate(u"70001"_s, 100.0);
    EXPECT_EQ(told(), "hook request\npost GetDiscounts\npost GetMessages");
}

TEST_F(OrderOfCalls, PaymentOfAnUnchangedChequeAsksNobody)
{
    openSale();
    EXPECT_TRUE(till().request());
    static_cast<void>(told());
    till().payCash({});
    EXPECT_EQ(told(), "");
}

TEST_F(OrderOfCalls, ReturnIsPaidWithoutAQuestion)
{
    till().openReturn(5);
    scan(u"1"_s, 10.0);
    till().payCash({});
    EXPECT_EQ(told(), "");
    EXPECT_TRUE(till().close());
    EXPECT_EQ(told(), "event 10\npost Accrual\nhook clearAfterClose");
}

TEST_F(OrderOfCalls, NextDocumentGetsTheNumberBehindTheHighest)
{
    openSale(1042);
    static_cast<void>(till().cancel());
    till().openSale({});
    EXPECT_EQ(states(), "1042 cancelled, 1043 open");
}

TEST_F(OrderOfCalls, FirstDocumentOfAllIsNumberOne)
{
    till().openReturn({});
    EXPECT_EQ(states(), "1 open");
}
