#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/scripted_config.h"
#include "tests/support/xml_compare.h"

using namespace Qt::StringLiterals;

namespace {

class DiscountOfLine : public ChequeTest {
protected:
    /// The one `Discount` that is written of the detail.
    [[nodiscard]] QDomElement discountOf(const Detail& detail) const
    {
        QDomElement line = newElement(target, "ChequeLine");
        client.addDiscountsTag({ detail.record() }, line);
        return below(line, "Discounts/Discount");
    }

    mutable QDomDocument target;
};

TEST_F(DiscountOfLine, HasExactlyItsAttributes)
{
    EXPECT_EQ(attributesOf(discountOf(Detail(record_name::positionDiscount).code(41).percent(7.5).sum(15.0))),
              "Amount = 15.00\n"
              "DiscountID = 41\n"
              "Percent = 7.5\n"
              "Type = Percent");
}

TEST_F(DiscountOfLine, ListMayBeEmpty)
{
    QDomElement line = newElement(target, "ChequeLine");

    client.addDiscountsTag({}, line);

    EXPECT_TRUE(sameXml(target, u"<ChequeLine><Discounts/></ChequeLine>"_s));
}

TEST_F(DiscountOfLine, ListKeepsItsOrderAndItsDoubles)
{
    const Detail first = Detail(record_name::positionDiscount).code(9).sum(1.0);
    const Detail second = Detail(record_name::positionDiscount).code(3).sum(2.0);
    QDomElement line = newElement(target, "ChequeLine");

    client.addDiscountsTag({ first.record(), second.record(), first.record() }, line);

    EXPECT_EQ(discountsOf(line), "9 Amount 0 1.00; 3 Amount 0 2.00; 9 Amount 0 1.00");
}

struct IdRow {
    const char16_t* name;
    int code;
    const char* id;
};

class DiscountId : public DiscountOfLine, public testing::WithParamInterface<IdRow> { };

TEST_P(DiscountId, IsTheCodeOfWhatTheServerGaveOnThePosition)
{
    const Detail detail = Detail(QString::fromUtf16(GetParam().name)).code(GetParam().code);

    EXPECT_EQ(attribute(discountOf(detail), "DiscountID"), GetParam().id);
}

INSTANTIATE_TEST_SUITE_P(Names, DiscountId,
                         testing::Values(IdRow { u"Скидка Vantiro на позицию", 41, "41" },
                                         IdRow { u"Скидка Vantiro на позицию", 0, "0" },
                                         IdRow { u"Скидка Vantiro на позицию", -5, "-5" },
                                         IdRow { u"Скидка Vantiro на позицию", 2147483647, "2147483647" },
                                         IdRow { u"скидка Vantiro на позицию", 41, "0" },
                                         IdRow { u"Скидка Vantiro на позицию ", 41, "0" },
                                         IdRow { u"Скидка Vantiro на чек", 41, "0" },
                                         IdRow { u"Скидка другой системы", 41, "0" }, IdRow { u"", 41, "0" }));

struct TypeRow {
    int type;
    int mode;
    const char* discountType;
};

class TypeOfDiscount : public DiscountOfLine, public testing::WithParamInterface<TypeRow> { };

TEST_P(TypeOfDiscount, IsSettledByTypeBeforeMode)
{
    const Detail detail = Detail(record_name::positionDiscount).type(GetParam().type).mode(GetParam().mode);

    EXPECT_EQ(attribute(discountOf(detail), "Type"), GetParam().discountType);
}

INSTANTIATE_TEST_SUITE_P(Types, TypeOfDiscount,
                         testing::Values(TypeRow { 1, 2, "Percent" }, TypeRow { 1, 6, "Percent" },
                                         TypeRow { 3, 2, "FixPrice" }, TypeRow { 3, 6, "FixPrice" },
                                         TypeRow { 2, 6, "Tender" }, TypeRow { 0, 6, "Tender" },
                                         TypeRow { 5, 6, "Tender" }, TypeRow { 2, 2, "Amount" },
                                         TypeRow { 5, 2, "Amount" }, TypeRow { 0, 0, "Amount" },
                                         TypeRow { 99, 99, "Amount" }, TypeRow { 6, 1, "Amount" }));

struct PercentRow {
    QVariant rate;
    const char* percent;
};

class PercentOfDiscount : public DiscountOfLine, public testing::WithParamInterface<PercentRow> { };

TEST_P(PercentOfDiscount, IsTheRateInTheShortestNotation)
{
    EXPECT_EQ(attribute(discountOf(Detail(record_name::positionDiscount).percent(GetParam().rate)), "Percent"),
              GetParam().percent);
}

INSTANTIATE_TEST_SUITE_P(Rates, PercentOfDiscount,
                         testing::Values(PercentRow { 7.5, "7.5" }, PercentRow { 10, "10" }, PercentRow { 0.0, "0" },
                                         PercentRow { 100.0, "100" }, PercentRow { -5.25, "-5.25" },
                                         PercentRow { -5.0, "-5" }, PercentRow { -0.0, "0" },
                                         PercentRow { 1000.0, "1000" }, PercentRow { 999.0, "999" },
                                         PercentRow { 0.0625, "0.0625" }, PercentRow { 33.3, "33.299999999999997" },
                                         PercentRow { u"12.5"_s, "12.5" },
                                         // What is no number counts as nothing.
                                         PercentRow { u"много"_s, "0" }, PercentRow { u""_s, "0" },
                                         PercentRow { QVariant(), "0" },
                                         PercentRow { QStringList { u"5"_s, u"6"_s }, "0" }));

struct OtherTypeRow {
    int type;
    int mode;
};

class RateOfOtherDiscounts : public DiscountOfLine, public testing::WithParamInterface<OtherTypeRow> { };

TEST_P(RateOfOtherDiscounts, IsNoPercentage)
{
    const Detail detail = Detail(record_name::positionDiscount).rate(7.5).type(GetParam().type).mode(GetParam().mode);

    EXPECT_EQ(attribute(discountOf(detail), "Percent"), "0");
}

INSTANTIATE_TEST_SUITE_P(Types, RateOfOtherDiscounts,
                         testing::Values(OtherTypeRow { 3, 2 }, OtherTypeRow { 2, 6 }, OtherTypeRow { 2, 2 },
                                         OtherTypeRow { 5, 2 }));

struct SumRow {
    double sum;
    const char* amount;
};

class AmountOfDiscount : public DiscountOfLine, public testing::WithParamInterface<SumRow> { };

TEST_P(AmountOfDiscount, IsItsSumAsMoney)
{
    EXPECT_EQ(attribute(discountOf(Detail(record_name::positionDiscount).sum(GetParam().sum)), "Amount"),
              GetParam().amount);
}

INSTANTIATE_TEST_SUITE_P(Sums, AmountOfDiscount,
                         testing::Values(SumRow { 0.0, "0.00" }, SumRow { 15.0, "15.00" },
                                         SumRow { 1234567.5, "1234567.50" }, SumRow { -3.0, "-3.00" },
                                         SumRow { 0.125, "0.13" }, SumRow { 0.004, "0.00" }));

struct MinAmountRow {
    bool forbidden; // forbidDiscountForDiscountedPosition
    QList<int> sources; // of the discounts on the line
    double points; // spent on the line
    const char* minAmount; // of a line of 90 roubles, two pieces with the minimum price of 30 each
};

class MinAmountOfLine : public ChequeTest, public testing::WithParamInterface<MinAmountRow> { };

TEST_P(MinAmountOfLine, LeavesRoomUnlessTheHostHasDiscountedTheLine)
{
    client.forbidDiscountForDiscountedPosition = GetParam().forbidden;
    DocumentBuilder document;
    document.line(Goods(1, u"1001"_s, 50.0, 2.0).minPrice(30.0).costs(90.0));
    for (const int source : GetParam().sources) {
        document.discount(Detail(u"Скидка"_s).source(source), { { 1, 5.0 } });
    }
    if (GetParam().points > 0.0) {
        document.impact(bonusImpact({ { 1, GetParam().points } }));
    }

    EXPECT_EQ(attribute(lineOf(ordinaryCheque(document.build()), 1), "MinAmount"), GetParam().minAmount);
}

INSTANTIATE_TEST_SUITE_P(
    Sources, MinAmountOfLine,
    testing::Values(MinAmountRow { false, {}, 0.0, "60.00" }, MinAmountRow { false, { 0 }, 0.0, "60.00" },
                    MinAmountRow { true, {}, 0.0, "60.00" }, MinAmountRow { true, { 0 }, 0.0, "90.00" },
                    MinAmountRow { true, { 2 }, 0.0, "60.00" }, MinAmountRow { true, { 1, 2, 3, -1 }, 0.0, "60.00" },
                    MinAmountRow { true, { 2, 0 }, 0.0, "90.00" }, MinAmountRow { true, { 0, 2 }, 0.0, "90.00" },
                    MinAmountRow { true, { 0 }, 4.5, "94.50" }, MinAmountRow { true, {}, 4.5, "60.00" }));

class MinAmount : public ChequeTest {
protected:
    MinAmount()
    {
        client.forbidDiscountForDiscountedPosition = true;
        document.line(Goods(1, u"1001"_s, 100.0).minPrice(30.0));
    }

    DocumentBuilder document;
};

TEST_F(MinAmount, IsTheAmountAfterGrantedDiscounts)
{
    document.discount(Detail(u"Скидка"_s).code(1).source(0), { { 1, 5.0 } });
    const auto granted = discountImpact(Detail(record_name::positionDiscount).code(42).on(1).sum(10.0));

    const QDomElement line = lineOf(ordinaryCheque(document.build(), { granted }), 1);

    EXPECT_EQ(attribute(line, "Amount"), "90.00");
    EXPECT_EQ(attribute(line, "MinAmount"), "90.00");
}

TEST_F(MinAmount, FollowsAGrantedDiscountOfTheHostAsWell)
{
    const auto granted = discountImpact(Detail(u"Скидка"_s).code(42).source(0).on(1).sum(10.0));

    EXPECT_EQ(attribute(lineOf(ordinaryCheque(document.build(), { granted }), 1), "MinAmount"), "90.00");
}

TEST_F(MinAmount, OfOneLineIsNotSettledByAnother)
{
    document.line(Goods(2, u"1002"_s, 50.0).minPrice(20.0));
    document.discount(Detail(u"Скидка"_s).source(0), { { 2, 5.0 } });

    EXPECT_EQ(attribute(lineOf(ordinaryCheque(document.build()), 1), "MinAmount"), "30.00");
    EXPECT_EQ(attribute(lineOf(ordinaryCheque(document.build()), 2), "MinAmount"), "50.00");
}

TEST_F(MinAmount, IsNotSettledByABonusRecordOfTheHost)
{
    document.discount(Detail(record_name::bonus).source(0), { { 1, 5.0 } });

    EXPECT_EQ(attribute(lineOf(ordinaryCheque(document.build()), 1), "MinAmount"), "30.00");
}

TEST(ConfiguredMinAmount, FollowsTheOption)
{
    const auto document = DocumentBuilder()
                              .line(Goods(1, u"1001"_s, 100.0).minPrice(30.0))
                              .discount(Detail(u"Скидка"_s).source(0), { { 1, 5.0 } })
                              .build();
    ScriptedConfig config;
    OpenClient client;

    client.initialize();
    EXPECT_EQ(attribute(lineOf(client.buildXmlCheck(document, {}, {}, {}), 1), "MinAmount"), "30.00");

    config.set(u"Vantiro:forbidDiscountForDiscountedPosition"_s, true);
    client.initialize();
    EXPECT_EQ(attribute(lineOf(client.buildXmlCheck(document, {}, {}, {}), 1), "MinAmount"), "100.00");
}

} // namespace
