#include "host/framework/basic_loyalty_system.h"

// The hooks of a system that serves none of them. One that asks it to do something for the cheque succeeds when leaving
// it undone hurts nobody, and fails when the customer or the till would count on it.

bool BasicLoyaltySystem::identifyByCard(QSharedPointer<DocumentCardRecord>&, ECardNumberType)
{
    return false;
}

bool BasicLoyaltySystem::getCardInfo(QSharedPointer<DocumentCardRecord>&, ECardNumberType)
{
    return false;
}

CardNumberResult BasicLoyaltySystem::getCardNumber(const loyalty::CardNumberInputData&)
{
    return { false, QString(),
             tr::Tr(QStringLiteral("loyaltyCardSearchNotSupported"),
                    QStringLiteral("Поиск карты по введенным данным не поддерживается")) };
}

ECardNumberType BasicLoyaltySystem::getCardNumberTypeToAddCardInSubtotal() const
{
    return {};
}

bool BasicLoyaltySystem::cardReplace()
{
    return false;
}

void BasicLoyaltySystem::fillCardOwnerInfo() { }

bool BasicLoyaltySystem::request(const QSharedPointer<AbstractDocument>&)
{
    return true;
}

bool BasicLoyaltySystem::requestCommit(bool)
{
    return true;
}

bool BasicLoyaltySystem::registerCheck()
{
    return true;
}

bool BasicLoyaltySystem::payCheck()
{
    return true;
}

bool BasicLoyaltySystem::takeForCustomer()
{
    return false;
}

QList<QString> BasicLoyaltySystem::getMessagesToClientDisplay()
{
    return {};
}

QList<QString> BasicLoyaltySystem::getSlips()
{
    return {};
}

bool BasicLoyaltySystem::isAllowInternalDiscount() const
{
    return true;
}

bool BasicLoyaltySystem::couponBelongsToSystem(ECoupon::Type) const
{
    return false;
}

bool BasicLoyaltySystem::spendPoints()
{
    return false;
}

bool BasicLoyaltySystem::hasPointsForSpend()
{
    return false;
}

double BasicLoyaltySystem::getPointsForSpend(const QSharedPointer<AbstractDocument>&)
{
    return 0.0;
}

bool BasicLoyaltySystem::isAllowPartialPointsSpend()
{
    return false;
}

bool BasicLoyaltySystem::requestInputPointsForSpendByLoyalty()
{
    return false;
}

bool BasicLoyaltySystem::useDiscOnChangeWithBonusPayment()
{
    return false;
}

void BasicLoyaltySystem::recalculatePointsForSpend(const QSharedPointer<AbstractDocument>&) { }

QMap<int, double> BasicLoyaltySystem::getBonusImpactsLimits(const QSharedPointer<AbstractDocument>&) const
{
    return {};
}

bool BasicLoyaltySystem::hasPointsForEarn()
{
    return false;
}

double BasicLoyaltySystem::getPointsForEarn()
{
    return 0.0;
}

void BasicLoyaltySystem::recalculatePointsForEarn() { }

double BasicLoyaltySystem::calculatePointsForEarnByQualifier(const QString&, int)
{
    return 0.0;
}

void BasicLoyaltySystem::removeEarnByValutCode(int) { }

void BasicLoyaltySystem::removeEarnAfterClose() { }

void BasicLoyaltySystem::recalculateAllPoints(const QSharedPointer<AbstractDocument>&) { }

QList<DocumentBonusRecord> BasicLoyaltySystem::getBonusRecords()
{
    return {};
}

void BasicLoyaltySystem::distributeBonusRecord(const QSharedPointer<AbstractDocument>&, const DocumentBonusRecord&) { }

void BasicLoyaltySystem::beforePutoutCheck() { }
