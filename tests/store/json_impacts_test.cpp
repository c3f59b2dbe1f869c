#include "host/facilities/serder.h"
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

namespace {

struct Change {
    const char* name;
    void (*make)(DocumentImpactDetail& detail);
    const char* before;
    const char* after;
};

class ChangedDetail : public testing::TestWithParam<Change> {
protected:
    ChangedDetail()
    {
        document->impacts.append(impact);
    }

    /// What is written of the impact, and of the map that a plug-in stores of it.
    [[nodiscard]] std::string written() const
    {
        QVariant map;
        serder::default_serder_type<DiscountImpact>::strategy.serialize(&map, impact.data(),
                                                                        DocumentImpact::staticMetaObject);
        document->setValue(u"Vantiro"_s, u"impact"_s, map);
        return till::toJson(document).toStdString();
    }

    const QSharedPointer<DiscountImpact> impact = QSharedPointer<DiscountImpact>::create(fullDetail());
    const QSharedPointer<till::Cheque> document = QSharedPointer<till::Cheque>::create();
};

[[nodiscard]] size_t countOf(const std::string& piece, const std::string& text)
{
    size_t count = 0;
    for (size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace

TEST_P(ChangedDetail, IsWrittenAsItIsNow)
{
    const Change& change = GetParam();
    EXPECT_EQ(countOf(change.before, written()), 2U);

    change.make(*impact->getTotals());
    const std::string text = written();
    EXPECT_EQ(countOf(change.before, text), 0U) << text;
    EXPECT_EQ(countOf(change.after, text), 2U) << text;
}

INSTANTIATE_TEST_SUITE_P(
    EverySetter, ChangedDetail,
    testing::Values(
        Change { "Name", [](DocumentImpactDetail& detail) { detail.setDiscountName(u"Иная"_s); },
                 R"("discountName":"Скидка Vantiro на позицию")", R"("discountName":"Иная")" },
        Change { "Sum", [](DocumentImpactDetail& detail) { detail.setDiscountSum(7.25); }, R"("discountSum":100.5)",
                 R"("discountSum":7.25)" },
        Change { "Position", [](DocumentImpactDetail& detail) { detail.setPosition(5); }, R"("position":4)",
                 R"("position":5)" },
        Change { "Code", [](DocumentImpactDetail& detail) { detail.setDiscountCode(9); }, R"("discountCode":1204)",
                 R"("discountCode":9)" },
        Change { "Object", [](DocumentImpactDetail& detail) { detail.setDiscountObject(EDiscountObject::cheque); },
                 R"("discountObject":1)", R"("discountObject":0)" },
        Change { "Type", [](DocumentImpactDetail& detail) { detail.setDiscountType(EDiscountType::sum); },
                 R"("discountType":1)", R"("discountType":2)" },
        Change { "Mode", [](DocumentImpactDetail& detail) { detail.setDiscountMode(EDiscountMode::loyalty); },
                 R"("discountMode":6)", R"("discountMode":2)" },
        Change { "Rate", [](DocumentImpactDetail& detail) { detail.setDiscountRate(3); }, R"("discountRate":12.5)",
                 R"("discountRate":3)" },
        Change { "Source", [](DocumentImpactDetail& detail) { detail.setImpactSource(EImpactSource::host); },
                 R"("impactSource":2)", R"("impactSource":0)" },
        Change { "Moment", [](DocumentImpactDetail& detail) { detail.setDateTime(moment.addSecs(1)); },
                 R"("dateTime":"2024-03-05T10:20:30.400)", R"("dateTime":"2024-03-05T10:20:31.400)" },
        Change { "MinPrice", [](DocumentImpactDetail& detail) { detail.setMinPriceIgnored(false); },
                 R"("minPriceIgnored":true)", R"("minPriceIgnored":false)" },
        Change { "Card", [](DocumentImpactDetail& detail) { detail.setCardIndex(43); }, R"("cardIndex":42)",
                 R"("cardIndex":43)" }),
    [](const auto& row) { return std::string(row.param.name); });

TEST(StoredImpacts, CopyThatIsChangedLeavesTheOtherAsItWas)
{
    const DetailPtr first = fullDetail();
    auto document = QSharedPointer<till::Cheque>::create();
    document->impacts.append(QSharedPointer<DiscountImpact>::create(first));
    const QByteArray before = till::toJson(document);

    DocumentImpactDetail copy = *first;
    copy.setDiscountSum(1.0);
    document->impacts.append(QSharedPointer<DiscountImpact>::create(DetailPtr::create(copy)));
    const QByteArray after = till::toJson(document);
    EXPECT_EQ(before.count(R"("discountSum":100.5)"), 1);
    EXPECT_EQ(after.count(R"("discountSum":100.5)"), 1);
    EXPECT_EQ(after.count(R"("discountSum":1,)"), 1);
}
