#include "host/facilities/serder.h"
#include "tests/store/round_trip.h"
#include "till/document/plugin_values.h"

#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString group = u"Vantiro"_s;

/// What a document holds under a key when it is read, once this was stored there.
[[nodiscard]] QVariant readValue(const QVariant& value)
{
    auto document = QSharedPointer<till::Cheque>::create();
    document->setValue(group, u"key"_s, value);
    return roundTrip(document)->getValue(group, u"key"_s, u"(default)"_s);
}

[[nodiscard]] std::string typeOf(const QVariant& value)
{
    return value.typeName() == nullptr ? "(none)" : value.typeName();
}

} // namespace

TEST(StoredPluginValues, TruthStaysTruth)
{
    EXPECT_EQ(readValue(true), QVariant(true));
    EXPECT_EQ(readValue(false), QVariant(false));
    EXPECT_EQ(typeOf(readValue(false)), "bool");
}

TEST(StoredPluginValues, IntegerBecomesALongOneOfTheSameValue)
{
    EXPECT_EQ(typeOf(readValue(-7)), "qlonglong");
    EXPECT_EQ(readValue(-7).toInt(), -7);
    EXPECT_EQ(readValue(Q_INT64_C(9223372036854775807)).toLongLong(), Q_INT64_C(9223372036854775807));
}

TEST(StoredPluginValues, FractionStaysADouble)
{
    EXPECT_EQ(typeOf(readValue(100.5)), "double");
    EXPECT_EQ(readValue(100.5).toDouble(), 100.5);
    EXPECT_EQ(readValue(0.1 + 0.2).toDouble(), 0.1 + 0.2);
}

TEST(StoredPluginValues, DoubleWithoutAFractionIsReadAsTheSameDouble)
{
    EXPECT_EQ(readValue(100.0).toDouble(), 100.0);
    EXPECT_EQ(readValue(0.0).toDouble(), 0.0);
    EXPECT_TRUE(readValue(0.0).isValid());
}

TEST(StoredPluginValues, TextStaysText)
{
    EXPECT_EQ(readValue(u"0042"_s), QVariant(u"0042"_s));
    EXPECT_EQ(readValue(u"true"_s), QVariant(u"true"_s));
    EXPECT_EQ(typeOf(readValue(QString())), "QString");
}

TEST(StoredPluginValues, NothingStaysNothingAndIsNoDefault)
{
    EXPECT_TRUE(readValue(QVariant()).isNull());
    EXPECT_EQ(readValue(QVariant()).toString().toStdString(), "");
}

TEST(StoredPluginValues, MomentBecomesTextThatReadsAsTheMoment)
{
    const QDateTime moment(QDate(2024, 3, 5), QTime(14, 7, 9, 123));

    EXPECT_EQ(readValue(moment), QVariant(u"2024-03-05T14:07:09.123"_s));
    EXPECT_EQ(readValue(moment).toDateTime(), moment);
}

TEST(StoredPluginValues, ListOfTextsReadsAsOne)
{
    const QVariant read = readValue(QVariant::fromValue(QList<QString> { u"0042"_s, u""_s, u"Ж"_s }));

    EXPECT_EQ(typeOf(read), "QVariantList");
    EXPECT_EQ(read.toStringList().join(u'|').toStdString(), "0042||Ж");
}

TEST(StoredPluginValues, EmptyListAndEmptyMapStayEmpty)
{
    EXPECT_EQ(typeOf(readValue(QVariantList())), "QVariantList");
    EXPECT_TRUE(readValue(QVariantList()).toList().isEmpty());
    EXPECT_EQ(typeOf(readValue(QVariantMap())), "QVariantMap");
    EXPECT_TRUE(readValue(QVariantMap()).toMap().isEmpty());
}

TEST(StoredPluginValues, ListsAndMapsComeBackWithinEachOther)
{
    const QVariantMap inner { { u"a"_s, 1 }, { u"Ж"_s, QVariantList { true, u"x"_s } } };
    const QVariantList list { inner, QVariant(), 2.5, QVariantList { QVariantList { u"deep"_s } } };
    const QVariantList read = readValue(list).toList();

    ASSERT_EQ(read.size(), 4);
    EXPECT_EQ(read[0].toMap().value(u"a"_s).toInt(), 1);
    EXPECT_EQ(read[0].toMap().value(u"Ж"_s).toList(), (QVariantList { true, u"x"_s }));
    EXPECT_TRUE(read[1].isNull());
    EXPECT_EQ(read[2], QVariant(2.5));
    EXPECT_EQ(read[3].toList().constFirst().toList().constFirst(), QVariant(u"deep"_s));
}

TEST(StoredPluginValues, CouponsByPositionReadAsTheyWereWritten)
{
    const QVariantMap coupons { { u"3"_s, QVariant::fromValue(QList<QString> { u"11"_s, u"12"_s }) },
                                { u"10"_s, QVariant::fromValue(QList<QString>()) } };
    const QVariantMap read = readValue(coupons).toMap();

    EXPECT_EQ(read.keys().join(u' ').toStdString(), "10 3");
    EXPECT_EQ(read.value(u"3"_s).toStringList().join(u' ').toStdString(), "11 12");
    EXPECT_TRUE(read.value(u"10"_s).toStringList().isEmpty());
}

TEST(StoredPluginValues, JsonObjectReadsAsItsMap)
{
    const QJsonObject check { { u"chequeNo"_s, u"1042"_s }, { u"shiftNo"_s, u"17"_s } };
    const QVariantMap read = readValue(check).toMap();

    EXPECT_EQ(QJsonObject::fromVariantMap(read), check);
}

TEST(StoredPluginValues, ListOfImpactsWithAnEmptyPlaceComesBack)
{
    DiscountImpact impact;
    impact.getTotals()->setDiscountSum(60.25);
    impact.addDetailForPosition(2, 60.25);
    QVariant form;
    serder::default_serder_type<DiscountImpact>::strategy.serialize(&form, &impact, DocumentImpact::staticMetaObject);
    const QVariantList read = readValue(QVariantList { form, QVariant() }).toList();

    ASSERT_EQ(read.size(), 2);
    DiscountImpact restored;
    serder::default_serder_type<DiscountImpact>::strategy.deserialize(&restored, read[0],
                                                                      DocumentImpact::staticMetaObject);
    EXPECT_EQ(restored.getTotals()->getDiscountSum(), 60.25);
    ASSERT_TRUE(restored.getDetails().contains(2));
    EXPECT_EQ(restored.getDetails().value(2)->getDiscountSum(), 60.25);
    EXPECT_TRUE(read[1].isNull());
}

TEST(StoredPluginValues, GroupsAreApart)
{
    auto document = QSharedPointer<till::Cheque>::create();
    document->setValue(u"Vantiro"_s, u"key"_s, 1);
    document->setValue(u"Другой: \"плагин\""_s, u"key"_s, 2);
    document->setValue(QString(), QString(), 3);
    const auto read = roundTrip(document);

    EXPECT_EQ(till::pluginValuesOf(*read).size(), 3);
    EXPECT_EQ(read->getValue(u"Vantiro"_s, u"key"_s, {}).toInt(), 1);
    EXPECT_EQ(read->getValue(u"Другой: \"плагин\""_s, u"key"_s, {}).toInt(), 2);
    EXPECT_EQ(read->getValue(QString(), QString(), {}).toInt(), 3);
}
