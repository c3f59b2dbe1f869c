#include "host/framework/basic_loyalty_system.h"

#include "till/framework/action_dispatcher.h"
#include "till/framework/loyalty_registry.h"

using Registry = Singleton<till::LoyaltyRegistry>;

struct BasicLoyaltySystem::Private {
    int options = 0; // a bit each
    double roundPrecisionForSpend = 0.0;
};

BasicLoyaltySystem::BasicLoyaltySystem()
    : d(std::make_unique<Private>())
{
}

BasicLoyaltySystem::~BasicLoyaltySystem()
{
    // Not by deregisterLoyaltySystem: a system that ends without ever having announced itself must not make a registry.
    if (Registry::instance != nullptr) {
        Registry::instance->remove(this);
    }
}

bool BasicLoyaltySystem::init()
{
    return registerLoyaltySystem();
}

void BasicLoyaltySystem::deinit()
{
    deregisterLoyaltySystem();
    // The object may outlive this call by the rest of the process, and must not be asked anything any more.
    Singleton<till::ActionDispatcher>::get()->remove(this);
}

bool BasicLoyaltySystem::registerLoyaltySystem()
{
    return Registry::get()->add(this);
}

void BasicLoyaltySystem::deregisterLoyaltySystem()
{
    Registry::get()->remove(this);
}

void BasicLoyaltySystem::setOption(LoyaltySystemOption option, bool on)
{
    const int bit = static_cast<int>(option);
    d->options = on ? d->options | bit : d->options & ~bit;
}

bool BasicLoyaltySystem::checkOption(LoyaltySystemOption option) const
{
    return (d->options & static_cast<int>(option)) != 0;
}

double BasicLoyaltySystem::getRoundPrecisionForSpend() const
{
    return d->roundPrecisionForSpend;
}

void BasicLoyaltySystem::setRoundPrecisionForSpend(double step)
{
    d->roundPrecisionForSpend = step;
}

int BasicLoyaltySystem::getCardMode() const
{
    return cardMode;
}

QSharedPointer<DocumentCardRecord> BasicLoyaltySystem::getCard() const
{
    return document.isNull() ? nullptr : document->getCardRecord(cardMode);
}

bool BasicLoyaltySystem::hasCard() const
{
    return !getCard().isNull();
}

tr::Tr BasicLoyaltySystem::getLastErrorString() const
{
    return lastError;
}

void BasicLoyaltySystem::clearLastErrorString()
{
    lastError = tr::Tr();
}

QList<QString> BasicLoyaltySystem::getMessagesToCashier()
{
    return messagesToCashier;
}

QList<QString> BasicLoyaltySystem::getMessagesToClient()
{
    return messagesToClient;
}

QString BasicLoyaltySystem::pointsMessage() const
{
    return QStringLiteral("Доступно баллов для списания: %1").arg(QString::number(pointsForSpend, 'f', 2));
}
