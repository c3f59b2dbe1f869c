#include "tests/front/heard_events.h"
#include "tests/front/kept_state.h"
#include "tests/front/passed_on.h"
#include "till/desk/open_document.h"
#include "till/framework/action_dispatcher.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// A coupon from the cashier's entry to the stores of the plug-in.

namespace {

[[nodiscard]] control::Action entryOf(const QString& number)
{
    return control::Action().appendArgument(number, u"couponNumber"_s);
}

/// What the host hands to the plug-in once it has taken the coupon.
[[nodiscard]] control::Action taken(const QString& number, const QVariant& type)
{
    return entryOf(number).appendArgument(type, u"couponType"_s);
}

[[nodiscard]] DocumentBuilder saleOfTwoPositions()
{
    return TillAtWork::saleWithCard().line(Goods(2, u"1043"_s, 50.0));
}

[[nodiscard]] DocumentBuilder emptySale()
{
    return DocumentBuilder().card(u"9000000001"_s);
}

} // namespace

TEST(CouponAdding, ValidCouponOfTheChequeIsKeptAndSavedAtOnce)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.answerText("IsCouponValid", u"true"_s);

    EXPECT_TRUE(till.addCoupon(u"cheque-1"_s));

    till.server.expect("IsCouponValid", "   <tem:couponNumber>cheque-1</tem:couponNumber>\n");
    EXPECT_EQ(till.told(),
              "event 72 message=Обращение к системе лояльности\n"
              "post IsCouponValid\n"
              "event 73\n"
              "host adds cheque-1 type=3 same=true\n"
              "save");
    EXPECT_EQ(till.log(),
              "info: Добавление купона Vantiro\n"
              "info: Валидация купона на сервере\n"
              "info: Купон Vantiro cheque-1 добавлен");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1");
    EXPECT_EQ(couponsStored(till), "cheque: cheque-1");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(CouponAdding, CouponOfAPositionIsKeptUnderTheCurrentOne)
{
    TillAtWork till(saleOfTwoPositions(), couponsApart());
    addWell(till, u"item-1"_s);
    till.contents().selectPosition(1);
    till.server.answerText("IsCouponValid", u"true"_s);

    EXPECT_TRUE(till.addCoupon(u"item-2"_s));

    till.server.expect("IsCouponValid", "   <tem:couponNumber>item-2</tem:couponNumber>\n");
    EXPECT_EQ(till.told(),
              "event 72 message=Обращение к системе лояльности\n"
              "post IsCouponValid\n"
              "event 73\n"
              "host adds item-2 type=3 same=true\n"
              "save");
    EXPECT_EQ(couponsInMemory(till.plugin), "1: item-2; 2: item-1");
    EXPECT_EQ(couponsStored(till), "1: item-2; 2: item-1");
}

TEST(CouponAdding, NumbersStandInTheOrderOfEntry)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    for (const QString& number : { u"item-2"_s, u"cheque-3"_s, u"item-1"_s, u"cheque-1"_s, u"cheque-2"_s }) {
        addWell(till, number);
    }
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-3 cheque-1 cheque-2; 1: item-2 item-1");
    EXPECT_EQ(couponsStored(till), "cheque: cheque-3 cheque-1 cheque-2; 1: item-2 item-1");
}

TEST(CouponAdding, SameNumberTwiceStandsTwice)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    for (const QString& number : { u"cheque-1"_s, u"cheque-1"_s, u"item-1"_s, u"item-1"_s }) {
        addWell(till, number);
    }
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1 cheque-1; 1: item-1 item-1");
}

TEST(CouponAdding, CouponOfAnotherSystemIsLeftToTheHost)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());

    EXPECT_TRUE(till.addCoupon(u"other-1"_s));

    EXPECT_EQ(till.told(), "host adds other-1 type= same=");
    EXPECT_EQ(till.log(),
              "info: Добавление купона Vantiro\n"
              "info: Купон other-1 не является купоном Vantiro");
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(couponsStored(till), "none stored");
}

TEST(CouponAdding, AbsentNumberIsNoneOfThisSystems)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    EXPECT_EQ(till.plugin.addCoupon(control::Action()), 2);
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(),
              "info: Добавление купона Vantiro\n"
              "info: Купон  не является купоном Vantiro");
}

TEST(CouponAdding, PlaceMarkerInANumberIsLoggedAsItStands)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    EXPECT_TRUE(till.addCoupon(u"other-%1"_s));
    EXPECT_EQ(till.log(),
              "info: Добавление купона Vantiro\n"
              "info: Купон other-%1 не является купоном Vantiro");
    EXPECT_EQ(till.told(), "host adds other-%1 type= same=");
}

TEST(CouponAdding, CouponThatTheServerDoesNotKnowPassesUnmarked)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.answerText("IsCouponValid", u"false"_s);

    EXPECT_TRUE(till.addCoupon(u"cheque-1"_s));

    till.server.expect("IsCouponValid", "   <tem:couponNumber>cheque-1</tem:couponNumber>\n");
    EXPECT_EQ(till.told(),
              "event 72 message=Обращение к системе лояльности\n"
              "post IsCouponValid\n"
              "event 73\n"
              "host adds cheque-1 type= same=");
    EXPECT_EQ(till.log(),
              "info: Добавление купона Vantiro\n"
              "info: Валидация купона на сервере");
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(couponsStored(till), "none stored");
    EXPECT_EQ(till.lastError(), ": ");
}

TEST(CouponAdding, MarksAreAnIntegerAndAFlag)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.answerText("IsCouponValid", u"true"_s);
    const control::Action action = entryOf(u"cheque-1"_s);

    EXPECT_EQ(till.plugin.addCoupon(action), 2);

    EXPECT_EQ(action.value(u"couponType"_s, QVariant()), QVariant(3));
    EXPECT_EQ(action.value(u"couponType"_s, QVariant()).typeId(), QMetaType::Int);
    EXPECT_EQ(action.value(u"allowSameCouponNumber"_s, QVariant()), QVariant(true));
    EXPECT_EQ(couponsInMemory(till.plugin), "") << "kept only when the host has taken it";
    EXPECT_EQ(till.server.take("IsCouponValid").count(u"cheque-1"_s), 1);
}

TEST(CouponAdding, CallIsBracketedByItsTwoEvents)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    const HeardEvents listener;
    till.server.answerText("IsCouponValid", u"true"_s);

    EXPECT_EQ(till.plugin.addCoupon(entryOf(u"cheque-1"_s)), 2);

    ASSERT_EQ(listener.events.size(), 2);
    EXPECT_TRUE(
        listener.events.at(0)
        == Event(static_cast<EActivityListener::Event>(72))
               .addArgument(u"message"_s, tr::Tr(u"processLoyaltyMessage"_s, u"Обращение к системе лояльности"_s)));
    EXPECT_TRUE(listener.events.at(1) == Event(static_cast<EActivityListener::Event>(73)));
    EXPECT_TRUE(till.server.take("IsCouponValid").contains(u"cheque-1"_s));
}

TEST(CouponAdding, PendingModifiersAreDroppedForOwnCoupons)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till::pendingModifiers() = { u"x3"_s };
    addWell(till, u"cheque-1"_s);
    EXPECT_EQ(till::pendingModifiers().join(u' ').toStdString(), "");
}

TEST(CouponAdding, PendingModifiersStayForOthersCoupons)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till::pendingModifiers() = { u"x3"_s };
    EXPECT_TRUE(till.addCoupon(u"other-1"_s));
    EXPECT_EQ(till::pendingModifiers().join(u' ').toStdString(), "x3");
    till::pendingModifiers().clear();
}

TEST(CouponAdding, NumberOfBothKindsNeedsAPositionAndLandsOnTheCheque)
{
    TillAtWork till; // both prefixes are "vantiro"
    addWell(till, u"vantiro-10"_s);
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: vantiro-10");
    EXPECT_EQ(couponsStored(till), "cheque: vantiro-10");
}

TEST(CouponAdding, CouponOfTheChequeAloneNeedsNoPosition)
{
    TillAtWork till(emptySale(), couponsApart());
    addWell(till, u"cheque-1"_s);
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1");
}

TEST(CouponAdding, CouponThatTheHostDoesNotTakeIsNotKept)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.answerText("IsCouponValid", u"true"_s);

    EXPECT_FALSE(Singleton<till::ActionDispatcher>::get()->carryOut(EContext::openDocument, control::addCoupon,
                                                                    entryOf(u"cheque-1"_s),
                                                                    [](const control::Action&) { return false; }));

    EXPECT_TRUE(till.server.take("IsCouponValid").contains(u"cheque-1"_s));
    EXPECT_EQ(till.told(), "event 72 message=Обращение к системе лояльности\npost IsCouponValid\nevent 73");
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(couponsStored(till), "none stored");
}

TEST(CouponAdding, DocumentIsThatOfTheSession)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    const QSharedPointer<AbstractDocument> other = DocumentBuilder().identity(u"2"_s).build(); // has no position
    till.plugin.setDocument(other);

    addWell(till, u"item-1"_s);

    EXPECT_EQ(couponsStored(till), "1: item-1");
    EXPECT_FALSE(other->getValue(u"Vantiro"_s, u"positionCoupons"_s, QVariant()).isValid());
}

namespace {

struct ForeignType {
    const char* name;
    QVariant type;

    friend std::ostream& operator<<(std::ostream& stream, const ForeignType& row)
    {
        return stream << row.type.toString().toStdString();
    }
};

class ForeignCoupon : public testing::TestWithParam<ForeignType> { };

} // namespace

TEST_P(ForeignCoupon, IsNotKept)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    EXPECT_EQ(till.plugin.appendCoupon(taken(u"cheque-1"_s, GetParam().type)), 2);
    EXPECT_EQ(till.told(), "");
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(couponsStored(till), "none stored");
}

INSTANTIATE_TEST_SUITE_P(CouponAppending, ForeignCoupon,
                         testing::Values(ForeignType { "Absent", QVariant() }, ForeignType { "Zero", 0 },
                                         ForeignType { "Two", 2 }, ForeignType { "Four", 4 },
                                         ForeignType { "OtherTypeOfTheEnumeration",
                                                       QVariant::fromValue(static_cast<ECoupon::Type>(1)) }),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CouponAppending, TypeMayComeAsTheEnumerationOrAsAnInteger)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    const QVariant types[] = { QVariant::fromValue(static_cast<ECoupon::Type>(3)), QVariant(3), QVariant(3LL) };
    for (const QVariant& type : types) {
        EXPECT_EQ(till.plugin.appendCoupon(taken(u"cheque-1"_s, type)), 2) << type.typeName();
    }
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1 cheque-1 cheque-1");
}

TEST(CouponAppending, TellsAndSavesOncePerCoupon)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    EXPECT_EQ(till.plugin.appendCoupon(taken(u"item-1"_s, 3)), 2);
    EXPECT_EQ(till.told(), "save");
    EXPECT_EQ(till.log(), "info: Купон Vantiro item-1 добавлен");
}

// The number was judged before the host took the coupon; here the type alone speaks for it.
TEST(CouponAppending, NumberOfNeitherKindGoesToThePosition)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    EXPECT_EQ(till.plugin.appendCoupon(taken(u"other-1"_s, 3)), 2);
    EXPECT_EQ(couponsInMemory(till.plugin), "1: other-1");
}

TEST(CouponAppending, NumberOfBothKindsGoesToTheCheque)
{
    TillAtWork till;
    EXPECT_EQ(till.plugin.appendCoupon(taken(u"vantiro-1"_s, 3)), 2);
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: vantiro-1");
}

TEST(CouponAppending, PositionIsTheOneThatIsCurrentThen)
{
    TillAtWork till(saleOfTwoPositions(), couponsApart());
    till.server.answerText("IsCouponValid", u"true"_s);
    const control::Action action = entryOf(u"item-1"_s);
    EXPECT_EQ(till.plugin.addCoupon(action), 2);
    till.contents().selectPosition(1);
    EXPECT_EQ(till.plugin.appendCoupon(action), 2);

    EXPECT_EQ(couponsInMemory(till.plugin), "1: item-1");
    EXPECT_TRUE(till.server.take("IsCouponValid").contains(u"item-1"_s));
}

TEST(CouponAppending, FailedSavePassesOnAndLeavesTheCouponInMemory)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.answerText("IsCouponValid", u"true"_s);
    till.failSaves(u"диск полон"_s);

    EXPECT_EQ(passedOn([&till] { return till.addCoupon(u"cheque-1"_s); }), "диск полон");

    EXPECT_TRUE(till.server.take("IsCouponValid").contains(u"cheque-1"_s));
    EXPECT_EQ(till.log(),
              "info: Добавление купона Vantiro\n"
              "info: Валидация купона на сервере");
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-1");
}
