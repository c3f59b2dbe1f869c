#include "tests/front/restarted_till.h"
#include "till/document/cheque_contents.h"

using namespace Qt::StringLiterals;

// The coupons of a cheque, and the identity of one that was set aside, after a stop of the till.

namespace {

class RestoredCoupons : public RestartedTill { };
class RestoredIdentity : public RestartedTill { };

} // namespace

TEST_P(RestoredCoupons, ComeBackInOrderOfEntry)
{
    add(u"vantiro-c2"_s);
    add(u"vantiro-2"_s);
    add(u"vantiro-c1"_s);
    add(u"vantiro-1"_s);

    restart();
    restore();

    EXPECT_EQ(couponsInMemory(), "vantiro-c2 vantiro-c1 | 1: vantiro-2 vantiro-1");
}

TEST_P(RestoredCoupons, PositionKeyThatIsNoNumberIsPosition0)
{
    till->store(u"positionCoupons"_s, QVariantMap { { u"third"_s, QStringList { u"vantiro-1"_s } } });

    restart();
    restore();

    EXPECT_EQ(couponsInMemory(), " | 0: vantiro-1");
}

TEST_P(RestoredCoupons, TextKeyBecomesItsNumberWithAllCouponsInOrder)
{
    till->store(u"positionCoupons"_s, QVariantMap { { u"3"_s, QStringList { u"vantiro-2"_s, u"vantiro-1"_s } } });

    restart();
    restore();

    EXPECT_EQ(couponsInMemory(), " | 3: vantiro-2 vantiro-1");
}

TEST_P(RestoredCoupons, PositionKeyIsReadInBase10)
{
    till->store(
        u"positionCoupons"_s,
        QVariantMap { { u"010"_s, QStringList { u"vantiro-1"_s } }, { u"0x3"_s, QStringList { u"vantiro-2"_s } } });

    restart();
    restore();

    EXPECT_EQ(couponsInMemory(), " | 0: vantiro-2; 10: vantiro-1");
}

TEST_P(RestoredCoupons, LaterKeyOfTheSameNumberReplacesTheEarlierOne)
{
    till->store(
        u"positionCoupons"_s,
        QVariantMap { { u"03"_s, QStringList { u"vantiro-1"_s } }, { u"3"_s, QStringList { u"vantiro-2"_s } } });

    restart();
    restore();

    EXPECT_EQ(couponsInMemory(), " | 3: vantiro-2");
}

TEST_P(RestoredCoupons, ClearedWithoutASaveComeBack)
{
    add(u"vantiro-c1"_s);
    add(u"vantiro-1"_s);
    till->plugin.clearCoupons();

    restart();
    restore();

    EXPECT_EQ(couponsInMemory(), "vantiro-c1 | 1: vantiro-1");
}

TEST_P(RestoredIdentity, OfAChequeSetAsideIsItsFirstNumberIdentityAndShift)
{
    till->plugin.beforePutoutCheck();
    till->contents().head.number = 2000;
    till->contents().head.shift = 18;

    restart();
    restore();

    const QString cheque = nextCheque();
    EXPECT_TRUE(cheque.contains(u"ChequeNo=\"1042\""_s));
    EXPECT_TRUE(cheque.contains(u"ShiftNo=\"17\""_s));
    EXPECT_TRUE(cheque.contains(u"ChequeUID=\"11116E73-1C03-5DE6-9130-5F9925AE8AB4\""_s));
}

TEST_P(RestoredIdentity, OfAnotherChequeIsDroppedByOneNeverSetAside)
{
    till->plugin.beforePutoutCheck();
    restart();
    restore();
    till->open(TillAtWork::saleWithCard().identity(u"2"_s).number(2001).shift(18).build());

    restore();

    const QString cheque = nextCheque();
    EXPECT_TRUE(cheque.contains(u"ChequeNo=\"2001\""_s));
    EXPECT_TRUE(cheque.contains(u"ShiftNo=\"18\""_s));
    EXPECT_FALSE(cheque.contains(u"ChequeUID=\"11116E73-1C03-5DE6-9130-5F9925AE8AB4\""_s));
}

INSTANTIATE_TEST_SUITE_P(Roads, RestoredCoupons, testing::Values(Road::memory, Road::store), roadName);
INSTANTIATE_TEST_SUITE_P(Roads, RestoredIdentity, testing::Values(Road::memory, Road::store), roadName);
