#include "host/document/document_impact.h"
#include "host/facilities/serder.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

using DetailPtr = QSharedPointer<DocumentImpactDetail>;

const QDateTime moment(QDate(2024, 3, 5), QTime(10, 20, 30));

BonusImpact spentPoints()
{
    auto totals = DetailPtr::create();
    totals->setDiscountName(QStringLiteral("Баллы Vantiro"));
    totals->setDiscountSum(100.5);
    totals->setDiscountType(EDiscountType::bonus);
    totals->setDiscountMode(EDiscountMode::loyalty);
    totals->setDiscountRate(QVariant(100.5));
    totals->setImpactSource(EImpactSource::loyaltySystem);
    totals->setDateTime(moment);
    totals->setMinPriceIgnored(true);
    totals->setCardIndex(QVariant(42));
    BonusImpact impact(totals);
    impact.addDetailForPosition(2, 60.25);
    impact.addDetailForPosition(10, 40.25);
    return impact;
}

QVariant stored(const BonusImpact& impact)
{
    QVariant result;
    serder::default_serder_type<BonusImpact>::strategy.serialize(&result, &impact, DocumentImpact::staticMetaObject);
    return result;
}

void restore(BonusImpact& impact, const QVariant& source)
{
    serder::default_serder_type<BonusImpact>::strategy.deserialize(&impact, source, DocumentImpact::staticMetaObject);
}

// What a store makes of a value that it keeps as text.
QVariant throughJson(const QVariant& value)
{
    const QByteArray text = QJsonDocument(QJsonObject::fromVariantMap(value.toMap())).toJson();
    return QJsonDocument::fromJson(text).object().toVariantMap();
}

QVariant json(const char* text)
{
    return QJsonDocument::fromJson(text).object().toVariantMap();
}

void expectSpentPoints(BonusImpact& impact)
{
    const DetailPtr totals = impact.getTotals();
    EXPECT_EQ(totals->getDiscountName(), QStringLiteral("Баллы Vantiro"));
    EXPECT_EQ(totals->getDiscountSum(), 100.5);
    EXPECT_EQ(totals->getDiscountObject(), EDiscountObject::cheque);
    EXPECT_EQ(totals->getDiscountType(), EDiscountType::bonus);
    EXPECT_EQ(totals->getDiscountMode(), EDiscountMode::loyalty);
    EXPECT_EQ(totals->getDiscountRate().toDouble(), 100.5);
    EXPECT_EQ(totals->getImpactSource(), EImpactSource::loyaltySystem);
    EXPECT_EQ(totals->getDateTime(), moment);
    EXPECT_TRUE(totals->isMinPriceIgnored());
    EXPECT_EQ(totals->getCardIndex().toInt(), 42);

    ASSERT_EQ(impact.getDetails().keys(), (QList<int> { 2, 10 }));
    EXPECT_EQ(impact.getDetails().value(2)->getDiscountSum(), 60.25);
    EXPECT_EQ(impact.getDetails().value(2)->getPosition(), 2);
    EXPECT_EQ(impact.getDetails().value(10)->getDiscountSum(), 40.25);
    EXPECT_EQ(impact.getDetails().value(10)->getPosition(), 10);
    EXPECT_EQ(impact.getDetails().value(10)->getDiscountObject(), EDiscountObject::position);
    EXPECT_EQ(impact.getDetails().value(10)->getDiscountName(), QStringLiteral("Баллы Vantiro"));
}

TEST(StoredImpact, IsAMapOfTotalsAndDetailsByPositionText)
{
    const QVariantMap map = stored(spentPoints()).toMap();

    EXPECT_EQ(map.keys(), (QStringList { QStringLiteral("details"), QStringLiteral("totals") }));
    EXPECT_EQ(map.value(QStringLiteral("totals")).toMap().value(QStringLiteral("discountSum")).toDouble(), 100.5);
    const QVariantMap details = map.value(QStringLiteral("details")).toMap();
    EXPECT_EQ(details.keys(), (QStringList { QStringLiteral("10"), QStringLiteral("2") }));
    EXPECT_EQ(details.value(QStringLiteral("10")).toMap().value(QStringLiteral("discountSum")).toDouble(), 40.25);
}

TEST(StoredImpact, ComesBack)
{
    BonusImpact impact;
    restore(impact, stored(spentPoints()));

    expectSpentPoints(impact);
}

TEST(StoredImpact, ComesBackThroughJson)
{
    BonusImpact impact;
    restore(impact, throughJson(stored(spentPoints())));

    expectSpentPoints(impact);
}

TEST(StoredImpact, ReplacesWhatTheRecordHeld)
{
    BonusImpact impact;
    impact.addDetailForPosition(5, 1.0);
    restore(impact, stored(spentPoints()));

    EXPECT_EQ(impact.getDetails().keys(), (QList<int> { 2, 10 }));
}

TEST(StoredImpact, DoesNotTouchACopyOfTheRecord)
{
    BonusImpact impact = spentPoints();
    const BonusImpact copy(impact);
    restore(impact, json(R"({"totals": {"discountSum": 1.5}})"));

    EXPECT_EQ(impact.getTotals()->getDiscountSum(), 1.5);
    EXPECT_EQ(copy.getTotals()->getDiscountSum(), 100.5);
}

TEST(StoredImpact, MissingFieldsAreEmpty)
{
    BonusImpact impact;
    restore(impact, json(R"({"totals": {"discountSum": 1.5}, "details": {"3": {"discountSum": 2.5}}})"));

    EXPECT_EQ(impact.getTotals()->getDiscountSum(), 1.5);
    EXPECT_EQ(impact.getTotals()->getDiscountName(), QString());
    ASSERT_EQ(impact.getDetails().keys(), QList<int> { 3 });
    EXPECT_EQ(impact.getDetails().value(3)->getDiscountSum(), 2.5);
    EXPECT_FALSE(impact.getDetails().value(3)->getDateTime().isValid());
}

TEST(StoredImpact, KeyOfADetailDecidesOnItsPosition)
{
    BonusImpact impact;
    restore(impact, json(R"({"details": {"3": {"discountSum": 2.5}, "4": {"position": 9, "discountSum": 3.5}}})"));

    EXPECT_EQ(impact.getDetails().value(3)->getPosition(), 3);
    EXPECT_EQ(impact.getDetails().value(4)->getPosition(), 4);
}

TEST(StoredImpact, DamagedDetailIsLeftOut)
{
    BonusImpact impact;
    restore(impact, json(R"({"details": {"3": {"discountSum": 2.5}, "x": {"discountSum": 9.0}, "4": 5, "6": null}})"));

    ASSERT_EQ(impact.getDetails().keys(), QList<int> { 3 });
    EXPECT_EQ(impact.getDetails().value(3)->getDiscountSum(), 2.5);
}

TEST(StoredImpact, DamagedTotalsAreEmptyOnes)
{
    BonusImpact impact;
    restore(impact, json(R"({"totals": "?", "details": []})"));

    ASSERT_FALSE(impact.getTotals().isNull());
    EXPECT_EQ(impact.getTotals()->getDiscountName(), QString());
    EXPECT_TRUE(impact.getDetails().isEmpty());
}

}
