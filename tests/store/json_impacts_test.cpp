#include "tests/store/round_trip.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using DetailPtr = QSharedPointer<DocumentImpactDetail>;

const QDateTime moment(QDate(2024, 3, 5), QTime(10, 20, 30, 400));

[[nodiscard]] DetailPtr fullDetail()
{
    auto detail = DetailPtr::create();
    detail->setDiscountName(u"Скидка Vantiro на позицию"_s);
    detail->setDiscountSum(100.5);
    detail->setPosition(4);
    detail->setDiscountCode(1204);
    detail->setDiscountObject(EDiscountObject::position);
    detail->setDiscountType(EDiscountType::percent);
    detail->setDiscountMode(EDiscountMode::tender);
    detail->setDiscountRate(12.5);
    detail->setImpactSource(EImpactSource::loyaltySystem);
    detail->setDateTime(moment);
    detail->setMinPriceIgnored(true);
    detail->setCardIndex(42);
    return detail;
}

/// The impact that a document with this one has when it is read.
[[nodiscard]] QSharedPointer<DocumentImpact> readImpact(const QSharedPointer<DocumentImpact>& impact)
{
    auto document = QSharedPointer<till::Cheque>::create();
    document->impacts.append(impact);
    const auto impacts = roundTrip(document)->getDocumentImpacts();
    EXPECT_EQ(impacts.size(), 1);
    return impacts.constFirst();
}

[[nodiscard]] DetailPtr readTotals(const DetailPtr& totals)
{
    return readImpact(QSharedPointer<DiscountImpact>::create(totals))->getTotals();
}

} // namespace

TEST(StoredImpacts, EveryFieldOfTheTotalsComesBack)
{
    const DetailPtr totals = readTotals(fullDetail());

    EXPECT_EQ(totals->getDiscountName().toStdString(), "Скидка Vantiro на позицию");
    EXPECT_EQ(totals->getDiscountSum(), 100.5);
    EXPECT_EQ(totals->getPosition(), 4);
    EXPECT_EQ(totals->getDiscountCode(), 1204);
    EXPECT_EQ(totals->getDiscountObject(), 1);
    EXPECT_EQ(totals->getDiscountType(), 1);
    EXPECT_EQ(totals->getDiscountMode(), 6);
    EXPECT_EQ(totals->getDiscountRate(), QVariant(12.5));
    EXPECT_EQ(totals->getImpactSource(), 2);
    EXPECT_EQ(totals->getDateTime(), moment);
    EXPECT_TRUE(totals->isMinPriceIgnored());
    EXPECT_EQ(totals->getCardIndex(), QVariant(42));
    EXPECT_TRUE(totals->getCardRecord().isNull());
}

TEST(StoredImpacts, EmptyTotalsComeBackEmpty)
{
    const DetailPtr totals = readTotals(DetailPtr::create());

    EXPECT_EQ(totals->getDiscountName().toStdString(), "");
    EXPECT_EQ(totals->getDiscountSum(), 0.0);
    EXPECT_FALSE(totals->getDiscountRate().isValid());
    EXPECT_FALSE(totals->getCardIndex().isValid());
    EXPECT_FALSE(totals->getDateTime().isValid());
    EXPECT_FALSE(totals->isMinPriceIgnored());
}

TEST(StoredImpacts, RateAndCardIndexStayTextOrNumber)
{
    const DetailPtr detail = fullDetail();
    detail->setDiscountRate(u"10,5"_s);
    detail->setCardIndex(u"0042"_s);
    EXPECT_EQ(readTotals(detail)->getDiscountRate(), QVariant(u"10,5"_s));
    EXPECT_EQ(readTotals(detail)->getCardIndex(), QVariant(u"0042"_s));

    detail->setDiscountRate(10);
    EXPECT_EQ(readTotals(detail)->getDiscountRate(), QVariant(10));
    detail->setDiscountRate(10.0);
    EXPECT_EQ(readTotals(detail)->getDiscountRate().toDouble(), 10.0);
}

TEST(StoredImpacts, ValuesOfTheHostsOwnPassThrough)
{
    const DetailPtr detail = fullDetail();
    detail->setDiscountObject(static_cast<EDiscountObject::type>(17));
    detail->setDiscountType(static_cast<EDiscountType::type>(-4));
    detail->setDiscountMode(static_cast<EDiscountMode::type>(1000));
    detail->setImpactSource(static_cast<EImpactSource::source>(99));
    const DetailPtr read = readTotals(detail);

    EXPECT_EQ(static_cast<int>(read->getDiscountObject()), 17);
    EXPECT_EQ(static_cast<int>(read->getDiscountType()), -4);
    EXPECT_EQ(static_cast<int>(read->getDiscountMode()), 1000);
    EXPECT_EQ(static_cast<int>(read->getImpactSource()), 99);
}

TEST(StoredImpacts, DetailsComeBackByPosition)
{
    const auto impact = QSharedPointer<BonusImpact>::create(fullDetail());
    for (const int position : { 10, 2, 1, 300 }) {
        impact->addDetailForPosition(position, position + 0.25);
    }
    const auto details = readImpact(impact)->getDetails();

    ASSERT_EQ(details.keys(), (QList<int> { 1, 2, 10, 300 }));
    for (const int position : { 10, 2, 1, 300 }) {
        EXPECT_EQ(details.value(position)->getDiscountSum(), position + 0.25);
        EXPECT_EQ(details.value(position)->getPosition(), position);
        EXPECT_EQ(details.value(position)->getDiscountCode(), 1204);
        EXPECT_EQ(details.value(position)->getDiscountRate(), QVariant(12.5));
    }
}

TEST(StoredImpacts, ClassesComeBackInOrder)
{
    auto document = QSharedPointer<till::Cheque>::create();
    document->impacts = { QSharedPointer<BonusImpact>::create(), QSharedPointer<DocumentImpact>::create(),
                          QSharedPointer<DiscountImpact>::create(), QSharedPointer<BonusImpact>::create() };
    std::string classes;
    for (const auto& impact : roundTrip(document)->getDocumentImpacts()) {
        classes += impact.dynamicCast<BonusImpact>() ? 'b' : impact.dynamicCast<DiscountImpact>() ? 'd' : 'i';
    }

    EXPECT_EQ(classes, "bidb");
}

TEST(StoredImpacts, WhatAPluginStoredWithOneComesBack)
{
    const auto impact = QSharedPointer<DiscountImpact>::create(fullDetail());
    impact->setValue(u"Vantiro"_s, u"reason"_s, u"день рождения"_s);
    const auto read = readImpact(impact);

    EXPECT_EQ(read->getValue(u"Vantiro"_s, u"reason"_s, QVariant()), QVariant(u"день рождения"_s));
    EXPECT_EQ(read->getValue(u"Vantiro"_s, u"other"_s, QVariant(7)), QVariant(7));
}
