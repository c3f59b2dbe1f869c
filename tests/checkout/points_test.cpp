#include "tests/checkout/checkout_till.h"

using namespace Qt::StringLiterals;

// Points that pay for a part of the cheque.

namespace {

class Points : public CheckoutTill {
protected:
    Points()
    {
        openSaleWithCard();
    }

    void takes(const QMap<int, QString>& sums)
    {
        service.answer(u"SubtractBonus45"_s, spreadOf(sums));
    }

    [[nodiscard]] std::string amountAsked() const
    {
        const QStringList bodies = service.bodies(u"SubtractBonus45"_s);
        return bodies.isEmpty() ? "(none)" : valueBehind(bodies.constLast(), u"<tem:amount>"_s);
    }
};

} // namespace

TEST_F(Points, LowerTheLinesAsTheServerSpreadsThem)
{
    takes({ { 1, u"10.01"_s }, { 2, u"19.99"_s } });
    EXPECT_TRUE(till().payPoints(30.0));
    EXPECT_EQ(money(), "169.79 430.01 | discount 0.00, points 30.00, due 599.80");
    EXPECT_EQ(amountAsked(), "30.00");
}

TEST_F(Points, WithoutAnAmountAreAllThatIsOffered)
{
    takes({ { 1, u"50.00"_s } });
    EXPECT_TRUE(till().payPoints({}));
    EXPECT_EQ(amountAsked(), "50.00");
    EXPECT_EQ(money(), "129.80 450.00 | discount 0.00, points 50.00, due 579.80");
}

TEST_F(Points, ComeOnTopOfTheDiscounts)
{
    service.grant(discountOnPosition(1, 77, u"17.98"_s));
    ASSERT_TRUE(till().request());
    takes({ { 1, u"50.00"_s } });
    EXPECT_TRUE(till().payPoints({}));
    EXPECT_EQ(money(), "111.82 450.00 | discount 17.98, points 50.00, due 561.82");
    EXPECT_EQ(valueBehind(service.bodies(u"SubtractBonus45"_s).constFirst(), u" Amount=\""_s), "611.82")
        << "the service sees the cheque as it stands";
}

TEST_F(Points, AreCappedByTheBalance)
{
    service.answer(u"GetCardBalance"_s, uR"(<B><Balance Value="12,70"/></B>)"_s);
    ASSERT_TRUE(till().presentCard(u"9000000001"_s));
    EXPECT_TRUE(till().payPoints({}));
    EXPECT_EQ(amountAsked(), "12.00") << "whole points";
}

TEST_F(Points, CashierIsToldWhyNotMore)
{
    service.answer(u"GetCardBalance"_s, uR"(<B><Balance Value="12,70"/></B>)"_s);
    ASSERT_TRUE(till().presentCard(u"9000000001"_s));
    static_cast<void>(told());
    EXPECT_TRUE(till().payPoints({}));
    EXPECT_EQ(told(u"show Балл"_s),
              "show Баллами можно оплатить 12.00, не больше: на карте 12.70, шаг списания 1.00");
    EXPECT_EQ(amountAsked(), "12.00");
}

TEST_F(Points, AreCappedByWhatIsDue)
{
    till().payCash(600.0); // of 629.80
    EXPECT_TRUE(till().payPoints({}));
    EXPECT_EQ(amountAsked(), "29.00");
}

TEST_F(Points, AreCappedByTheLinesThatTakeThem)
{
    (void)till().cancel();
    till().openSale(2);
    till::Checkout::Article article;
    article.code = u"1"_s;
    article.price = 20.0;
    article.minPrice = 3.0;
    till().scan(article);
    article.price = 500.0;
    article.takesPoints = false;
    till().scan(article);
    ASSERT_TRUE(till().presentCard(u"9000000001"_s));
    EXPECT_TRUE(till().payPoints({}));
    EXPECT_EQ(amountAsked(), "17.00");
}

TEST_F(Points, OfLessThanOneAreNone)
{
    service.answer(u"GetCardBalance"_s, uR"(<B><Balance Value="0,70"/></B>)"_s);
    ASSERT_TRUE(till().presentCard(u"9000000001"_s));
    static_cast<void>(told());
    EXPECT_FALSE(till().payPoints({}));
    EXPECT_EQ(told(u"show"_s),
              "show Нет баллов для списания\nshow Баллами не оплатить: на карте 0.70, шаг списания 1.00");
    EXPECT_EQ(amountAsked(), "(none)") << "nothing is not spent";
}

TEST_F(Points, OfACardInDebtAreNone)
{
    service.answer(u"GetCardBalance"_s, uR"(<B><Balance Value="-15,00"/></B>)"_s);
    ASSERT_TRUE(till().presentCard(u"9000000001"_s));
    EXPECT_FALSE(till().payPoints({}));
    EXPECT_EQ(amountAsked(), "(none)") << "a debt is not paid back with the goods";
}

TEST_F(Points, ThatAreNotOfferedAreNone)
{
    service.answer(u"GetCardDiscountAmount"_s, u"0.00"_s);
    static_cast<void>(told());
    EXPECT_FALSE(till().payPoints({}));
    EXPECT_EQ(told(u"show"_s), "show Нет баллов для списания");
}

TEST_F(Points, ThatTheServerRefusesAreNotOnTheCheque)
{
    service.refuse(u"SubtractBonus45"_s, u"Карта заблокирована"_s);
    static_cast<void>(told());
    EXPECT_FALSE(till().payPoints(10.0));
    EXPECT_EQ(told(u"show К"_s), "show Карта заблокирована");
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 629.80");
    EXPECT_FALSE(plugin().hasBonusImpacts());
}

TEST_F(Points, ThatNobodyAnswersAreNotOnTheChequeAndTheChequeGoesOnOffline)
{
    ASSERT_TRUE(till().request());
    service.within = [this](const QString& action) { service.down = action == u"SubtractBonus45"; };
    EXPECT_FALSE(till().payPoints(10.0));
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 629.80");
    service.within = {};
    till().payCash({});
    EXPECT_TRUE(till().close());
    EXPECT_EQ(queued().size(), 1);
}

TEST_F(Points, OfAnOfflineChequeAreNone)
{
    service.down = true;
    EXPECT_FALSE(till().request());
    static_cast<void>(told());
    EXPECT_FALSE(till().payPoints(10.0));
    EXPECT_EQ(told(), "hook request\nhook hasPointsForSpend\nshow Нет баллов для списания");
}

TEST_F(Points, AreNotAskedForWhenTheRequestFails)
{
    service.refuse(u"GetDiscounts"_s, u"Отказ"_s);
    static_cast<void>(told());
    EXPECT_FALSE(till().payPoints(10.0));
    EXPECT_EQ(told(), "hook request\npost GetDiscounts\nshow Отказ");
}

TEST_F(Points, DiscountsStandWhileThePlugInAsksAndAfterwards)
{
    service.grant(discountOnPosition(1, 77, u"17.98"_s));
    ASSERT_TRUE(till().request());
    EXPECT_TRUE(till().payPoints(10.0));
    // The plug-in tells its discounts besides the document: with those on it they would count twice.
    EXPECT_EQ(valueBehind(service.bodies(u"GetCardDiscountAmount"_s).constLast(), u" Amount=\""_s), "611.82");
    EXPECT_EQ(money(), "161.82 450.00 | discount 17.98, points 10.00, due 611.82") << "the reply names no line";
}

TEST_F(Points, ThatCannotBeSavedAreOnTheChequeAllTheSame)
{
    ASSERT_TRUE(till().request());
    takes({ { 1, u"30.00"_s } });
    service.within = [](const QString& action) {
        if (action == u"SubtractBonus45") {
            failStoreAfter(0);
        }
    };
    EXPECT_ANY_THROW((void)till().payPoints(30.0));
    repairStore();
    EXPECT_EQ(money(), "149.80 450.00 | discount 0.00, points 30.00, due 599.80") << "the server has taken them";
    service.within = {};
    till().payCash({});
    EXPECT_TRUE(till().close());
    EXPECT_EQ(valueBehind(service.bodies(u"Accrual"_s).constFirst(), u"SubtractedBonus=\""_s), "30.00");
}

TEST_F(Points, CloseTellsThemOfTheirLines)
{
    takes({ { 1, u"10.01"_s }, { 2, u"19.99"_s } });
    ASSERT_TRUE(till().payPoints(30.0));
    till().payCash({});
    ASSERT_TRUE(till().close());
    const QString told = service.bodies(u"Accrual"_s).constFirst();
    EXPECT_EQ(valueBehind(told, u"SubtractedBonus=\""_s), "30.00");
    EXPECT_EQ(valueBehind(told, u"BonusDiscount=\""_s), "10.01");
}

TEST_F(Points, OfAChequeAreTheDiscountsOfTheNextOneNever)
{
    takes({ { 1, u"30.00"_s } });
    ASSERT_TRUE(till().payPoints(30.0));
    till().payCash({});
    ASSERT_TRUE(till().close());
    openSaleWithCard(1043);
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 629.80");
    EXPECT_FALSE(plugin().hasBonusImpacts());
}
