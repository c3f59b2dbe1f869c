#include "host/document/document_impact.h"
#include "till/document/card.h"

#include <gtest/gtest.h>

namespace {

using DetailPtr = QSharedPointer<DocumentImpactDetail>;

const QDateTime moment(QDate(2024, 3, 5), QTime(10, 20, 30));

DetailPtr spentPoints()
{
    auto detail = DetailPtr::create();
    detail->setDiscountName(QStringLiteral("Баллы Vantiro"));
    detail->setDiscountSum(100.5);
    detail->setDiscountCode(8);
    detail->setDiscountObject(EDiscountObject::cheque);
    detail->setDiscountType(EDiscountType::bonus);
    detail->setDiscountMode(EDiscountMode::loyalty);
    detail->setDiscountRate(QVariant(100.5));
    detail->setImpactSource(EImpactSource::loyaltySystem);
    detail->setDateTime(moment);
    detail->setMinPriceIgnored(true);
    detail->setCardRecord(QSharedPointer<till::Card>::create(till::CardFields()));
    detail->setCardIndex(QVariant(42));
    return detail;
}

TEST(DocumentImpact, EmptyRecordHasEmptyTotals)
{
    DocumentImpact impact;

    ASSERT_FALSE(impact.getTotals().isNull());
    EXPECT_EQ(impact.getTotals()->getDiscountName(), QString());
    EXPECT_EQ(impact.getTotals()->getDiscountSum(), 0.0);
    EXPECT_TRUE(impact.getDetails().isEmpty());
}

TEST(DocumentImpact, NullTotalsCountAsEmptyOnes)
{
    const DiscountImpact impact { DetailPtr() };

    ASSERT_FALSE(impact.getTotals().isNull());
    EXPECT_EQ(impact.getTotals()->getDiscountSum(), 0.0);
}

TEST(DocumentImpact, KeepsTheTotalsThatItWasGiven)
{
    const DetailPtr totals = spentPoints();
    BonusImpact impact(totals);

    EXPECT_EQ(impact.getTotals(), totals);
    EXPECT_TRUE(impact.getDetails().isEmpty());
}

TEST(DocumentImpact, DetailForPositionHasItsSumAndTheRestOfTheTotals)
{
    const DetailPtr totals = spentPoints();
    BonusImpact impact(totals);
    impact.addDetailForPosition(3, 40.25);

    ASSERT_EQ(impact.getDetails().keys(), QList<int> { 3 });
    const DetailPtr detail = impact.getDetails().value(3);
    EXPECT_EQ(detail->getPosition(), 3);
    EXPECT_EQ(detail->getDiscountSum(), 40.25);
    EXPECT_EQ(detail->getDiscountObject(), EDiscountObject::position);
    EXPECT_EQ(detail->getDiscountName(), QStringLiteral("Баллы Vantiro"));
    EXPECT_EQ(detail->getDiscountCode(), 8);
    EXPECT_EQ(detail->getDiscountType(), EDiscountType::bonus);
    EXPECT_EQ(detail->getDiscountMode(), EDiscountMode::loyalty);
    EXPECT_EQ(detail->getDiscountRate(), QVariant(100.5));
    EXPECT_EQ(detail->getImpactSource(), EImpactSource::loyaltySystem);
    EXPECT_EQ(detail->getDateTime(), moment);
    EXPECT_TRUE(detail->isMinPriceIgnored());
    EXPECT_EQ(detail->getCardRecord(), totals->getCardRecord());
    EXPECT_EQ(detail->getCardIndex(), QVariant(42));
}

TEST(DocumentImpact, DetailForPositionLeavesTheTotalsAlone)
{
    BonusImpact impact(spentPoints());
    impact.addDetailForPosition(3, 40.25);

    EXPECT_EQ(impact.getTotals()->getDiscountSum(), 100.5);
    EXPECT_EQ(impact.getTotals()->getPosition(), 0);
    EXPECT_EQ(impact.getTotals()->getDiscountObject(), EDiscountObject::cheque);
}

TEST(DocumentImpact, SumOfAPositionAddsUp)
{
    BonusImpact impact(spentPoints());
    impact.addDetailForPosition(3, 40.25);
    const DetailPtr detail = impact.getDetails().value(3);
    impact.addDetailForPosition(3, 10.5);

    EXPECT_EQ(impact.getDetails().size(), 1);
    EXPECT_EQ(impact.getDetails().value(3), detail);
    EXPECT_EQ(detail->getDiscountSum(), 50.75);
}

TEST(DocumentImpact, CopiesShareTheirDetails)
{
    BonusImpact impact(spentPoints());
    impact.addDetailForPosition(3, 40.25);
    BonusImpact copy(impact);
    copy.addDetailForPosition(4, 1.0);

    EXPECT_EQ(copy.getTotals(), impact.getTotals());
    EXPECT_EQ(copy.getDetails().value(3), impact.getDetails().value(3));
    EXPECT_EQ(impact.getDetails().keys(), QList<int> { 3 });
    EXPECT_EQ(copy.getDetails().keys(), (QList<int> { 3, 4 }));
}

TEST(DocumentImpact, CarriesPluginDataOfItsOwn)
{
    DiscountImpact impact;
    impact.setValue(QStringLiteral("Vantiro"), QStringLiteral("key"), QVariant(5));
    const DiscountImpact copy(impact);

    EXPECT_EQ(copy.getValue(QStringLiteral("Vantiro"), QStringLiteral("key"), QVariant()), QVariant(5));
}

}
