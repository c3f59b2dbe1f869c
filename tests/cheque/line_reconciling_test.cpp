#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"

using namespace Qt::StringLiterals;

namespace {

Detail positionDiscount(int code)
{
    return Detail(record_name::positionDiscount).code(code);
}

/// A discount that the server has just granted on a position.
QSharedPointer<DiscountImpact> granted(int position, int code, double sum)
{
    return discountImpact(positionDiscount(code).on(position).sum(sum));
}

class Reconciling : public ChequeTest {
protected:
    Reconciling()
    {
        document.line(Goods(1, u"1001"_s, 100.0)).line(Goods(2, u"1002"_s, 200.0));
    }

    /// "Amount BonusDiscount [discounts]" of a line of the document.
    [[nodiscard]] std::string outcome(int position, const GrantedDiscounts& grantedDiscounts = {}) const
    {
        const QDomElement line = lineOf(ordinaryCheque(document.build(), grantedDiscounts), position);
        return attribute(line, "Amount") + " " + attribute(line, "BonusDiscount") + " [" + discountsOf(line) + "]";
    }

    DocumentBuilder document; // two lines, of 100 and 200 roubles
};

TEST_F(Reconciling, WithoutImpactsLeavesTheLinesAlone)
{
    EXPECT_EQ(outcome(1), "100.00 0.00 []");
    EXPECT_EQ(outcome(2), "200.00 0.00 []");
}

TEST_F(Reconciling, ImpactWithoutDetailsAddsNothing)
{
    document.impact(discountImpact(positionDiscount(41).on(1).sum(5.0)));
    document.impact(bonusImpact({}));

    EXPECT_EQ(outcome(1), "100.00 0.00 []");
}

TEST_F(Reconciling, DiscountOfTheDocumentIsListedAndAlreadyInTheSum)
{
    document.discount(positionDiscount(41), { { 1, 5.0 } });

    EXPECT_EQ(outcome(1), "100.00 0.00 [41 Amount 0 5.00]");
    EXPECT_EQ(outcome(2), "200.00 0.00 []");
}

TEST_F(Reconciling, SpentPointsAreAddedBackAndStatedBesides)
{
    document.impact(bonusImpact({ { 1, 30.0 } }));

    EXPECT_EQ(outcome(1), "130.00 30.00 []");
    EXPECT_EQ(outcome(2), "200.00 0.00 []");
}

TEST_F(Reconciling, SecondBonusRecordIsStatedAndBothAreAddedBack)
{
    document.impact(bonusImpact({ { 1, 10.0 }, { 2, 7.0 } })).impact(bonusImpact({ { 1, 20.0 } }));

    EXPECT_EQ(outcome(1), "130.00 20.00 []");
    EXPECT_EQ(outcome(2), "207.00 7.00 []");
}

TEST_F(Reconciling, BonusRecordIsToldByItsNameAlone)
{
    document.discount(Detail(u"Баллы Vantiro"_s).code(41).percent(10).source(0), { { 1, 10.0 } });

    EXPECT_EQ(outcome(1), "110.00 10.00 []");
}

TEST_F(Reconciling, BonusNameInOtherCaseIsADiscount)
{
    document.discount(Detail(u"баллы Vantiro"_s).code(41).type(EDiscountType::bonus), { { 1, 10.0 } });
    document.discount(Detail(u"Баллы Vantiro 2"_s).code(42).type(EDiscountType::bonus), { { 1, 20.0 } });

    EXPECT_EQ(outcome(1), "100.00 0.00 [0 Amount 0 10.00; 0 Amount 0 20.00]");
}

TEST_F(Reconciling, DiscountsStandInTheOrderFound)
{
    document.discount(positionDiscount(43), { { 2, 3.0 }, { 1, 1.0 } })
        .discount(Detail(u"Скидка по карте"_s).percent(5), { { 1, 5.0 } })
        .impact(bonusImpact({ { 1, 9.0 } }))
        .discount(positionDiscount(41), { { 1, 2.0 } });

    EXPECT_EQ(outcome(1, { granted(1, 40, 4.0) }),
              "105.00 9.00 [43 Amount 0 1.00; 0 Percent 5 5.00; 41 Amount 0 2.00; 40 Amount 0 4.00]");
    EXPECT_EQ(outcome(2), "200.00 0.00 [43 Amount 0 3.00]");
}

TEST_F(Reconciling, DetailCountsForItsOwnPositionAndNotForItsKey)
{
    const auto discount = discountImpact(positionDiscount(41), { { 1, 5.0 } });
    discount->getDetails().value(1)->setPosition(2);
    const auto bonus = bonusImpact({ { 1, 3.0 } });
    bonus->getDetails().value(1)->setPosition(2);
    document.impact(discount).impact(bonus);

    EXPECT_EQ(outcome(1), "100.00 0.00 []");
    EXPECT_EQ(outcome(2), "203.00 3.00 [41 Amount 0 5.00]");
}

TEST_F(Reconciling, DetailsOfOneImpactCountInTheOrderOfTheirKeys)
{
    const auto discount = discountImpact(positionDiscount(41), { { 7, 7.0 }, { -3, 3.0 }, { 5, 5.0 } });
    const auto bonus = bonusImpact({ { 7, 0.75 }, { 5, 0.5 } });
    for (const auto& detail : discount->getDetails()) {
        detail->setPosition(1);
    }
    for (const auto& detail : bonus->getDetails()) {
        detail->setPosition(1);
    }
    document.impact(discount).impact(bonus);

    EXPECT_EQ(outcome(1), "101.25 0.75 [41 Amount 0 3.00; 41 Amount 0 5.00; 41 Amount 0 7.00]");
}

TEST_F(Reconciling, GrantedDiscountIsTakenOffAndListed)
{
    EXPECT_EQ(outcome(1, { granted(1, 42, 25.0) }), "75.00 0.00 [42 Amount 0 25.00]");
    EXPECT_EQ(outcome(2, { granted(1, 42, 25.0) }), "200.00 0.00 []");
}

TEST_F(Reconciling, GrantedDiscountThatTheDocumentCarriesDoesNotCountTwice)
{
    document.discount(positionDiscount(41), { { 1, 5.0 } });

    EXPECT_EQ(outcome(1, { granted(1, 41, 5.0) }), "100.00 0.00 [41 Amount 0 5.00]");
}

TEST_F(Reconciling, GrantedDiscountIsKnownByItsCodeAlone)
{
    document.discount(Detail(u"Скидка по карте"_s).code(41).percent(10), { { 1, 10.0 } });

    EXPECT_EQ(outcome(1, { granted(1, 41, 5.0) }), "100.00 0.00 [0 Percent 10 10.00]");
}

TEST_F(Reconciling, SameCodeOnAnotherPositionDoesNotStandInTheWay)
{
    document.discount(positionDiscount(41), { { 2, 5.0 } });

    EXPECT_EQ(outcome(1, { granted(1, 41, 5.0) }), "95.00 0.00 [41 Amount 0 5.00]");
}

TEST_F(Reconciling, BonusRecordOfTheSameCodeDoesNotStandInTheWay)
{
    document.discount(Detail(record_name::bonus).code(41), { { 1, 10.0 } });

    EXPECT_EQ(outcome(1, { granted(1, 41, 5.0) }), "105.00 10.00 [41 Amount 0 5.00]");
}

TEST_F(Reconciling, SecondGrantedDiscountOfACodeIsKnownAlready)
{
    EXPECT_EQ(outcome(1, { granted(1, 41, 5.0), granted(1, 41, 7.0), granted(1, 42, 1.0) }),
              "94.00 0.00 [41 Amount 0 5.00; 42 Amount 0 1.00]");
}

TEST_F(Reconciling, GrantedDiscountOnTheChequeTouchesNoLine)
{
    const auto onCheque
        = discountImpact(Detail(record_name::chequeDiscount).on(1).onCheque().code(90).sum(10.0), { { 1, 10.0 } });

    EXPECT_EQ(outcome(1, { onCheque }), "100.00 0.00 []");
    EXPECT_EQ(attribute(ordinaryCheque(document.build(), { onCheque }).documentElement(), "Amount"), "290.00");
}

TEST_F(Reconciling, GrantedDiscountOnAnythingButAPositionTouchesNoLine)
{
    const auto impact = discountImpact(positionDiscount(42).on(1).sum(10.0));
    impact->getTotals()->setDiscountObject(static_cast<EDiscountObject::type>(2));

    EXPECT_EQ(outcome(1, { impact }), "100.00 0.00 []");
}

TEST_F(Reconciling, OfGrantedDiscountsTheTotalsCountAndNotTheDetails)
{
    const auto impact = discountImpact(positionDiscount(42).on(1).sum(10.0), { { 2, 10.0 } });

    EXPECT_EQ(outcome(1, { impact }), "90.00 0.00 [42 Amount 0 10.00]");
    EXPECT_EQ(outcome(2, { impact }), "200.00 0.00 []");
}

TEST_F(Reconciling, RecordsOfUnknownPositionsReachNoLine)
{
    document.discount(positionDiscount(41), { { 9, 5.0 } }).impact(bonusImpact({ { 8, 3.0 } }));
    const GrantedDiscounts unknown { granted(7, 42, 1.0) };

    EXPECT_EQ(outcome(1, unknown), "100.00 0.00 []");
    EXPECT_EQ(outcome(2, unknown), "200.00 0.00 []");
    // The head counts them all the same.
    const QDomElement cheque = rootOf(ordinaryCheque(document.build(), unknown));
    EXPECT_EQ(attribute(cheque, "Amount"), "299.00");
    EXPECT_EQ(attribute(cheque, "SubtractedBonus"), "3.00");
}

TEST_F(Reconciling, PointsAndGrantedDiscountsMeetOnOneLine)
{
    document.impact(bonusImpact({ { 1, 30.0 } })).discount(positionDiscount(41), { { 1, 5.0 } });

    EXPECT_EQ(outcome(1, { granted(1, 42, 12.5), granted(1, 43, 0.25) }),
              "117.25 30.00 [41 Amount 0 5.00; 42 Amount 0 12.50; 43 Amount 0 0.25]");
}

TEST_F(Reconciling, GrantedDiscountMayExceedTheLine)
{
    EXPECT_EQ(outcome(1, { granted(1, 42, 150.5) }), "-50.50 0.00 [42 Amount 0 150.50]");
}

TEST_F(Reconciling, NothingIsRoundedBeforeItIsPrinted)
{
    document.line(Goods(3, u"1003"_s, 11.0).costs(10.004)).impact(bonusImpact({ { 3, 0.004 } }));

    EXPECT_EQ(outcome(3), "10.01 0.00 []");
}

TEST_F(Reconciling, DocumentIsLeftAsItWas)
{
    const auto discount = discountImpact(positionDiscount(41), { { 1, 5.0 } });
    const auto bonus = bonusImpact({ { 1, 30.0 } });
    const auto grant = granted(1, 42, 12.5);
    document.impact(discount).impact(bonus);

    const std::string first = outcome(1, { grant });

    EXPECT_EQ(outcome(1, { grant }), first);
    EXPECT_EQ(discount->getDetails().size(), 1);
    EXPECT_EQ(bonus->getDetails().value(1)->getDiscountSum(), 30.0);
    EXPECT_EQ(grant->getTotals()->getDiscountSum(), 12.5);
    EXPECT_TRUE(grant->getDetails().isEmpty());
}

} // namespace
