#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/scripted_config.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

Goods goodsFor(double price, double minPrice, bool spend, bool earn)
{
    Goods goods = Goods(1, u"1001"_s, price).minPrice(minPrice);
    if (!spend) {
        goods.takesNoPoints();
    }
    if (!earn) {
        goods.earnsNothing();
    }
    return goods;
}

/// What the first line forbids.
std::string bonusFlags(const QDomDocument& cheque)
{
    const QDomElement line = lineOf(cheque, 1);
    return "NoPayBonus " + attribute(line, "NoPayBonus") + ", NoAddBonus " + attribute(line, "NoAddBonus");
}

constexpr auto neither = "NoPayBonus false, NoAddBonus false";
constexpr auto noAdd = "NoPayBonus false, NoAddBonus true";
constexpr auto noPay = "NoPayBonus true, NoAddBonus false";
constexpr auto both = "NoPayBonus true, NoAddBonus true";

struct FlagRow {
    int mode; // noBonusForMinprice
    bool spend;
    bool earn;
    const char* flags;
};

class LineAtItsMinimumPrice : public ChequeTest, public testing::WithParamInterface<FlagRow> { };

TEST_P(LineAtItsMinimumPrice, IsFlaggedByTheOptionAlone)
{
    client.noBonusForMinprice = GetParam().mode;
    const Goods goods = goodsFor(50.0, 50.0, GetParam().spend, GetParam().earn);

    EXPECT_EQ(bonusFlags(ordinaryCheque(DocumentBuilder().line(goods).build())), GetParam().flags);
}

INSTANTIATE_TEST_SUITE_P(Modes, LineAtItsMinimumPrice,
                         testing::Values(FlagRow { 0, true, true, neither }, FlagRow { 0, false, false, neither },
                                         FlagRow { 0, true, false, neither }, FlagRow { 0, false, true, neither },
                                         FlagRow { 1, true, true, noAdd }, FlagRow { 1, false, false, noAdd },
                                         FlagRow { 1, true, false, noAdd }, FlagRow { 1, false, true, noAdd },
                                         FlagRow { 2, true, true, noPay }, FlagRow { 2, false, false, noPay },
                                         FlagRow { 2, true, false, noPay }, FlagRow { 2, false, true, noPay },
                                         FlagRow { 3, true, true, both }, FlagRow { 3, false, false, both },
                                         FlagRow { 3, true, false, both }, FlagRow { 3, false, true, both }));

class LineAboveItsMinimumPrice : public ChequeTest, public testing::WithParamInterface<FlagRow> { };

TEST_P(LineAboveItsMinimumPrice, IsFlaggedByItsGoodsAlone)
{
    client.noBonusForMinprice = GetParam().mode;
    const Goods goods = goodsFor(50.0, 40.0, GetParam().spend, GetParam().earn);

    EXPECT_EQ(bonusFlags(ordinaryCheque(DocumentBuilder().line(goods).build())), GetParam().flags);
}

INSTANTIATE_TEST_SUITE_P(Goods, LineAboveItsMinimumPrice,
                         testing::Values(FlagRow { 0, true, true, neither }, FlagRow { 0, false, true, noPay },
                                         FlagRow { 0, true, false, noAdd }, FlagRow { 0, false, false, both },
                                         FlagRow { 1, true, true, neither }, FlagRow { 1, false, true, noPay },
                                         FlagRow { 2, true, true, neither }, FlagRow { 2, true, false, noAdd },
                                         FlagRow { 3, true, true, neither }, FlagRow { 3, false, true, noPay },
                                         FlagRow { 3, true, false, noAdd }, FlagRow { 3, false, false, both }));

struct PriceRow {
    double price;
    double minPrice;
    bool atMinimum;
};

class NearTheMinimumPrice : public ChequeTest, public testing::WithParamInterface<PriceRow> { };

TEST_P(NearTheMinimumPrice, LessThanHalfAKopeckIsNoDifference)
{
    client.noBonusForMinprice = 3;
    const Goods goods = goodsFor(GetParam().price, GetParam().minPrice, true, true);

    EXPECT_EQ(bonusFlags(ordinaryCheque(DocumentBuilder().line(goods).build())), GetParam().atMinimum ? both : neither);
}

INSTANTIATE_TEST_SUITE_P(Prices, NearTheMinimumPrice,
                         testing::Values(PriceRow { 100.0, 100.0, true }, PriceRow { 99.996, 100.0, true },
                                         PriceRow { 100.004, 100.0, true }, PriceRow { 0.0, 0.0, true },
                                         PriceRow { 0.0049, 0.0, true },
                                         // Exactly half a kopeck, on either side.
                                         PriceRow { 0.005, 0.0, false }, PriceRow { 0.0, 0.005, false },
                                         PriceRow { 100.01, 100.0, false }, PriceRow { 99.99, 100.0, false },
                                         PriceRow { 99.99, 0.0, false }, PriceRow { 1.0, 100.0, false }));

struct OptionRow {
    int configured;
    const char* flags;
};

class ConfiguredMinimumPriceMode : public ChequeTest, public testing::WithParamInterface<OptionRow> { };

TEST_P(ConfiguredMinimumPriceMode, ActsAsNothingWhenOutOfRange)
{
    ScriptedConfig config;
    config.set(u"Vantiro:noBonusForMinprice"_s, GetParam().configured);
    client.initialize();

    const auto document = DocumentBuilder().line(goodsFor(50.0, 50.0, false, false)).build();

    EXPECT_EQ(bonusFlags(ordinaryCheque(document)), GetParam().flags);
}

INSTANTIATE_TEST_SUITE_P(Values, ConfiguredMinimumPriceMode,
                         testing::Values(OptionRow { 0, neither }, OptionRow { 1, noAdd }, OptionRow { 2, noPay },
                                         OptionRow { 3, both }, OptionRow { 4, neither }, OptionRow { 7, neither },
                                         OptionRow { -1, neither },
                                         OptionRow { std::numeric_limits<int>::min(), neither },
                                         OptionRow { std::numeric_limits<int>::max(), neither }));

TEST(UnconfiguredMinimumPriceMode, FlagsNothing)
{
    const ScriptedConfig config;
    OpenClient client;
    client.initialize();

    const auto document = DocumentBuilder().line(goodsFor(50.0, 50.0, false, false)).build();

    EXPECT_EQ(bonusFlags(client.buildXmlCheck(document, {}, {}, {})), neither);
}

struct DiscountFlagRow {
    bool discount;
    bool onlyExternal;
    const char* noDiscounts;
};

class NoDiscounts : public ChequeTest, public testing::WithParamInterface<DiscountFlagRow> { };

TEST_P(NoDiscounts, HoldsForGoodsThatTakeNoDiscountAtAll)
{
    const auto document = DocumentBuilder().build();
    till::LineFields fields = Goods(1, u"1001"_s, 10.0).fields();
    fields.discountAllowed = GetParam().discount;
    fields.onlyExternalDiscountAllowed = GetParam().onlyExternal;
    document->addLine(fields);

    EXPECT_EQ(attribute(lineOf(ordinaryCheque(document), 1), "NoDiscounts"), GetParam().noDiscounts);
}

INSTANTIATE_TEST_SUITE_P(Goods, NoDiscounts,
                         testing::Values(DiscountFlagRow { true, true, "false" },
                                         DiscountFlagRow { true, false, "false" },
                                         DiscountFlagRow { false, true, "false" },
                                         DiscountFlagRow { false, false, "true" }));

} // namespace
