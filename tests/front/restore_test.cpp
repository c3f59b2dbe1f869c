#include "tests/front/restarted_till.h"
#include "till/store/document_json.h"

#include <QLocale>

using namespace Qt::StringLiterals;

// The loyalty state of a cheque after a stop of the till.

namespace {

[[nodiscard]] QString number(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

[[nodiscard]] QString text(const DocumentImpactDetail& detail)
{
    const QStringList fields {
        u'\'' + detail.getDiscountName() + u"' sum "_s + number(detail.getDiscountSum()),
        u"code "_s + QString::number(detail.getDiscountCode()),
        u"position "_s + QString::number(detail.getPosition()),
        u"object "_s + QString::number(detail.getDiscountObject()),
        u"type "_s + QString::number(detail.getDiscountType()),
        u"mode "_s + QString::number(detail.getDiscountMode()),
        u"rate "_s + (detail.getDiscountRate().isValid() ? number(detail.getDiscountRate().toDouble()) : u"none"_s),
        u"source "_s + QString::number(detail.getImpactSource()),
        u"at "_s + detail.getDateTime().toString(Qt::ISODateWithMs),
        detail.isMinPriceIgnored() ? u"minimum price ignored"_s : u"minimum price kept"_s,
        u"index "_s + QString::number(detail.getCardIndex().toInt()),
    };
    return fields.join(u", "_s);
}

template <class Impact>
[[nodiscard]] std::string texts(const QList<QSharedPointer<Impact>>& impacts)
{
    QStringList lines;
    for (const QSharedPointer<Impact>& impact : impacts) {
        if (impact.isNull()) {
            lines.append(u"null"_s);
            continue;
        }
        lines.append(text(*impact->getTotals()));
        const auto details = impact->getDetails();
        for (auto it = details.cbegin(); it != details.cend(); ++it) {
            lines.append(u"  %1: "_s.arg(it.key()) + text(**it));
        }
    }
    return lines.join(u'\n').toStdString();
}

class Restore : public RestartedTill { };

class RestoreWithoutCard : public RestartedTill {
protected:
    RestoreWithoutCard()
        : RestartedTill(TillAtWork::saleWithoutCard())
    {
    }
};

} // namespace

TEST_P(Restore, DiscountsComeBackWithAllTheirFields)
{
    till->card()->fields.codeInternal = 77;
    till->requestWell("50.25");

    restart();
    restore();

    EXPECT_EQ(
        texts(till->plugin.discountImpacts),
        "'Скидка Vantiro на позицию' sum 17.98, code 77, position 1, object 1, type 1, mode 2, rate 10, source 2, "
        "at 2024-03-05T14:08:00.000, minimum price kept, index 77");
}

TEST_P(Restore, SpentPointsComeBackWithAllTheirFields)
{
    till->card()->fields.codeInternal = 77;
    till->requestWell("50.25");
    till->spendWell(30.5);
    ASSERT_EQ(till->plugin.bonusImpacts.size(), 1);
    const QString made = till->plugin.bonusImpacts[0]->getTotals()->getDateTime().toString(Qt::ISODateWithMs);

    restart();
    restore();

    EXPECT_EQ(
        texts(till->plugin.bonusImpacts),
        u"'Баллы Vantiro' sum 30.5, code 0, position 0, object 0, type 5, mode 2, rate 30.5, source 2, at %1, "
        "minimum price kept, index 77\n"
        "  1: 'Баллы Vantiro' sum 30.5, code 0, position 1, object 1, type 5, mode 2, rate 30.5, source 2, at %1, "
        "minimum price kept, index 77"_s.arg(made)
            .toStdString());
}

TEST_P(Restore, PointsComeBackAndGoToTheCard)
{
    till->requestWell("50.25");

    restart();
    restore();

    EXPECT_EQ(till->plugin.pointsForSpend, 50.25);
    EXPECT_EQ(till->card()->fields.pointsForSpend, 50.25);
}

TEST_P(RestoreWithoutCard, PointsComeBackAllTheSame)
{
    till->plugin.pointsForSpend = 50.25;
    till->plugin.updatePluginData(till->document(), false);

    restart();
    restore();

    EXPECT_EQ(till->plugin.pointsForSpend, 50.25);
}

TEST_P(Restore, OfflineFlagComesBackWithoutAStepOfItsOwn)
{
    till->plugin.updatePluginData(till->document(), true);

    restart();

    EXPECT_TRUE(till->plugin.isOfflineMode(till->document()));
    EXPECT_TRUE(till->plugin.request(till->document()));
    EXPECT_EQ(till->log(), "info: Запрос к бонусной системе Vantiro");
    EXPECT_EQ(till->told(), "");
}

TEST_P(Restore, AsksForNothingAndStoresNothing)
{
    till->requestWell();
    restart();

    EXPECT_TRUE(till->plugin.restoreLoyaltySystem());

    EXPECT_EQ(till->told(), "");
    EXPECT_EQ(till->log(), "");
    EXPECT_EQ(till->lastError(), ": ");
}

TEST_P(Restore, MessagesAndErrorsAreGone)
{
    till->requestWell();
    till->server.fault("Отказано");
    EXPECT_FALSE(till->plugin.request(till->document()));
    EXPECT_FALSE(till->server.take("GetDiscounts").isEmpty());
    EXPECT_EQ(till->lastError(), ": Отказано");

    restart();
    restore();

    EXPECT_EQ(till->plugin.getMessagesToCashier().join(u'|').toStdString(), "");
    EXPECT_EQ(till->plugin.getMessagesToClient().join(u'|').toStdString(), "");
    EXPECT_EQ(till->lastError(), ": ");
}

TEST_P(Restore, CancelledDocumentIsSentOnceMoreAsNoneIsRemembered)
{
    till->server.answerText("Accrual", u""_s);
    till->tell(TillAtWork::event(12, till->document()));
    EXPECT_FALSE(till->server.take("Accrual").isEmpty());

    restart();
    restore();
    till->server.answerText("Accrual", u""_s);
    till->tell(TillAtWork::event(22, till->document()));

    EXPECT_TRUE(till->server.take("Accrual").contains(u"Status=\"Canceled\""_s));
}

TEST_P(Restore, NothingStoredGivesNoPointsNoImpactsAndNoCoupons)
{
    restart();

    EXPECT_TRUE(till->plugin.restoreLoyaltySystem());

    EXPECT_EQ(till->plugin.pointsForSpend, 0.0);
    EXPECT_EQ(texts(till->plugin.discountImpacts), "");
    EXPECT_EQ(texts(till->plugin.bonusImpacts), "");
    EXPECT_EQ(couponsInMemory(), " | ");
}

TEST_P(Restore, StateInMemoryGivesWayToWhatIsStored)
{
    add(u"vantiro-c1"_s);
    add(u"vantiro-1"_s);
    till->requestWell("50.25");
    till->plugin.bonusImpacts = { bonusImpact({ { 1, 30.0 } }) };
    // Stored by nobody: the open cheque is a new one.
    till->open(TillAtWork::saleWithCard().identity(u"2"_s).build());
    till->card()->fields.pointsForSpend = 50.25;

    restore();

    EXPECT_EQ(till->plugin.pointsForSpend, 0.0);
    EXPECT_EQ(till->card()->fields.pointsForSpend, 0.0);
    EXPECT_EQ(texts(till->plugin.discountImpacts), "");
    EXPECT_EQ(texts(till->plugin.bonusImpacts), "");
    EXPECT_EQ(couponsInMemory(), " | ");
}

TEST_P(Restore, NullImpactKeepsItsPlace)
{
    till->plugin.discountImpacts = { nullptr, discountImpact(Detail(record_name::positionDiscount).on(1).sum(1.0)) };
    till->plugin.bonusImpacts = { bonusImpact({ { 1, 30.0 } }), nullptr };
    till->plugin.updatePluginData(till->document(), false);

    restart();
    restore();

    ASSERT_EQ(till->plugin.discountImpacts.size(), 2);
    EXPECT_TRUE(till->plugin.discountImpacts[0].isNull());
    EXPECT_EQ(till->plugin.discountImpacts[1]->getTotals()->getDiscountSum(), 1.0);
    ASSERT_EQ(till->plugin.bonusImpacts.size(), 2);
    EXPECT_EQ(till->plugin.bonusImpacts[0]->getTotals()->getDiscountSum(), 30.0);
    EXPECT_TRUE(till->plugin.bonusImpacts[1].isNull());
}

TEST_P(Restore, LoyaltyDataClearedWithoutASaveComesBack)
{
    till->requestWell("50.25");
    till->plugin.clearLoyaltyData();

    restart();
    restore();

    EXPECT_EQ(till->plugin.pointsForSpend, 50.25);
    EXPECT_EQ(till->plugin.discountImpacts.size(), 1);
}

TEST_P(Restore, SpendingThatWasUndoneComesBackUntilTheNextUpdate)
{
    till->requestWell("50.25");
    till->spendWell(30.5);
    till->server.answer(R"(<CancelSubtractBonusResponse xmlns="http://tempuri.org/"/>)");
    EXPECT_TRUE(till->plugin.rollback(till->document()));
    EXPECT_FALSE(till->server.take("CancelSubtractBonus").isEmpty());

    restart();
    restore();
    EXPECT_EQ(till->plugin.bonusImpacts.size(), 1) << "a host that knows better drops it";

    EXPECT_TRUE(till->plugin.cancel());
    EXPECT_EQ(till->plugin.bonusImpacts.size(), 0);
    EXPECT_EQ(till->told(), "");
}

TEST_P(Restore, AmountThatWasChosenAndNotSpentIsTheHostsToKeep)
{
    till->requestWell("50.25");
    till->plugin.setPointsForSpend(till->document(), 12.0);

    restart();
    restore();

    EXPECT_EQ(till->plugin.pointsForSpend, 50.25);
}

TEST_P(Restore, SettingOfTheSetAsideChequeHasNoSay)
{
    till->requestWell("50.25");

    for (const bool setting : { true, false }) {
        restart({ { u"Vantiro:restoreLoyaltyState"_s, setting } });
        EXPECT_TRUE(till->plugin.restoreLoyaltySystem());
        EXPECT_EQ(till->plugin.pointsForSpend, 50.25) << setting;
        EXPECT_EQ(till->plugin.discountImpacts.size(), 1) << setting;
    }
}

TEST_P(Restore, ValuesOfAnotherKindGiveAnEmptyState)
{
    till->store(u"pointsForSpend"_s, u"many"_s);
    till->store(u"discountImpacts"_s, 5);
    till->store(u"bonusImpacts"_s, true);
    till->store(u"positionCoupons"_s, QVariantList { 1, 2 });
    till->store(u"checkCoupons"_s, QVariantMap { { u"a"_s, 1 } });

    restart();

    EXPECT_TRUE(till->plugin.restoreLoyaltySystem());
    EXPECT_EQ(till->plugin.pointsForSpend, 0.0);
    EXPECT_EQ(texts(till->plugin.discountImpacts), "");
    EXPECT_EQ(texts(till->plugin.bonusImpacts), "");
    EXPECT_EQ(couponsInMemory(), " | ");
}

TEST_P(Restore, StateThatCameBackIsStoredAsItWas)
{
    till->requestWell("50.25");
    till->spendWell(30.5);
    add(u"vantiro-c1"_s);
    add(u"vantiro-1"_s);
    const QByteArray before = till::toJson(till->document());

    restart();
    restore();
    till->plugin.updatePluginData(till->document(), false);
    till->plugin.updateCouponsPluginData(till->document());

    EXPECT_EQ(till::toJson(till->document()).toStdString(), before.toStdString());
}

TEST_P(Restore, ChequeGoesOnToItsCloseWithThePointsSpentBefore)
{
    till->requestWell("50.00");
    till->spendWell(30.0);
    add(u"vantiro-c1"_s);
    add(u"vantiro-1"_s);

    restart();
    restore();
    till->server.answerText("Accrual", u""_s);
    EXPECT_TRUE(till->plugin.commit(till->document()));

    const QString cheque = till->server.take("Accrual");
    EXPECT_TRUE(cheque.contains(u"BonusDiscount=\"30.00\""_s));
    EXPECT_TRUE(cheque.contains(u"SubtractAmount=\"30.00\""_s));
    EXPECT_TRUE(cheque.contains(u"CouponNo=\"vantiro-c1\""_s));
    EXPECT_TRUE(cheque.contains(u"CouponNo=\"vantiro-1\""_s));
}

INSTANTIATE_TEST_SUITE_P(Roads, Restore, testing::Values(Road::memory, Road::store), roadName);
INSTANTIATE_TEST_SUITE_P(Roads, RestoreWithoutCard, testing::Values(Road::memory, Road::store), roadName);
