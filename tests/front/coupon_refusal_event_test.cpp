#include "tests/front/heard_events.h"
#include "tests/front/kept_state.h"
#include "tests/front/passed_on.h"
#include "till/desk/open_document.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

// The event of a refused coupon in full, and what refuses a coupon without being one of its failures.

namespace {

[[nodiscard]] DocumentBuilder emptySale()
{
    return DocumentBuilder().card(u"9000000001"_s);
}

[[nodiscard]] control::Action entryOf(const QString& number)
{
    return control::Action().appendArgument(number, u"couponNumber"_s);
}

/// The refusal of the coupon "cheque-1" for this reason.
[[nodiscard]] Event refusalFor(const tr::Tr& reason)
{
    return Event(static_cast<EActivityListener::Event>(127))
        .addArgument(u"text"_s, reason)
        .addArgument(u"couponNumber"_s, u"cheque-1"_s)
        .addArgument(u"forCustomer"_s, true);
}

} // namespace

TEST(CouponRefusalEvent, HasThreeArguments)
{
    const TillAtWork till;
    const HeardEvents events;
    const tr::Tr reason(u"key"_s, u"причина"_s);

    till.plugin.dispatchCouponAddError(u"cheque-1"_s, reason);

    ASSERT_EQ(events.events.size(), 1);
    EXPECT_TRUE(events.events.constFirst() == refusalFor(reason));
}

TEST(CouponRefusalEvent, IsNotLogged)
{
    TillAtWork till;
    static_cast<void>(till.log());
    till.plugin.dispatchCouponAddError(u"cheque-1"_s, tr::Tr(u"key"_s, u"причина"_s));
    EXPECT_EQ(till.log(), "");
    EXPECT_EQ(till.told(), "event 127 text=причина couponNumber=cheque-1 forCustomer=true");
}

TEST(CouponRefusalEvent, MakesTheNotifierOfATillThatHasNoneYet)
{
    const TillAtWork till;
    ActivityNotifier* const former = std::exchange(Singleton<ActivityNotifier>::instance, nullptr);

    till.plugin.dispatchCouponAddError(u"cheque-1"_s, tr::Tr(u"причина"_s));

    const std::unique_ptr<ActivityNotifier> made(std::exchange(Singleton<ActivityNotifier>::instance, former));
    EXPECT_TRUE(made);
}

// The key of the text is what a host looks its translation up by.

TEST(CouponRefusalEvent, OfALostConnectionHasACompoundText)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.goOffline();
    const HeardEvents events;

    EXPECT_EQ(till.plugin.addCoupon(entryOf(u"cheque-1"_s)), 0);

    ASSERT_EQ(events.events.size(), 1);
    EXPECT_TRUE(events.events.constFirst()
                == refusalFor(tr::Tr(u"undefined"_s, u"Нет связи с сервером. Доступно только начисление баллов"_s)));
}

TEST(CouponRefusalEvent, OfAFaultHasATextWithoutAKey)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.fault("Купон погашен");
    const HeardEvents events;

    EXPECT_EQ(till.plugin.addCoupon(entryOf(u"cheque-1"_s)), 0);

    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
    ASSERT_EQ(events.of(127).size(), 1);
    EXPECT_TRUE(events.of(127).constFirst() == refusalFor(tr::Tr(u"Купон погашен"_s)));
}

TEST(CouponRefusalEvent, OfAUselessReplyHasTheKeyOfItsText)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.answer("<IsCouponValidResponse/>");
    const HeardEvents events;

    EXPECT_EQ(till.plugin.addCoupon(entryOf(u"cheque-1"_s)), 0);

    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
    ASSERT_EQ(events.of(127).size(), 1);
    EXPECT_TRUE(events.of(127).constFirst()
                == refusalFor(tr::Tr(u"requestIncorrectAnswer"_s, u"Некорректный ответ от сервера"_s)));
}

TEST(CouponRefusalEvent, OfAMissingPositionHasTheKeyOfItsText)
{
    TillAtWork till(emptySale(), { { u"Vantiro:positionCouponPrefix"_s, u"cheque-"_s } });
    const HeardEvents events;

    EXPECT_EQ(till.plugin.addCoupon(entryOf(u"cheque-1"_s)), 0);

    ASSERT_EQ(events.events.size(), 1);
    EXPECT_TRUE(
        events.events.constFirst()
        == refusalFor(tr::Tr(u"vantiroNoPositionsForCoupon"_s, u"Нет позиций для добавления купона на позицию"_s)));
}

TEST(CouponRefusalEvent, RefusedActionIsLeftUnmarked)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.goOffline();
    const control::Action action = entryOf(u"cheque-1"_s);

    EXPECT_EQ(till.plugin.addCoupon(action), 0);

    EXPECT_FALSE(action.value(u"couponType"_s, QVariant()).isValid());
    EXPECT_FALSE(action.value(u"allowSameCouponNumber"_s, QVariant()).isValid());
}

// Modifiers go before any test can refuse the coupon.

TEST(RefusedCoupon, OfNoPositionDropsPendingModifiers)
{
    TillAtWork till(emptySale(), couponsApart());
    till::pendingModifiers() = { u"x3"_s };
    EXPECT_FALSE(till.addCoupon(u"item-1"_s));
    EXPECT_EQ(till::pendingModifiers().join(u' ').toStdString(), "");
}

TEST(RefusedCoupon, OfAnOfflineDocumentDropsPendingModifiers)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.goOffline();
    till::pendingModifiers() = { u"x3"_s };
    EXPECT_FALSE(till.addCoupon(u"cheque-1"_s));
    EXPECT_EQ(till::pendingModifiers().join(u' ').toStdString(), "");
}

// Exceptions that the guarded stretch meets from elsewhere.

TEST(RefusedCoupon, RefusalByAnotherListenerIsToldAsItsOwn)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    const HeardEvents events([](const Event& event) {
        if (event.getCode() == 72) {
            throw CouponAddException(tr::Tr(u"closedDrawer"_s, u"Ящик открыт"_s), false);
        }
    });

    EXPECT_FALSE(till.addCoupon(u"cheque-1"_s));

    EXPECT_EQ(till.told(),
              "event 72 message=Обращение к системе лояльности\n"
              "event 127 text=Ящик открыт couponNumber=cheque-1 forCustomer=true")
        << "the call has not begun, so no end of it is told";
    EXPECT_EQ(couponsInMemory(till.plugin), "");
}

TEST(RefusedCoupon, BaseOfTheRefusalPassesOn)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    const HeardEvents events([](const Event& event) {
        if (event.getCode() == 72) {
            throw CouponException(tr::Tr(u"closedDrawer"_s, u"Ящик открыт"_s), false);
        }
    });

    EXPECT_THROW(till.addCoupon(u"cheque-1"_s), CouponException);

    EXPECT_EQ(till.told(), "event 72 message=Обращение к системе лояльности");
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_EQ(couponsStored(till), "none stored");
}

TEST(RefusedCoupon, OtherExceptionOfTheCallPassesOnBehindItsEnd)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.answerText("IsCouponValid", u"true"_s);
    const control::Action action = entryOf(u"cheque-1"_s);
    till.server.whilePosting([&till] {
        till.server.whilePosting({});
        throw BasicException(tr::Tr(u"память исчерпана"_s));
    });

    EXPECT_EQ(passedOn([&] { return till.plugin.addCoupon(action); }), "память исчерпана");

    EXPECT_EQ(till.told(), "event 72 message=Обращение к системе лояльности\nevent 73");
    EXPECT_FALSE(action.value(u"couponType"_s, QVariant()).isValid());
    EXPECT_EQ(couponsInMemory(till.plugin), "");
    EXPECT_FALSE(till.stored(u"offlineMode"_s).isValid());
    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());

    EXPECT_TRUE(till.addCoupon(u"cheque-2"_s)); // takes the answer that was left
    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
    EXPECT_EQ(couponsInMemory(till.plugin), "cheque: cheque-2");
}

TEST(RefusedCoupon, FailedSaveOfTheOfflineFlagPassesOnUntold)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.server.refuse();
    till.failSaves(u"диск полон"_s);

    EXPECT_EQ(passedOn([&till] { return till.addCoupon(u"cheque-1"_s); }), "диск полон");

    EXPECT_FALSE(till.server.take("IsCouponValid").isEmpty());
    EXPECT_EQ(till.told(), "event 72 message=Обращение к системе лояльности\npost IsCouponValid\nevent 73");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true)) << "in the document, though not on disk";
    EXPECT_EQ(couponsInMemory(till.plugin), "");
}

// A subclass takes part in the decision: the operations are reached through the virtual table.
TEST(RefusedCoupon, OverriddenOperationsAreTheOnesAsked)
{
    class Overriding : public Vantiro {
    public:
        bool isCheckCouponNumber(const QString& number) const override
        {
            return number == u"anything";
        }

        bool isOfflineMode(const QSharedPointer<AbstractDocument>&) const override
        {
            return true;
        }

        void dispatchCouponAddError(const QString& number, const tr::Tr& text) const override
        {
            refusals.append(number + u": "_s + text.ru());
        }

        mutable QStringList refusals;
    };
    Overriding plugin; // not initialized: no rule of its own matches
    const QSharedPointer<AbstractDocument> document = TillAtWork::saleWithCard().build();
    plugin.setDocument(document);
    till::setOpenDocument(document);

    EXPECT_EQ(plugin.addCoupon(entryOf(u"anything"_s)), 0);
    till::setOpenDocument(nullptr);

    EXPECT_EQ(plugin.refusals.join(u' ').toStdString(),
              "anything: Нет связи с сервером. Доступно только начисление баллов");
}
