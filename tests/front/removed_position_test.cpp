#include "tests/front/kept_state.h"
#include "tests/front/passed_on.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

// A position that leaves the cheque takes its coupons with it.

namespace {

constexpr int positionRemoved = 21;

[[nodiscard]] DocumentBuilder saleOfThreePositions()
{
    return TillAtWork::saleWithCard().line(Goods(2, u"1043"_s, 50.0)).line(Goods(3, u"1044"_s, 20.0));
}

[[nodiscard]] Event removalOf(const QSharedPointer<GoodsItem>& position)
{
    return Event(static_cast<EActivityListener::Event>(positionRemoved))
        .addArgument(u"position"_s, QVariant::fromValue(position));
}

[[nodiscard]] Event removalOf(const QSharedPointer<GoodsItem>& position,
                              const QSharedPointer<AbstractDocument>& document)
{
    return removalOf(position).addArgument(u"document"_s, QVariant::fromValue(document));
}

/// Takes the position off the cheque, and tells of it as the till does.
void remove(TillAtWork& till, int position)
{
    const QSharedPointer<GoodsItem> line = till.contents().remove(position);
    ASSERT_TRUE(line);
    till.tell(removalOf(line, till.document()));
}

/// The host's handling of coupons, done by the action.
class CouponsBy : public CouponLogic {
public:
    explicit CouponsBy(std::function<void(const QString& number)> actionOnDeletion)
        : former(std::exchange(MockFactory<CouponLogic>::mocked, this))
        , onDeletion(std::move(actionOnDeletion))
    {
    }

    ~CouponsBy() override
    {
        MockFactory<CouponLogic>::mocked = former;
    }

    void deleteCoupon(const control::Action& action) override
    {
        onDeletion(action.value(u"couponNumber"_s, QVariant()).toString());
    }

private:
    CouponLogic* former;
    std::function<void(const QString&)> onDeletion;
};

} // namespace

TEST(RemovedPosition, TakesItsCouponsOffInTheOrderOfEntry)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, { u"cheque-1"_s },
                { { 1, { u"item-1"_s } }, { 2, { u"item-3"_s, u"item-2"_s, u"item-3"_s } }, { 3, { u"item-2"_s } } });

    remove(till, 2);

    EXPECT_EQ(till.told(), "coupon off item-3\ncoupon off item-2\ncoupon off item-3\nsave");
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1; 1: item-1; 3: item-2");
    EXPECT_EQ(couponsStored(till), "cheque: cheque-1; 1: item-1; 3: item-2");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(RemovedPosition, WithoutCouponsChangesNothingAndIsNotSaved)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, { u"cheque-1"_s }, { { 1, { u"item-1"_s } } });

    remove(till, 2);

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1; 1: item-1");
}

TEST(RemovedPosition, WithoutCouponsDoesNotReadTheDocument)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 1, { u"item-1"_s } } });

    till.plugin.handleEvent(removalOf(till.contents().remove(2))); // no document comes with it

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), "1: item-1");
}

TEST(RemovedPosition, LastOneLeavesTheCouponsToTheHostAndIsStillForgottenAndSaved)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    giveCoupons(till, { u"cheque-1"_s }, { { 1, { u"item-1"_s, u"item-2"_s } } });

    remove(till, 1);

    EXPECT_EQ(till.told(), "save");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1");
    EXPECT_EQ(couponsStored(till), "cheque: cheque-1");
}

TEST(RemovedPosition, NullOneIsIgnored)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 0, { u"item-0"_s } }, { 1, { u"item-1"_s } } });

    till.tell(removalOf(nullptr, till.document()));

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), "0: item-0; 1: item-1");
}

TEST(RemovedPosition, AbsentOneIsIgnored)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 0, { u"item-0"_s } }, { 1, { u"item-1"_s } } });

    till.tell(TillAtWork::event(positionRemoved, till.document()));

    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), "0: item-0; 1: item-1");
}

TEST(RemovedPosition, CouponsAreThoseOfItsNumberWhateverTheGoods)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 1, { u"item-1"_s } }, { 2, { u"item-2"_s } } });
    const auto elsewhere = DocumentBuilder().line(Goods(2, u"1042"_s, 89.90)).build();

    till.tell(removalOf(elsewhere->liveLines().constFirst(), till.document()));

    EXPECT_EQ(till.told(), "coupon off item-2\nsave");
    EXPECT_EQ(couponsInMemory(till.plugin), "1: item-1");
}

TEST(RemovedPosition, StateIsStoredWithTheEventsDocument)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 1, { u"item-1"_s } }, { 2, { u"item-2"_s } } });
    const QSharedPointer<AbstractDocument> other = saleOfThreePositions().identity(u"2"_s).build();

    till.tell(removalOf(till.contents().remove(2), other));

    EXPECT_EQ(till.told(), "coupon off item-2\nsave");
    EXPECT_EQ(couponsStored(till), "1: item-1; 2: item-2") << "the open document is another one";
    EXPECT_EQ(other->getValue(u"Vantiro"_s, u"positionCoupons"_s, QVariant()).toMap().keys().join(u' ').toStdString(),
              "1");
}

TEST(RemovedPosition, LinesAreCountedOnTheEventsDocument)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 2, { u"item-2"_s } } });

    till.tell(removalOf(till.contents().remove(2), DocumentBuilder().identity(u"2"_s).build()));

    EXPECT_EQ(till.told(), "save");
    EXPECT_EQ(couponsInMemory(till.plugin), "");
}

TEST(RemovedPosition, EventRepeatedFindsNothingMore)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 2, { u"item-2"_s } } });
    const QSharedPointer<GoodsItem> line = till.contents().remove(2);
    till.tell(removalOf(line, till.document()));
    static_cast<void>(till.told());

    till.tell(removalOf(line, till.document()));

    EXPECT_EQ(till.told(), "");
}

// A host may carry each deletion out as an action, which the plug-in is asked about like any other: it then edits the
// very list that is being walked.
TEST(RemovedPosition, HostThatAsksBackForEachCouponGetsThemAllOff)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    for (const QString& number : { u"item-1"_s, u"item-2"_s, u"item-1"_s, u"item-3"_s }) {
        addWell(till, number); // on position 3
    }
    till.contents().selectPosition(1);
    addWell(till, u"item-4"_s);
    const CouponsBy host([&till](const QString& number) { EXPECT_TRUE(till.deleteCoupon(number)); });

    remove(till, 3);

    EXPECT_EQ(till.told(),
              "save\nhost deletes item-1\n"
              "save\nhost deletes item-2\n"
              "save\nhost deletes item-1\n"
              "save\nhost deletes item-3\n"
              "save");
    EXPECT_EQ(couponsInMemory(till.plugin), "1: item-4");
    EXPECT_EQ(couponsStored(till), "1: item-4");
    EXPECT_EQ(till.contents().coupons.size(), 1);
}

TEST(RemovedPosition, FailureToTakeACouponOffPassesOnWithAllOfThemKept)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 2, { u"item-1"_s, u"item-2"_s, u"item-3"_s } } });
    QStringList asked;
    const CouponsBy host([&asked](const QString& number) {
        asked.append(number);
        if (number == u"item-2") {
            throw BasicException(tr::Tr(u"купон занят"_s));
        }
    });

    EXPECT_EQ(passedOn([&till] { remove(till, 2); }), "купон занят");

    EXPECT_EQ(asked.join(u' ').toStdString(), "item-1 item-2");
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), "2: item-1 item-2 item-3");
}

TEST(RemovedPosition, FailedSavePassesOnWithTheCouponsForgotten)
{
    TillAtWork till(saleOfThreePositions(), couponsApart());
    giveCoupons(till, {}, { { 1, { u"item-1"_s } }, { 2, { u"item-2"_s } } });
    till.failSaves(u"диск полон"_s);

    EXPECT_EQ(passedOn([&till] { remove(till, 2); }), "диск полон");

    EXPECT_EQ(till.told(), "coupon off item-2");
    EXPECT_EQ(couponsInMemory(till.plugin), "1: item-1");
}
