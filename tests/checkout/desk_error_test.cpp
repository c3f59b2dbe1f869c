#include "tests/checkout/checkout_till.h"
#include "till/desk/desk_error.h"

#include <vector>

using namespace Qt::StringLiterals;

// What the till refuses, with the sentence that it gives, and that nothing changes by it.

namespace {

class Refusal : public CheckoutTill {
protected:
    /// Every step that needs an open document.
    [[nodiscard]] std::vector<std::function<void()>> allSteps()
    {
        return {
            [this] { scan(u"1"_s, 1.0); },
            [this] { till().takeBack(1, 1.0); },
            [this] { till().remove(1); },
            [this] { till().selectPosition(1); },
            [this] { (void)till().presentCard(u"9"_s); },
            [this] { (void)till().presentPhone(u"9"_s); },
            [this] { (void)till().request(); },
            [this] { (void)till().addCoupon(u"c-1"_s); },
            [this] { (void)till().deleteCoupon(u"c-1"_s); },
            [this] { (void)till().payPoints({}); },
            [this] { (void)till().rollback(); },
            [this] { till().payCash({}); },
            [this] { till().payCertificate(u"7"_s, {}); },
            [this] { till().putOut(); },
        };
    }

    /// The call is refused with the sentence, and leaves the document as it is.
    void expectRefusal(const std::string& sentence, const std::function<void()>& call)
    {
        const std::string before = till().isOpen() ? money() : states();
        static_cast<void>(told());
        EXPECT_EQ(refusal(call), sentence);
        EXPECT_EQ(told(), "") << "nobody was asked or told";
        EXPECT_EQ(till().isOpen() ? money() : states(), before);
    }

    void spend()
    {
        service.answer(u"SubtractBonus45"_s, spreadOf({ { 1, u"30.00"_s } }));
        ASSERT_TRUE(till().payPoints(30.0));
    }
};

} // namespace

TEST_F(Refusal, EveryStepNeedsAnOpenCheque)
{
    for (const auto& step : allSteps()) {
        expectRefusal("no cheque is open", step);
    }
    expectRefusal("no cheque is open", [this] { (void)till().close(); });
    expectRefusal("no cheque is open", [this] { (void)till().cancel(); });
    expectRefusal("no cheque is open", [this] { (void)till().document(); });
    expectRefusal("no cheque is open", [this] { (void)till().due(); });
}

TEST_F(Refusal, OneChequeAtATime)
{
    openSale();
    expectRefusal("cheque 1042 is still open; close or cancel it first", [this] { till().openSale({}); });
    expectRefusal("cheque 1042 is still open; close or cancel it first", [this] { till().openReturn({}); });
    expectRefusal("cheque 1042 is still open; close or cancel it first", [this] { till().reveal(1, {}); });
    expectRefusal("cheque 1042 is still open; close or cancel it first", [this] { (void)till().restore(); });
    EXPECT_EQ(states(), "1042 open");
}

TEST_F(Refusal, ReturnOfAnUnknownSale)
{
    expectRefusal("there is no closed sale 8", [this] { till().openReturnOf(8, {}); });
}

TEST_F(Refusal, ReturnOfASaleThatIsNotClosed)
{
    openSale(8);
    (void)till().cancel();
    expectRefusal("there is no closed sale 8", [this] { till().openReturnOf(8, {}); });
}

TEST_F(Refusal, ReturnOfAReturn)
{
    till().openReturn(8);
    scan(u"1"_s, 1.0);
    (void)till().close();
    expectRefusal("there is no closed sale 8", [this] { till().openReturnOf(8, {}); });
}

TEST_F(Refusal, RevealOfWhatWasNotSetAside)
{
    openSale(8);
    (void)till().cancel();
    expectRefusal("no cheque 8 was set aside", [this] { till().reveal(8, {}); });
}

TEST_F(Refusal, LineWithoutQuantity)
{
    openSale();
    const std::string sentence = "a line needs a quantity above zero and a price that is not below it";
    expectRefusal(sentence, [this] { scan(u"1"_s, 1.0, 0.0); });
    expectRefusal(sentence, [this] { scan(u"1"_s, 1.0, -1.0); });
    expectRefusal(sentence, [this] { scan(u"1"_s, 1.0, 0.0004); });
    expectRefusal(sentence, [this] { scan(u"1"_s, -0.01); });
}

TEST_F(Refusal, PositionThatIsNotThere)
{
    openSale();
    expectRefusal("the cheque has no position 3", [this] { till().remove(3); });
    expectRefusal("the cheque has no position 3", [this] { till().selectPosition(3); });
    till().remove(2);
    expectRefusal("the cheque has no position 2", [this] { till().remove(2); });
}

TEST_F(Refusal, TakingBackOnWhatIsNoReturnAgainstASale)
{
    const std::string sentence = "this is no return against a sale that the till knows";
    openSale();
    expectRefusal(sentence, [this] { till().takeBack(1, 1.0); });
    (void)till().cancel();
    till().openReturn({});
    expectRefusal(sentence, [this] { till().takeBack(1, 1.0); });
}

TEST_F(Refusal, CouponThatIsNotThere)
{
    openSale();
    expectRefusal("the cheque has no coupon c-1", [this] { (void)till().deleteCoupon(u"c-1"_s); });
}

TEST_F(Refusal, EmptyChequeIsNeitherPaidNorClosedNorAskedAbout)
{
    till().openSale(3);
    const std::string sentence = "the cheque has no lines";
    expectRefusal(sentence, [this] { till().payCash({}); });
    expectRefusal(sentence, [this] { till().payCertificate(u"7"_s, 1.0); });
    expectRefusal(sentence, [this] { (void)till().close(); });
    expectRefusal(sentence, [this] { (void)till().request(); });
    expectRefusal(sentence, [this] { (void)till().payPoints({}); });
}

TEST_F(Refusal, LoyaltyOnAReturn)
{
    till().openReturn(3);
    scan(u"1"_s, 10.0);
    expectRefusal("this is done on a sale only", [this] { (void)till().request(); });
    expectRefusal("this is done on a sale only", [this] { (void)till().payPoints({}); });
}

TEST_F(Refusal, PointsWithoutACard)
{
    openSale();
    expectRefusal("points are spent with a card, and none is on the cheque: present one first", [this] { (void)till().payPoints({}); });
}

TEST_F(Refusal, PointsOfNothing)
{
    openSaleWithCard();
    const std::string sentence = "the amount of points must be above zero";
    expectRefusal(sentence, [this] { (void)till().payPoints(0.0); });
    expectRefusal(sentence, [this] { (void)till().payPoints(-1.0); });
    expectRefusal(sentence, [this] { (void)till().payPoints(0.004); });
}

TEST_F(Refusal, MorePointsThanAreOffered)
{
    openSaleWithCard();
    EXPECT_EQ(refusal([this] { (void)till().payPoints(50.01); }), "points can pay 50.00 at most");
    EXPECT_EQ(service.bodies(u"SubtractBonus45"_s).size(), 0);
    EXPECT_EQ(money(), "179.80 450.00 | discount 0.00, points 0.00, due 629.80");
}

TEST_F(Refusal, RollbackOfNothing)
{
    openSaleWithCard();
    expectRefusal("no points are spent on this cheque", [this] { (void)till().rollback(); });
}

TEST_F(Refusal, ChangesWhilePointsAreSpent)
{
    openSaleWithCard();
    spend();
    const std::string sentence = "points are spent on this cheque: roll them back first";
    expectRefusal(sentence, [this] { scan(u"1"_s, 1.0); });
    expectRefusal(sentence, [this] { till().remove(1); });
    expectRefusal(sentence, [this] { (void)till().presentCard(u"9"_s); });
    expectRefusal(sentence, [this] { (void)till().presentPhone(u"9"_s); });
    expectRefusal(sentence, [this] { (void)till().request(); });
    expectRefusal(sentence, [this] { (void)till().addCoupon(u"c-1"_s); });
    expectRefusal(sentence, [this] { (void)till().deleteCoupon(u"c-1"_s); });
    expectRefusal(sentence, [this] { (void)till().payPoints(1.0); });
    expectRefusal(sentence, [this] { till().putOut(); });
}

TEST_F(Refusal, PaymentOfNothingOrTooMuch)
{
    openSale();
    ASSERT_TRUE(till().request());
    expectRefusal("the amount must be above zero", [this] { till().payCash(0.0); });
    expectRefusal("the amount must be above zero", [this] { till().payCertificate(u"7"_s, -5.0); });
    expectRefusal("629.81 is more than is due: 629.80", [this] { till().payCash(629.81); });
    till().payCash({});
    expectRefusal("there is nothing to pay", [this] { till().payCash({}); });
    expectRefusal("0.01 is more than is due: 0.00", [this] { till().payCertificate(u"7"_s, 0.01); });
}

TEST_F(Refusal, ClosingOfWhatIsNotPaid)
{
    openSale();
    expectRefusal("629.80 is still to be paid", [this] { (void)till().close(); });
    till().payCash(629.79);
    expectRefusal("0.01 is still to be paid", [this] { (void)till().close(); });
    EXPECT_EQ(states(), "1042 open");
}

TEST_F(Refusal, StepsThatWouldLowerWhatIsPaidFor)
{
    openSale();
    till().payCash(600.0);
    const std::string sentence = "a payment stands on this cheque: its sum must not go down any more";
    expectRefusal(sentence, [this] { till().remove(1); });
    expectRefusal(sentence, [this] { (void)till().request(); });
}

TEST_F(Refusal, TillWithoutALoyaltySystemDoesNotStart)
{
    plugin().deregisterLoyaltySystem();
    EXPECT_EQ(refusal([] { const till::Checkout other; }),
              "no loyalty system has announced itself for cards of mode 7");
}

TEST_F(Refusal, StepsOnAChequeThatIsBeingClosed)
{
    openSaleWithCard();
    till().payCash({});
    failStoreAfter(1);
    EXPECT_ANY_THROW((void)till().close()); // told, but not saved as closed
    ASSERT_EQ(states(), "1042 closing");
    repairStore();
    for (const auto& step : allSteps()) {
        expectRefusal("cheque 1042 is being closed: close it again", step);
    }
    expectRefusal("cheque 1042 is being closed: close it again", [this] { (void)till().cancel(); });
    EXPECT_EQ(states(), "1042 closing");
}

TEST_F(Refusal, NoneOnAChequeWhoseClosingCouldNotBegin)
{
    openSaleWithCard();
    till().payCash({});
    failStoreAfter(0);
    EXPECT_ANY_THROW((void)till().close());
    repairStore();
    EXPECT_EQ(states(), "1042 open");
    scan(u"3"_s, 10.0); // the customer has thought of something else
    EXPECT_EQ(money(), "179.80 450.00 10.00 | discount 0.00, points 0.00, due 10.00");
    till().payCash({});
    EXPECT_TRUE(till().close());
}

TEST_F(Refusal, NoneOnAChequeWhoseCancellingCouldNotBegin)
{
    openSaleWithCard();
    failStoreAfter(0);
    EXPECT_ANY_THROW((void)till().cancel());
    repairStore();
    scan(u"3"_s, 10.0);
    till().payCash({});
    EXPECT_TRUE(till().close());
    EXPECT_EQ(states(), "1042 closed");
}

TEST_F(Refusal, StepsOnAChequeThatIsBeingCancelled)
{
    openSaleWithCard();
    failStoreAfter(1);
    EXPECT_ANY_THROW((void)till().cancel());
    ASSERT_EQ(states(), "1042 cancelling");
    repairStore();
    for (const auto& step : allSteps()) {
        expectRefusal("cheque 1042 is being cancelled: cancel it again", step);
    }
    expectRefusal("cheque 1042 is being cancelled: cancel it again", [this] { (void)till().close(); });
    EXPECT_EQ(states(), "1042 cancelling");
}

TEST(DeskError, IsAValueWithItsSentence)
{
    const till::DeskError error(u"Нет чека"_s);
    till::DeskError other(u"x"_s);
    other = error;
    EXPECT_EQ(other.text().toStdString(), "Нет чека");
    EXPECT_STREQ(till::DeskError(other).what(), "Нет чека");
}
