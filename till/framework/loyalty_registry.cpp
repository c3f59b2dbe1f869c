#include "till/framework/loyalty_registry.h"

#include "till/framework/contract.h"

#include <algorithm>

template class Singleton<till::LoyaltyRegistry>;

namespace till {

LoyaltyRegistry::LoyaltyRegistry() = default;
LoyaltyRegistry::~LoyaltyRegistry() = default;

bool LoyaltyRegistry::add(BasicLoyaltySystem* system)
{
    requireChequeThread(Side::plugin, "BasicLoyaltySystem::registerLoyaltySystem");
    if (BasicLoyaltySystem* const present = systemOf(system->getCardMode())) {
        return present == system;
    }
    announced.append(system);
    return true;
}

void LoyaltyRegistry::remove(BasicLoyaltySystem* system)
{
    announced.removeAll(system);
}

QList<BasicLoyaltySystem*> LoyaltyRegistry::systems() const
{
    return announced;
}

BasicLoyaltySystem* LoyaltyRegistry::systemOf(int cardMode) const
{
    const auto found = std::find_if(announced.cbegin(), announced.cend(), [cardMode](const BasicLoyaltySystem* system) {
        return system->getCardMode() == cardMode;
    });
    return found == announced.cend() ? nullptr : *found;
}

}
