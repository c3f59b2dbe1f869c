#include "host/document/document_impact_detail.h"
#include "till/document/card.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

const QDateTime moment(QDate(2024, 3, 5), QTime(10, 20, 30));

TEST(DocumentImpactDetail, IsEmptyAtFirst)
{
    const DocumentImpactDetail detail;

    EXPECT_EQ(detail.getDiscountName(), QString());
    EXPECT_EQ(detail.getDiscountSum(), 0.0);
    EXPECT_EQ(detail.getPosition(), 0);
    EXPECT_EQ(detail.getDiscountCode(), 0);
    EXPECT_EQ(detail.getDiscountObject(), 0);
    EXPECT_EQ(detail.getDiscountType(), 0);
    EXPECT_EQ(detail.getDiscountMode(), 0);
    EXPECT_FALSE(detail.getDiscountRate().isValid());
    EXPECT_EQ(detail.getImpactSource(), 0);
    EXPECT_FALSE(detail.getDateTime().isValid());
    EXPECT_FALSE(detail.isMinPriceIgnored());
    EXPECT_TRUE(detail.getCardRecord().isNull());
    EXPECT_FALSE(detail.getCardIndex().isValid());
}

// A setter with the getter of its field. The list has every field once.
struct Field {
    const char* name;
    std::function<void(DocumentImpactDetail&)> set;
    std::function<bool(const DocumentImpactDetail&)> isSet;
};

const QList<Field>& fields()
{
    static const auto card = QSharedPointer<till::Card>::create(till::CardFields());
    static const QList<Field> list {
        { "name", [](auto& detail) { detail.setDiscountName(QStringLiteral("Баллы Vantiro")); },
          [](const auto& detail) { return detail.getDiscountName() == QStringLiteral("Баллы Vantiro"); } },
        { "sum", [](auto& detail) { detail.setDiscountSum(12.345); },
          [](const auto& detail) { return detail.getDiscountSum() == 12.345; } },
        { "position", [](auto& detail) { detail.setPosition(3); },
          [](const auto& detail) { return detail.getPosition() == 3; } },
        { "code", [](auto& detail) { detail.setDiscountCode(-7); },
          [](const auto& detail) { return detail.getDiscountCode() == -7; } },
        { "object", [](auto& detail) { detail.setDiscountObject(EDiscountObject::position); },
          [](const auto& detail) { return detail.getDiscountObject() == EDiscountObject::position; } },
        { "type", [](auto& detail) { detail.setDiscountType(EDiscountType::bonus); },
          [](const auto& detail) { return detail.getDiscountType() == EDiscountType::bonus; } },
        { "mode", [](auto& detail) { detail.setDiscountMode(EDiscountMode::tender); },
          [](const auto& detail) { return detail.getDiscountMode() == EDiscountMode::tender; } },
        { "rate", [](auto& detail) { detail.setDiscountRate(QVariant(10.0)); },
          [](const auto& detail) { return detail.getDiscountRate() == QVariant(10.0); } },
        { "source", [](auto& detail) { detail.setImpactSource(EImpactSource::loyaltySystem); },
          [](const auto& detail) { return detail.getImpactSource() == EImpactSource::loyaltySystem; } },
        { "date and time", [](auto& detail) { detail.setDateTime(moment); },
          [](const auto& detail) { return detail.getDateTime() == moment; } },
        { "minimum price ignored", [](auto& detail) { detail.setMinPriceIgnored(true); },
          [](const auto& detail) { return detail.isMinPriceIgnored(); } },
        { "card record", [](auto& detail) { detail.setCardRecord(card); },
          [](const auto& detail) { return detail.getCardRecord() == card; } },
        { "card index", [](auto& detail) { detail.setCardIndex(QVariant(42)); },
          [](const auto& detail) { return detail.getCardIndex() == QVariant(42); } },
    };
    return list;
}

TEST(DocumentImpactDetail, SetterWritesItsFieldOnly)
{
    for (const Field& written : fields()) {
        DocumentImpactDetail detail;
        written.set(detail);
        for (const Field& read : fields()) {
            EXPECT_EQ(read.isSet(detail), read.name == written.name) << written.name << " changes " << read.name;
        }
    }
}

TEST(DocumentImpactDetail, ValueOutsideTheEnumerationPassesThrough)
{
    DocumentImpactDetail detail;
    detail.setDiscountType(static_cast<EDiscountType::type>(77));

    EXPECT_EQ(detail.getDiscountType(), 77);
}

TEST(DocumentImpactDetail, CopyIsIndependent)
{
    DocumentImpactDetail original;
    original.setDiscountSum(5.0);
    DocumentImpactDetail copy(original);
    DocumentImpactDetail assigned;
    assigned = original;

    copy.setDiscountSum(6.0);
    assigned.setDiscountSum(7.0);

    EXPECT_EQ(original.getDiscountSum(), 5.0);
    EXPECT_EQ(copy.getDiscountSum(), 6.0);
    EXPECT_EQ(assigned.getDiscountSum(), 7.0);
}

}
