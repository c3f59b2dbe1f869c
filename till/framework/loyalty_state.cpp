#include "host/framework/basic_loyalty_system.h"
#include "till/document/plugin_values.h"

// The loyalty state of the cheque: in the fields while the cheque is open, and with the document for when it comes
// back.

bool BasicLoyaltySystem::hasBonusImpacts() const
{
    return !bonusImpacts.isEmpty();
}

QList<QSharedPointer<BonusImpact>> BasicLoyaltySystem::getBonusImpactsForSpend()
{
    return bonusImpacts;
}

QList<QSharedPointer<DiscountImpact>> BasicLoyaltySystem::getDiscountImpacts()
{
    return discountImpacts;
}

void BasicLoyaltySystem::setPointsForSpend(const QSharedPointer<AbstractDocument>&, double points)
{
    pointsForSpend = points;
}

void BasicLoyaltySystem::clearLoyaltyData()
{
    bonusImpacts.clear();
    discountImpacts.clear();
    pointsForSpend = 0.0;
    messagesToCashier.clear();
    messagesToClient.clear();
}

bool BasicLoyaltySystem::commit(const QSharedPointer<AbstractDocument>&)
{
    clearLoyaltyData();
    return true;
}

bool BasicLoyaltySystem::rollback(const QSharedPointer<AbstractDocument>&)
{
    clearLoyaltyData();
    return true;
}

bool BasicLoyaltySystem::cancel()
{
    clearLoyaltyData();
    return true;
}

void BasicLoyaltySystem::clearAfterClose()
{
    clearLoyaltyData();
}

void BasicLoyaltySystem::afterPutoutCheck()
{
    // The next cheque opens while this one waits. Whatever stayed in memory, down to the number that the server knows
    // this one by, would pass to the next.
    clearAfterClose();
}

void BasicLoyaltySystem::revealCheck()
{
    restoreLoyaltySystem();
}

bool BasicLoyaltySystem::restoreLoyaltySystem()
{
    return true;
}

QString BasicLoyaltySystem::getStoreDataKey() const
{
    return QStringLiteral("LoyaltySystem/%1").arg(cardMode);
}

void BasicLoyaltySystem::setPluginData(const QString& key, const QVariant& value) const
{
    setPluginData(document, key, value);
}

void BasicLoyaltySystem::setPluginData(const QSharedPointer<PluginData>& data, const QString& key,
                                       const QVariant& value) const
{
    if (!data.isNull()) {
        data->setValue(getStoreDataKey(), key, value);
    }
}

QVariant BasicLoyaltySystem::getPluginData(const QString& key, const QVariant& defaultValue) const
{
    return document.isNull() ? defaultValue : document->getValue(getStoreDataKey(), key, defaultValue);
}

QVariant BasicLoyaltySystem::getPluginData(const QSharedPointer<PluginData>& data, const QString& key) const
{
    return data.isNull() ? QVariant() : data->getValue(getStoreDataKey(), key, QVariant());
}

void BasicLoyaltySystem::clearData() const
{
    if (!document.isNull()) {
        till::pluginValuesOf(*document).remove(getStoreDataKey());
    }
}
