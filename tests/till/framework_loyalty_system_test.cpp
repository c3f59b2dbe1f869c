#include "host/framework/basic_loyalty_system.h"
#include "till/document/card.h"
#include "till/document/cheque.h"

#include <gtest/gtest.h>

namespace {

// A system of card mode 7 that opens its fields.
class OpenSystem : public BasicLoyaltySystem {
public:
    OpenSystem()
    {
        cardMode = 7;
    }

    using BasicLoyaltySystem::bonusImpacts;
    using BasicLoyaltySystem::discountImpacts;
    using BasicLoyaltySystem::document;
    using BasicLoyaltySystem::lastError;
    using BasicLoyaltySystem::messagesToCashier;
    using BasicLoyaltySystem::messagesToClient;
    using BasicLoyaltySystem::pointsForSpend;

    void fill()
    {
        bonusImpacts.append(QSharedPointer<BonusImpact>::create());
        discountImpacts.append(QSharedPointer<DiscountImpact>::create());
        pointsForSpend = 12.5;
        messagesToCashier = { QStringLiteral("кассиру") };
        messagesToClient = { QStringLiteral("покупателю") };
        lastError = tr::Tr(QStringLiteral("ошибка"));
    }

    void expectFilled()
    {
        EXPECT_EQ(bonusImpacts.size(), 1);
        EXPECT_EQ(discountImpacts.size(), 1);
        EXPECT_EQ(pointsForSpend, 12.5);
    }

    void expectEmpty()
    {
        EXPECT_TRUE(bonusImpacts.isEmpty());
        EXPECT_TRUE(discountImpacts.isEmpty());
        EXPECT_EQ(pointsForSpend, 0.0);
        EXPECT_TRUE(messagesToCashier.isEmpty());
        EXPECT_TRUE(messagesToClient.isEmpty());
        EXPECT_EQ(lastError.ru(), QStringLiteral("ошибка"));
    }
};

class LoyaltySystem : public ::testing::Test {
protected:
    OpenSystem system;
    QSharedPointer<till::Cheque> cheque = QSharedPointer<till::Cheque>::create();
    QSharedPointer<DocumentCardRecord> card = QSharedPointer<till::Card>::create(till::CardFields());
};

TEST_F(LoyaltySystem, SystemWithoutAbilitiesEarnsAndSpendsNothing)
{
    EXPECT_FALSE(system.identifyByCard(card, ECardNumberType()));
    EXPECT_FALSE(system.getCardInfo(card, ECardNumberType()));
    EXPECT_FALSE(system.spendPoints());
    EXPECT_FALSE(system.hasPointsForSpend());
    EXPECT_EQ(system.getPointsForSpend(cheque), 0.0);
    EXPECT_FALSE(system.isAllowPartialPointsSpend());
    EXPECT_FALSE(system.requestInputPointsForSpendByLoyalty());
    EXPECT_FALSE(system.useDiscOnChangeWithBonusPayment());
    EXPECT_TRUE(system.getBonusImpactsLimits(cheque).isEmpty());
    EXPECT_FALSE(system.hasPointsForEarn());
    EXPECT_EQ(system.getPointsForEarn(), 0.0);
    EXPECT_EQ(system.calculatePointsForEarnByQualifier(QStringLiteral("any"), 1), 0.0);
    EXPECT_TRUE(system.getBonusRecords().isEmpty());
    EXPECT_TRUE(system.getMessagesToClientDisplay().isEmpty());
    EXPECT_TRUE(system.getSlips().isEmpty());
    EXPECT_FALSE(system.cardReplace());
    EXPECT_FALSE(system.takeForCustomer());
    EXPECT_FALSE(system.couponBelongsToSystem(ECoupon::loyaltySystem));
    EXPECT_EQ(system.getCardNumberTypeToAddCardInSubtotal(), ECardNumberType());
}

TEST_F(LoyaltySystem, SystemWithoutAbilitiesDoesNotStandInTheWayOfACheque)
{
    EXPECT_TRUE(system.request(cheque));
    EXPECT_TRUE(system.requestCommit(true));
    EXPECT_TRUE(system.registerCheck());
    EXPECT_TRUE(system.payCheck());
    EXPECT_TRUE(system.commit(cheque));
    EXPECT_TRUE(system.rollback(cheque));
    EXPECT_TRUE(system.cancel());
    EXPECT_TRUE(system.restoreLoyaltySystem());
    EXPECT_TRUE(system.isAllowInternalDiscount());
}

TEST_F(LoyaltySystem, RecalculationsChangeNothing)
{
    system.fill();
    system.recalculatePointsForEarn();
    system.recalculateAllPoints(cheque);
    system.recalculatePointsForSpend(cheque);
    system.removeEarnByValutCode(1);
    system.removeEarnAfterClose();
    system.distributeBonusRecord(cheque, {});
    system.fillCardOwnerInfo();
    system.beforePutoutCheck();
    system.revealCheck();

    system.expectFilled();
}

TEST_F(LoyaltySystem, LookUpOfACardIsNotSupported)
{
    const CardNumberResult result
        = system.getCardNumber({ loyalty::CardNumberInputData::phone, QStringLiteral("+79990000001") });

    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.cardNumber, QString());
    EXPECT_EQ(result.error.ru(), QStringLiteral("Поиск карты по введенным данным не поддерживается"));
}

TEST_F(LoyaltySystem, GivesOutItsFields)
{
    EXPECT_FALSE(system.hasBonusImpacts());
    system.fill();

    EXPECT_TRUE(system.hasBonusImpacts());
    EXPECT_EQ(system.getBonusImpactsForSpend(), system.bonusImpacts);
    EXPECT_EQ(system.getDiscountImpacts(), system.discountImpacts);
    EXPECT_EQ(system.getMessagesToCashier(), QStringList { QStringLiteral("кассиру") });
    EXPECT_EQ(system.getMessagesToClient(), QStringList { QStringLiteral("покупателю") });
    EXPECT_EQ(system.getCardMode(), 7);
}

TEST_F(LoyaltySystem, LastErrorStaysUntilItIsCleared)
{
    system.fill();
    EXPECT_EQ(system.getLastErrorString().ru(), QStringLiteral("ошибка"));

    system.clearLastErrorString();
    EXPECT_EQ(system.getLastErrorString().ru(), QString());
}

TEST_F(LoyaltySystem, ClearingEmptiesTheStateOfTheChequeOnly)
{
    system.fill();
    system.setDocument(cheque);
    system.clearLoyaltyData();

    system.expectEmpty();
    EXPECT_EQ(system.document, cheque);
}

TEST_F(LoyaltySystem, EndOfTheChequeClears)
{
    const QList<std::function<void()>> ends {
        [this] { system.commit(cheque); },    [this] { system.rollback(cheque); },   [this] { system.cancel(); },
        [this] { system.clearAfterClose(); }, [this] { system.afterPutoutCheck(); },
    };
    for (const std::function<void()>& end : ends) {
        system.fill();
        end();
        system.expectEmpty();
    }
}

TEST_F(LoyaltySystem, ChequeSetAsideIsForgottenAsAClosedOneIs)
{
    struct Remembering : BasicLoyaltySystem {
        void clearAfterClose() override
        {
            ++cleared;
        }

        int cleared = 0;
    } remembering;
    remembering.afterPutoutCheck();

    EXPECT_EQ(remembering.cleared, 1);
}

TEST_F(LoyaltySystem, ChequeThatComesBackRestoresItsState)
{
    struct Restoring : BasicLoyaltySystem {
        bool restoreLoyaltySystem() override
        {
            ++restored;
            return true;
        }

        int restored = 0;
    } restoring;
    restoring.revealCheck();

    EXPECT_EQ(restoring.restored, 1);
}

TEST_F(LoyaltySystem, ChosenPointsAreKept)
{
    system.setPointsForSpend(cheque, 1000000.5);

    EXPECT_EQ(system.pointsForSpend, 1000000.5);
}

TEST_F(LoyaltySystem, PointsMessageShowsTwoDecimals)
{
    system.pointsForSpend = 1234.5;
    EXPECT_EQ(system.pointsMessage(), QStringLiteral("Доступно баллов для списания: 1234.50"));

    system.pointsForSpend = 0.0;
    EXPECT_EQ(system.pointsMessage(), QStringLiteral("Доступно баллов для списания: 0.00"));
}

TEST_F(LoyaltySystem, StepForPointsIsSetByTheHost)
{
    EXPECT_EQ(system.getRoundPrecisionForSpend(), 0.0);

    system.setRoundPrecisionForSpend(0.5);
    EXPECT_EQ(system.getRoundPrecisionForSpend(), 0.5);
}

TEST_F(LoyaltySystem, OptionsAreSwitchedEachForItself)
{
    const auto option = [](int number) { return static_cast<LoyaltySystemOption>(number); };
    for (const int number : { 4, 256, 2048, 131072 }) {
        system.setOption(option(number), true);
    }
    system.setOption(option(256), false);

    EXPECT_TRUE(system.checkOption(option(4)));
    EXPECT_FALSE(system.checkOption(option(256)));
    EXPECT_TRUE(system.checkOption(option(2048)));
    EXPECT_TRUE(system.checkOption(option(131072)));
    EXPECT_FALSE(system.checkOption(option(1)));
    EXPECT_FALSE(system.checkOption(option(0)));
}

TEST_F(LoyaltySystem, CardIsThatOfItsModeOnTheCurrentDocument)
{
    EXPECT_TRUE(system.getCard().isNull());
    EXPECT_FALSE(system.hasCard());

    system.setDocument(cheque);
    cheque->setCard(8, 3, QSharedPointer<till::Card>::create(till::CardFields()));
    EXPECT_TRUE(system.getCard().isNull());

    cheque->setCard(7, 3, card);
    EXPECT_EQ(system.getCard(), card);
    EXPECT_TRUE(system.hasCard());

    system.setDocument(nullptr);
    EXPECT_TRUE(system.getCard().isNull());
}

TEST_F(LoyaltySystem, KeepsDataWithTheCurrentDocument)
{
    system.setDocument(cheque);
    system.setPluginData(QStringLiteral("deferredCheck"), QVariant(5));

    EXPECT_EQ(system.getPluginData(QStringLiteral("deferredCheck"), QVariant()), QVariant(5));
    EXPECT_EQ(system.getPluginData(QStringLiteral("other"), QVariant(1)), QVariant(1));
    EXPECT_EQ(cheque->getValue(QStringLiteral("LoyaltySystem/7"), QStringLiteral("deferredCheck"), QVariant()),
              QVariant(5));
    EXPECT_EQ(system.getStoreDataKey(), QStringLiteral("LoyaltySystem/7"));
}

TEST_F(LoyaltySystem, WithoutADocumentNothingIsKept)
{
    system.setPluginData(QStringLiteral("deferredCheck"), QVariant(5));
    system.clearData();
    system.setDocument(cheque);

    EXPECT_EQ(system.getPluginData(QStringLiteral("deferredCheck"), QVariant(1)), QVariant(1));
    system.setDocument(nullptr);
    EXPECT_EQ(system.getPluginData(QStringLiteral("deferredCheck"), QVariant(1)), QVariant(1));
}

TEST_F(LoyaltySystem, KeepsDataWithAGivenObject)
{
    const auto data = QSharedPointer<PluginData>::create();
    system.setPluginData(data, QStringLiteral("key"), QVariant(5));

    EXPECT_EQ(system.getPluginData(data, QStringLiteral("key")), QVariant(5));
    EXPECT_FALSE(system.getPluginData(data, QStringLiteral("other")).isValid());
    EXPECT_FALSE(system.getPluginData(QSharedPointer<PluginData>(), QStringLiteral("key")).isValid());
}

TEST_F(LoyaltySystem, ClearDataDropsItsOwnDataOnly)
{
    system.setDocument(cheque);
    system.setPluginData(QStringLiteral("deferredCheck"), QVariant(5));
    cheque->setValue(QStringLiteral("Vantiro"), QStringLiteral("offlineMode"), QVariant(true));
    system.clearData();

    EXPECT_EQ(system.getPluginData(QStringLiteral("deferredCheck"), QVariant(1)), QVariant(1));
    EXPECT_EQ(cheque->getValue(QStringLiteral("Vantiro"), QStringLiteral("offlineMode"), QVariant()), QVariant(true));
}

}
