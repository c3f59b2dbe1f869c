#include "tests/support/document_builder.h"
#include "till/document/cheque.h"
#include "till/document/totals.h"
#include "till/money/kopecks.h"
#include "till/money/spread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

using namespace Qt::StringLiterals;

// The arithmetic of the document: generated cheques keep every rule at once, and every line comes out as it would with
// pencil and paper.

namespace {

/// Reproducible, and the same everywhere.
class Numbers {
public:
    explicit Numbers(std::uint64_t seed)
        : state(seed)
    {
    }

    [[nodiscard]] qint64 below(qint64 limit)
    {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<qint64>((state >> 33) % static_cast<std::uint64_t>(limit));
    }

private:
    std::uint64_t state;
};

[[nodiscard]] double sum(qint64 kopecks)
{
    return static_cast<double>(kopecks) / 100.0;
}

struct GeneratedLine {
    qint64 price = 0; // kopecks
    qint64 minPrice = 0;
    qint64 quantity = 0; // thousandths
    bool takesDiscounts = true;

    /// Half a kopeck rounded up, in whole numbers.
    [[nodiscard]] qint64 full() const
    {
        return (price * quantity + 500) / 1000;
    }

    [[nodiscard]] qint64 minimum() const
    {
        return (minPrice * quantity + 500) / 1000;
    }
};

[[nodiscard]] std::vector<GeneratedLine> generatedLines(Numbers& numbers)
{
    std::vector<GeneratedLine> lines(static_cast<std::size_t>(1 + numbers.below(8)));
    for (GeneratedLine& line : lines) {
        line.price = 1 + numbers.below(200'000);
        line.minPrice = numbers.below(3) == 0 ? numbers.below(line.price + 100) : 0;
        line.quantity = numbers.below(2) == 0 ? 1000 * (1 + numbers.below(9)) : 1 + numbers.below(5000);
        line.takesDiscounts = numbers.below(5) != 0;
    }
    return lines;
}

[[nodiscard]] QSharedPointer<till::Cheque> chequeOf(const std::vector<GeneratedLine>& lines)
{
    const auto cheque = QSharedPointer<till::Cheque>::create();
    for (const GeneratedLine& line : lines) {
        till::LineFields fields;
        fields.price = sum(line.price);
        fields.minPrice = sum(line.minPrice);
        fields.quantity = static_cast<double>(line.quantity) / 1000.0;
        fields.discountAllowed = line.takesDiscounts;
        cheque->addLine(fields);
    }
    till::workOutLines(*cheque);
    return cheque;
}

/// What a line costs now, in kopecks; it must be whole ones.
[[nodiscard]] qint64 costOf(const GoodsItem& line)
{
    const double kopecks = line.getSumb() * 100.0;
    EXPECT_LT(std::abs(kopecks - std::round(kopecks)), 0.001);
    return std::llround(kopecks);
}

[[nodiscard]] QSharedPointer<DiscountImpact> discountOf(qint64 kopecks, int position)
{
    Detail detail(position == 0 ? record_name::chequeDiscount : record_name::positionDiscount);
    detail.sum(sum(kopecks));
    if (position == 0) {
        detail.onCheque();
    } else {
        detail.on(position);
    }
    return discountImpact(detail);
}

} // namespace

TEST(Totals, GeneratedLinesCostWhatPencilAndPaperSay)
{
    Numbers numbers(20261121);
    for (int round = 0; round < 3000; ++round) {
        const std::vector<GeneratedLine> lines = generatedLines(numbers);
        const auto cheque = chequeOf(lines);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            ASSERT_EQ(costOf(*cheque->liveLines().at(static_cast<qsizetype>(i))), lines[i].full())
                << round << ": " << lines[i].price << " x " << lines[i].quantity;
        }
    }
}

TEST(Totals, HalfAKopeckIsRoundedUpWhateverTheDoublesSay)
{
    EXPECT_EQ(till::cost(1.15, 0.5), 58); // 0.575, as a double 0.57499…
    EXPECT_EQ(till::cost(12.35, 0.5), 618);
    EXPECT_EQ(till::cost(0.01, 0.5), 1);
    EXPECT_EQ(till::cost(0.01, 0.499), 0);
    EXPECT_EQ(till::cost(89.90, 2.0), 17980);
    EXPECT_EQ(till::cost(999999999.99, 1.0), 99'999'999'999);
}

TEST(Totals, KopecksOfARoundedSumAreExact)
{
    for (qint64 kopecks = -10'000; kopecks <= 10'000; ++kopecks) {
        ASSERT_EQ(till::kopecks(sum(kopecks)), kopecks);
        ASSERT_EQ(till::kopecks(till::roubles(kopecks)), kopecks);
    }
}

TEST(Totals, GeneratedDiscountsKeepEveryRule)
{
    Numbers numbers(7);
    int bounded = 0;
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE(round);
        const std::vector<GeneratedLine> lines = generatedLines(numbers);
        const auto cheque = chequeOf(lines);

        QList<QSharedPointer<DiscountImpact>> discounts;
        for (qint64 count = numbers.below(4); count > 0; --count) {
            const auto position = static_cast<int>(numbers.below(static_cast<qint64>(lines.size()) + 1));
            discounts.append(discountOf(numbers.below(300'000), position));
        }
        till::setLoyaltyDiscounts(*cheque, discounts);

        ASSERT_EQ(cheque->impacts.size(), discounts.size());
        qint64 recorded = 0;
        std::vector<qint64> off(lines.size());
        for (qsizetype i = 0; i < discounts.size(); ++i) {
            const auto& record = cheque->impacts.at(i);
            qint64 details = 0;
            const auto map = record->getDetails();
            for (auto detail = map.cbegin(); detail != map.cend(); ++detail) {
                const qint64 amount = std::llround(detail.value()->getDiscountSum() * 100);
                ASSERT_GT(amount, 0);
                off[static_cast<std::size_t>(detail.key() - 1)] += amount;
                details += amount;
            }
            const qint64 total = std::llround(record->getTotals()->getDiscountSum() * 100);
            ASSERT_EQ(total, details) << "the record holds what was taken off indeed";
            const qint64 granted = std::llround(discounts.at(i)->getTotals()->getDiscountSum() * 100);
            ASSERT_LE(total, granted);
            bounded += total < granted ? 1 : 0;
            recorded += total;
        }

        qint64 taken = 0;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const qint64 cost = costOf(*cheque->liveLines().at(static_cast<qsizetype>(i)));
            ASSERT_EQ(cost, lines[i].full() - off[i]);
            ASSERT_GE(cost, std::min(lines[i].full(), lines[i].minimum()));
            if (!lines[i].takesDiscounts) {
                ASSERT_EQ(off[i], 0);
            }
            taken += off[i];
        }
        ASSERT_EQ(taken, recorded);
    }
    EXPECT_GT(bounded, 500) << "the bounds were met";
}

TEST(Totals, DiscountOnTheChequeTakesAllThatIsGrantedOrAllTheRoom)
{
    Numbers numbers(11);
    int exact = 0;
    for (int round = 0; round < 2000; ++round) {
        const std::vector<GeneratedLine> lines = generatedLines(numbers);
        const auto cheque = chequeOf(lines);
        qint64 room = 0;
        for (const GeneratedLine& line : lines) {
            room += line.takesDiscounts ? std::max<qint64>(0, line.full() - line.minimum()) : 0;
        }
        const qint64 granted = numbers.below(100'000);
        till::setLoyaltyDiscounts(*cheque, { discountOf(granted, 0) });
        ASSERT_EQ(std::llround(cheque->impacts.constFirst()->getTotals()->getDiscountSum() * 100),
                  std::min(granted, room));
        exact += granted <= room ? 1 : 0;
    }
    EXPECT_GT(exact, 500);
    EXPECT_LT(exact, 2000);
}

TEST(Totals, SettingTheSameDiscountsAgainChangesNothing)
{
    Numbers numbers(13);
    for (int round = 0; round < 300; ++round) {
        const auto cheque = chequeOf(generatedLines(numbers));
        const QList<QSharedPointer<DiscountImpact>> discounts { discountOf(numbers.below(90'000), 0),
                                                                discountOf(numbers.below(9'000), 1) };
        till::setLoyaltyDiscounts(*cheque, discounts);
        const double before = cheque->sum();
        till::setLoyaltyDiscounts(*cheque, discounts);
        ASSERT_EQ(cheque->sum(), before);
        ASSERT_EQ(cheque->impacts.size(), 2);
        till::setLoyaltyDiscounts(*cheque, {});
        ASSERT_EQ(cheque->impacts.size(), 0);
        ASSERT_FALSE(till::hasLoyaltyDiscounts(*cheque));
    }
}

TEST(Totals, DiscountsOfOtherSourcesStay)
{
    const auto cheque = DocumentBuilder()
                            .line(Goods(1, u"1"_s, 100.0))
                            .discount(Detail(u"Скидка дня"_s).source(0).on(1).sum(10.0), { { 1, 10.0 } })
                            .build();
    till::workOutLines(*cheque);
    till::setLoyaltyDiscounts(*cheque, { discountOf(500, 1) });
    EXPECT_EQ(cheque->sum(), 85.0);
    till::setLoyaltyDiscounts(*cheque, {});
    EXPECT_EQ(cheque->sum(), 90.0);
    EXPECT_FALSE(till::hasLoyaltyDiscounts(*cheque));
    EXPECT_EQ(cheque->impacts.size(), 1);
}

TEST(Totals, ServersOwnRecordStaysAsItWas)
{
    const auto cheque = DocumentBuilder().line(Goods(1, u"1"_s, 10.0)).build();
    const auto granted = discountOf(5000, 1);
    till::setLoyaltyDiscounts(*cheque, { granted });
    EXPECT_EQ(granted->getTotals()->getDiscountSum(), 50.0);
    EXPECT_EQ(granted->getDetails().size(), 0);
    EXPECT_EQ(cheque->impacts.constFirst()->getTotals()->getDiscountSum(), 10.0);
    EXPECT_EQ(cheque->impacts.constFirst()->getTotals()->getDiscountName().toStdString(), "Скидка Vantiro на позицию");
}

TEST(Totals, NullRecordsArePassedOver)
{
    const auto cheque = DocumentBuilder().line(Goods(1, u"1"_s, 10.0)).build();
    till::setLoyaltyDiscounts(*cheque, { nullptr, discountOf(100, 1) });
    till::setSpentPoints(*cheque, { nullptr });
    EXPECT_EQ(cheque->sum(), 9.0);
    EXPECT_EQ(cheque->impacts.size(), 1);
}

TEST(Totals, PointsLowerTheirLinesAndAreReplacedAsAWhole)
{
    const auto cheque = DocumentBuilder().line(Goods(1, u"1"_s, 10.0)).line(Goods(2, u"2"_s, 20.0)).build();
    till::setSpentPoints(*cheque, { bonusImpact({ { 1, 1.01 }, { 2, 2.02 } }), bonusImpact({ { 2, 3.0 } }) });
    EXPECT_EQ(till::kopecks(cheque->liveLines().at(0)->getSumb()), 899);
    EXPECT_EQ(till::kopecks(cheque->liveLines().at(1)->getSumb()), 1498);
    till::setSpentPoints(*cheque, {});
    EXPECT_EQ(cheque->sum(), 30.0);
}

TEST(Totals, RoomForPointsIsAboveTheMinimumPricesOfLinesThatTakeThem)
{
    const auto cheque = DocumentBuilder()
                            .line(Goods(1, u"1"_s, 10.0, 2.0).minPrice(4.0))
                            .line(Goods(2, u"2"_s, 100.0).takesNoPoints())
                            .line(Goods(3, u"3"_s, 5.0).minPrice(9.0))
                            .build();
    till::workOutLines(*cheque);
    EXPECT_EQ(till::roomForPoints(*cheque), 12.0);
    till::setLoyaltyDiscounts(*cheque, { discountOf(300, 1) });
    EXPECT_EQ(till::roomForPoints(*cheque), 9.0);
}

TEST(Totals, LineWithOnlyOutsideDiscountsTakesThose)
{
    const auto cheque = DocumentBuilder().line(Goods(1, u"1"_s, 10.0).takesOnlyExternalDiscount()).build();
    till::setLoyaltyDiscounts(*cheque, { discountOf(100, 1) });
    EXPECT_EQ(cheque->sum(), 9.0);
}

TEST(Totals, DroppedPositionLeavesTheOthersAsTheyAre)
{
    Numbers numbers(17);
    for (int round = 0; round < 500; ++round) {
        const auto cheque = chequeOf(generatedLines(numbers));
        till::setLoyaltyDiscounts(*cheque,
                                  { discountOf(numbers.below(90'000), 0), discountOf(numbers.below(9'000), 1) });
        QMap<int, qint64> before;
        for (const QSharedPointer<GoodsItem>& line : cheque->liveLines()) {
            before.insert(line->getPosnum(), costOf(*line));
        }
        cheque->remove(1);
        till::dropDiscountsOn(*cheque, 1);
        qint64 off = 0;
        qint64 full = 0;
        for (const QSharedPointer<GoodsItem>& line : cheque->liveLines()) {
            ASSERT_EQ(costOf(*line), before.value(line->getPosnum()));
            full += till::cost(line->getPrice(), line->getQuantity());
            off += costOf(*line);
        }
        qint64 recorded = 0;
        for (const auto& impact : cheque->impacts) {
            recorded += std::llround(impact->getTotals()->getDiscountSum() * 100);
            ASSERT_FALSE(impact->getDetails().contains(1));
        }
        ASSERT_EQ(recorded, full - off);
    }
}

TEST(Spread, MovesNoShareByAWholeKopeckWhereThereIsRoom)
{
    Numbers numbers(19);
    for (int round = 0; round < 3000; ++round) {
        QList<till::Share> shares;
        qint64 weights = 0;
        for (qint64 count = 1 + numbers.below(9); count > 0; --count) {
            shares.append({ 1 + numbers.below(1'000'000), 1'000'000'000 });
            weights += shares.constLast().weight;
        }
        const qint64 whole = numbers.below(weights + 1);
        const QList<till::Kopecks> parts = till::spread(whole, shares);
        qint64 given = 0;
        for (qsizetype i = 0; i < shares.size(); ++i) {
            const double fair
                = static_cast<double>(whole) * static_cast<double>(shares[i].weight) / static_cast<double>(weights);
            ASSERT_LT(std::abs(static_cast<double>(parts[i]) - fair), 1.0) << round;
            given += parts[i];
        }
        ASSERT_EQ(given, whole);
    }
}

TEST(Spread, LargerWeightNeverGetsLess)
{
    Numbers numbers(23);
    for (int round = 0; round < 3000; ++round) {
        QList<till::Share> shares;
        for (qint64 count = 2 + numbers.below(9); count > 0; --count) {
            const qint64 weight = 1 + numbers.below(1000);
            shares.append({ weight, weight });
        }
        const QList<till::Kopecks> parts = till::spread(numbers.below(5000), shares);
        for (qsizetype i = 0; i < shares.size(); ++i) {
            for (qsizetype j = 0; j < shares.size(); ++j) {
                if (shares[i].weight > shares[j].weight) {
                    ASSERT_GE(parts[i], parts[j]) << round;
                }
            }
        }
    }
}
