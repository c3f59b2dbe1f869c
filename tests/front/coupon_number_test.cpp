#include "tests/front/kept_state.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

// Which coupons are this system's, told by the number alone.

namespace {

struct Rule {
    const char* name;
    QString mask;
    QString prefix;
    QString number;
    bool matches;

    friend std::ostream& operator<<(std::ostream& stream, const Rule& rule)
    {
        return stream << "mask '" << rule.mask.toStdString() << "', prefix '" << rule.prefix.toStdString()
                      << "', number '" << rule.number.toStdString() << '\'';
    }
};

class CouponRule : public testing::TestWithParam<Rule> { };

} // namespace

// The rule stands for one kind while the other kind has neither mask nor prefix, and so matches nothing.

TEST_P(CouponRule, HoldsForCouponsOfTheCheque)
{
    TillAtWork till(TillAtWork::saleWithCard(),
                    { { u"Vantiro:checkCouponMask"_s, GetParam().mask },
                      { u"Vantiro:checkCouponPrefix"_s, GetParam().prefix },
                      { u"Vantiro:positionCouponPrefix"_s, QString() } });
    static_cast<void>(till.log());

    EXPECT_EQ(till.plugin.isCheckCouponNumber(GetParam().number), GetParam().matches);
    EXPECT_FALSE(till.plugin.isPositionCouponNumber(GetParam().number));
    EXPECT_EQ(till.log(), "");
}

TEST_P(CouponRule, HoldsForCouponsOfAPosition)
{
    TillAtWork till(TillAtWork::saleWithCard(),
                    { { u"Vantiro:positionCouponMask"_s, GetParam().mask },
                      { u"Vantiro:positionCouponPrefix"_s, GetParam().prefix },
                      { u"Vantiro:checkCouponPrefix"_s, QString() } });
    static_cast<void>(till.log());

    EXPECT_EQ(till.plugin.isPositionCouponNumber(GetParam().number), GetParam().matches);
    EXPECT_FALSE(till.plugin.isCheckCouponNumber(GetParam().number));
    EXPECT_EQ(till.log(), "");
}

INSTANTIATE_TEST_SUITE_P(
    CouponNumber, CouponRule,
    testing::Values(Rule { "NumberBehindThePrefixMatches", u""_s, u"V-"_s, u"V-10"_s, true },
                    Rule { "PrefixAloneMatches", u""_s, u"V-"_s, u"V-"_s, true },
                    Rule { "PrefixInsideTheNumberDoesNotMatch", u""_s, u"V-"_s, u"10V-"_s, false },
                    Rule { "NumberShorterThanThePrefixDoesNotMatch", u""_s, u"V-"_s, u"V"_s, false },
                    Rule { "PrefixInAnotherCaseDoesNotMatch", u""_s, u"V-"_s, u"v-10"_s, false },
                    Rule { "CyrillicPrefixInAnotherCaseDoesNotMatch", u""_s, u"КУПОН"_s, u"купон10"_s, false },
                    Rule { "PrefixIsNoPattern", u""_s, u".*"_s, u"V-10"_s, false },
                    Rule { "NeitherMaskNorPrefixMatchesNothing", u""_s, u""_s, u"V-10"_s, false },
                    Rule { "NeitherMaskNorPrefixDoesNotMatchTheEmptyNumber", u""_s, u""_s, u""_s, false },
                    Rule { "EmptyNumberDoesNotMatchAPrefix", u""_s, u"V-"_s, u""_s, false },
                    Rule { "WholeNumberMatchesTheMask", u"12.*"_s, u""_s, u"12345"_s, true },
                    Rule { "CharacterBeforeTheMaskDoesNotMatch", u"12.*"_s, u""_s, u"x12345"_s, false },
                    Rule { "CharacterBehindTheMaskDoesNotMatch", u"12[0-9]"_s, u""_s, u"1234"_s, false },
                    Rule { "MaskInAnotherCaseDoesNotMatch", u"abc"_s, u""_s, u"ABC"_s, false },
                    Rule { "MaskIsNoWildcardPattern", u"12*"_s, u""_s, u"12345"_s, false },
                    Rule { "StarOfTheMaskRepeatsTheCharacterBefore", u"12*"_s, u""_s, u"1222"_s, true },
                    Rule { "MaskWithAlternativesMatchesEither", u"(a|bc)[0-9]{2}"_s, u""_s, u"bc07"_s, true },
                    Rule { "MaskOfAnythingMatchesTheEmptyNumber", u".*"_s, u""_s, u""_s, true },
                    Rule { "MaskOutranksThePrefixThatWouldMatch", u"12.*"_s, u"V-"_s, u"V-10"_s, false },
                    Rule { "MaskOutranksThePrefixThatWouldNotMatch", u"12.*"_s, u"V-"_s, u"12345"_s, true },
                    Rule { "RefusedMaskMatchesNothing", u"12("_s, u""_s, u"12("_s, false },
                    Rule { "RefusedMaskDoesNotFallBackToThePrefix", u"12("_s, u"V-"_s, u"V-10"_s, false },
                    Rule { "RefusedMaskDoesNotMatchTheEmptyNumber", u"["_s, u"V-"_s, u""_s, false }),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CouponNumber, DefaultPrefixIsLeftAsideOnceAMaskIsSet)
{
    const TillAtWork till(TillAtWork::saleWithCard(), { { u"Vantiro:checkCouponMask"_s, u"[0-9]+"_s } });

    EXPECT_FALSE(till.plugin.isCheckCouponNumber(u"vantiro10"_s));
    EXPECT_TRUE(till.plugin.isPositionCouponNumber(u"vantiro10"_s)) << "the other kind keeps its default";
}

TEST(CouponNumber, MayBeOfBothKinds)
{
    const TillAtWork till(
        TillAtWork::saleWithCard(),
        { { u"Vantiro:checkCouponMask"_s, u".*7"_s }, { u"Vantiro:positionCouponMask"_s, u"1.*"_s } });

    EXPECT_TRUE(till.plugin.isCheckCouponNumber(u"17"_s));
    EXPECT_TRUE(till.plugin.isPositionCouponNumber(u"17"_s));
    EXPECT_FALSE(till.plugin.isCheckCouponNumber(u"18"_s));
    EXPECT_FALSE(till.plugin.isPositionCouponNumber(u"27"_s));
}

TEST(CouponNumber, RulesAreThoseOfTheStartUntilARestart)
{
    TillAtWork till(TillAtWork::saleWithCard(), couponsApart());
    till.config.set(u"Vantiro:checkCouponPrefix"_s, u"new-"_s);
    till.config.set(u"Vantiro:positionCouponMask"_s, u"new.*"_s);

    EXPECT_FALSE(till.plugin.isCheckCouponNumber(u"new-1"_s));
    EXPECT_FALSE(till.plugin.isPositionCouponNumber(u"new-1"_s));
    EXPECT_TRUE(till.plugin.isCheckCouponNumber(u"cheque-1"_s));
    EXPECT_TRUE(till.plugin.isPositionCouponNumber(u"item-1"_s));
}

TEST(CouponType, ThreeAloneBelongsToTheSystem)
{
    const TillAtWork till;
    for (int type = -1; type <= 255; ++type) {
        EXPECT_EQ(till.plugin.couponBelongsToSystem(static_cast<ECoupon::Type>(type)), type == 3) << type;
    }
}
