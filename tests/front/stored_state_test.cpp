#include "host/facilities/exceptions.h"
#include "host/facilities/serder.h"
#include "tests/front/till_at_work.h"
#include "till/document/cheque_contents.h"
#include "till/document/plugin_values.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// What the plug-in writes into the document, so that it survives a stop of the till.

namespace {

/// The keys that are stored with the document, group by group: "Vantiro: a b; Other: c".
[[nodiscard]] std::string keysOf(const QSharedPointer<AbstractDocument>& document)
{
    QStringList groups;
    const auto& values = till::pluginValuesOf(*document);
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        groups.append(it.key() + u": "_s + it->keys().join(u' '));
    }
    return groups.join(u"; "_s).toStdString();
}

template <class Impact>
[[nodiscard]] QVariant formOf(const QSharedPointer<Impact>& impact)
{
    QVariant form;
    serder::default_serder_type<Impact>::strategy.serialize(&form, impact.data(), DocumentImpact::staticMetaObject);
    return form;
}

[[nodiscard]] QSharedPointer<DiscountImpact> someDiscount(double sum)
{
    return discountImpact(Detail(record_name::positionDiscount).on(1).code(77).sum(sum));
}

} // namespace

TEST(StoredState, PointsAreStoredAsADouble)
{
    TillAtWork till;
    till.plugin.pointsForSpend = 50;

    till.plugin.updatePluginData(till.document(), false);

    const QVariant points = till.stored(u"pointsForSpend"_s);
    EXPECT_EQ(std::string(points.typeName()), "double");
    EXPECT_EQ(points.toDouble(), 50.0);
    EXPECT_EQ(till.told(), "save");
    EXPECT_EQ(till.log(), "");
}

TEST(StoredState, DiscountsAreAListOfTheirStoredForms)
{
    TillAtWork till;
    till.plugin.discountImpacts = { someDiscount(17.98), someDiscount(2.5) };

    till.plugin.updatePluginData(till.document(), false);

    const QVariant stored = till.stored(u"discountImpacts"_s);
    EXPECT_EQ(std::string(stored.typeName()), "QVariantList");
    ASSERT_EQ(stored.toList().size(), 2);
    EXPECT_EQ(stored.toList()[0], formOf(till.plugin.discountImpacts[0]));
    EXPECT_EQ(stored.toList()[1], formOf(till.plugin.discountImpacts[1]));
    EXPECT_NE(stored.toList()[0], stored.toList()[1]);
}

TEST(StoredState, SpentPointsAreAListOfTheirStoredForms)
{
    TillAtWork till;
    till.plugin.bonusImpacts = { bonusImpact({ { 1, 30.0 } }), bonusImpact({ { 1, 5.0 } }) };

    till.plugin.updatePluginData(till.document(), false);

    const QVariant stored = till.stored(u"bonusImpacts"_s);
    EXPECT_EQ(std::string(stored.typeName()), "QVariantList");
    ASSERT_EQ(stored.toList().size(), 2);
    EXPECT_EQ(stored.toList()[0], formOf(till.plugin.bonusImpacts[0]));
    EXPECT_EQ(stored.toList()[1], formOf(till.plugin.bonusImpacts[1]));
    EXPECT_NE(stored.toList()[0], stored.toList()[1]);
}

TEST(StoredState, NullImpactIsAnInvalidEntryAndTheListKeepsItsLength)
{
    TillAtWork till;
    till.plugin.discountImpacts = { nullptr, someDiscount(17.98) };
    till.plugin.bonusImpacts = { bonusImpact({ { 1, 30.0 } }), nullptr };

    till.plugin.updatePluginData(till.document(), false);

    const QVariantList discounts = till.stored(u"discountImpacts"_s).toList();
    ASSERT_EQ(discounts.size(), 2);
    EXPECT_FALSE(discounts[0].isValid());
    EXPECT_TRUE(discounts[1].isValid());
    const QVariantList bonuses = till.stored(u"bonusImpacts"_s).toList();
    ASSERT_EQ(bonuses.size(), 2);
    EXPECT_TRUE(bonuses[0].isValid());
    EXPECT_FALSE(bonuses[1].isValid());
}

TEST(StoredState, EmptyListsAreStoredAsEmptyLists)
{
    TillAtWork till;

    till.plugin.updatePluginData(till.document(), false);

    for (const QString& key : { u"discountImpacts"_s, u"bonusImpacts"_s }) {
        EXPECT_EQ(std::string(till.stored(key).typeName()), "QVariantList") << key.toStdString();
        EXPECT_TRUE(till.stored(key).toList().isEmpty()) << key.toStdString();
    }
}

TEST(StoredState, OfflineFlagIsWrittenAsGiven)
{
    TillAtWork till;

    till.plugin.updatePluginData(till.document(), true);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_TRUE(till.plugin.isOfflineMode(till.document()));

    till.plugin.updatePluginData(till.document(), false);
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(false));
    EXPECT_FALSE(till.plugin.isOfflineMode(till.document()));
}

TEST(StoredState, CardGetsThePointsToSpend)
{
    TillAtWork till;
    till.plugin.pointsForSpend = 50.25;

    till.plugin.updatePluginData(till.document(), false);

    EXPECT_EQ(till.card()->fields.pointsForSpend, 50.25);
}

TEST(StoredState, PointsAreStoredWithoutACardToo)
{
    TillAtWork till(TillAtWork::saleWithoutCard());
    till.plugin.pointsForSpend = 50.25;

    till.plugin.updatePluginData(till.document(), false);

    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.25));
    EXPECT_EQ(till.told(), "save");
}

TEST(StoredState, GoesToTheDocumentGivenAndThePointsToTheCardOfTheOpenOne)
{
    TillAtWork till;
    till.plugin.pointsForSpend = 50.25;
    const auto other = TillAtWork::saleWithCard().identity(u"2"_s).build();

    till.plugin.updatePluginData(other, true);
    till.plugin.updateCouponsPluginData(other);

    EXPECT_EQ(keysOf(till.document()), "");
    EXPECT_EQ(keysOf(other),
              "Vantiro: bonusImpacts checkCoupons discountImpacts offlineMode pointsForSpend positionCoupons");
    EXPECT_EQ(till.card()->fields.pointsForSpend, 50.25);
    EXPECT_EQ(other->card(7).dynamicCast<till::Card>()->fields.pointsForSpend, 0.0);
}

TEST(StoredState, LoyaltyUpdateLeavesTheCouponKeysOut)
{
    TillAtWork till;
    till.store(u"checkCoupons"_s, QVariant(QStringList { u"of an earlier run"_s }));

    till.plugin.updatePluginData(till.document(), false);

    EXPECT_EQ(keysOf(till.document()), "Vantiro: bonusImpacts checkCoupons discountImpacts offlineMode pointsForSpend");
    EXPECT_EQ(till.stored(u"checkCoupons"_s).toStringList().join(u'|').toStdString(), "of an earlier run");
}

TEST(StoredState, CouponUpdateLeavesTheLoyaltyKeysOut)
{
    TillAtWork till;
    till.plugin.pointsForSpend = 50.25;

    till.plugin.updateCouponsPluginData(till.document());

    EXPECT_EQ(keysOf(till.document()), "Vantiro: checkCoupons positionCoupons");
    EXPECT_EQ(till.card()->fields.pointsForSpend, 0.0);
    EXPECT_EQ(till.told(), "save");
    EXPECT_EQ(till.log(), "");
}

TEST(StoredState, CouponsOfPositionsAreKeyedByTheNumberAsText)
{
    TillAtWork till(TillAtWork::saleWithCard().line(Goods(2, u"7"_s, 10.0)).line(Goods(10, u"8"_s, 10.0)),
                    { { u"Vantiro:checkCouponPrefix"_s, u"c-"_s } });
    for (const int position : { 10, 2 }) {
        till.contents().selectPosition(position);
        for (const QString& number : { u"vantiro-b"_s, u"vantiro-a"_s }) {
            till.server.answerText("IsCouponValid", u"true"_s);
            ASSERT_TRUE(till.addCoupon(number));
            EXPECT_TRUE(till.server.take("IsCouponValid").contains(number));
        }
    }

    const QVariant stored = till.stored(u"positionCoupons"_s);
    EXPECT_EQ(std::string(stored.typeName()), "QVariantMap");
    const QVariantMap byPosition = stored.toMap();
    EXPECT_EQ(byPosition.keys().join(u'|').toStdString(), "10|2");
    for (const QString& key : { u"10"_s, u"2"_s }) {
        EXPECT_EQ(byPosition[key].metaType(), QMetaType::fromType<QList<QString>>());
        EXPECT_EQ(byPosition[key].toStringList().join(u'|').toStdString(), "vantiro-b|vantiro-a")
            << "in order of entry";
    }
    EXPECT_EQ(till.stored(u"checkCoupons"_s).metaType(), QMetaType::fromType<QList<QString>>());
    EXPECT_TRUE(till.stored(u"checkCoupons"_s).toStringList().isEmpty());
}

TEST(StoredState, CouponsOfTheChequeAreAListOfTexts)
{
    TillAtWork till;
    for (const QString& number : { u"vantiro-2"_s, u"vantiro-1"_s }) {
        till.server.answerText("IsCouponValid", u"true"_s);
        ASSERT_TRUE(till.addCoupon(number));
        EXPECT_TRUE(till.server.take("IsCouponValid").contains(number));
    }

    EXPECT_EQ(till.stored(u"checkCoupons"_s).metaType(), QMetaType::fromType<QList<QString>>());
    EXPECT_EQ(till.stored(u"checkCoupons"_s).toStringList().join(u'|').toStdString(), "vantiro-2|vantiro-1");
    EXPECT_TRUE(till.stored(u"positionCoupons"_s).toMap().isEmpty());
}

TEST(StoredState, EachUpdateSavesAlsoWhenNothingHasChanged)
{
    TillAtWork till;

    till.plugin.updatePluginData(till.document(), false);
    till.plugin.updatePluginData(till.document(), false);
    till.plugin.updateCouponsPluginData(till.document());
    till.plugin.updateCouponsPluginData(till.document());

    EXPECT_EQ(till.told(), "save\nsave\nsave\nsave");
}

TEST(StoredState, FailedSavePassesToTheCallerAfterAllHasBeenWritten)
{
    TillAtWork till;
    till.plugin.pointsForSpend = 50.25;
    till.failSaves(u"диск полон"_s);

    EXPECT_THROW(till.plugin.updatePluginData(till.document(), true), BasicException);
    EXPECT_THROW(till.plugin.updateCouponsPluginData(till.document()), BasicException);

    EXPECT_EQ(keysOf(till.document()),
              "Vantiro: bonusImpacts checkCoupons discountImpacts offlineMode pointsForSpend positionCoupons");
    EXPECT_EQ(till.stored(u"offlineMode"_s), QVariant(true));
    EXPECT_EQ(till.stored(u"pointsForSpend"_s), QVariant(50.25));
    EXPECT_EQ(till.card()->fields.pointsForSpend, 50.25);
    EXPECT_EQ(till.log(), "");
}

TEST(StoredState, MessagesErrorsAndTheCancelledDocumentAreNotStored)
{
    TillAtWork till;
    till.requestWell();
    till.server.answerText("IsCouponValid", u"true"_s);
    ASSERT_TRUE(till.addCoupon(u"vantiro-1"_s));
    till.server.fault("Отказано");
    EXPECT_FALSE(till.plugin.request(till.document()));
    till.server.answerText("Accrual", u""_s);
    till.tell(TillAtWork::event(12, till.document()));
    till.plugin.updatePluginData(till.document(), false);

    EXPECT_EQ(keysOf(till.document()),
              "Vantiro: bonusImpacts checkCoupons discountImpacts offlineMode pointsForSpend positionCoupons");
    for (const QByteArray action : { "IsCouponValid", "GetDiscounts", "Accrual" }) {
        EXPECT_FALSE(till.server.take(action).isEmpty());
    }
}
