#pragma once

#include "host/export.h"
#include "host/facilities/singleton.h"
#include "host/framework/basic_loyalty_system.h"

#include <QList>

namespace till {

/// The loyalty systems that have announced themselves. One per process, by `Singleton`. Systems are not owned; each
/// drops out before it ends. [cheque-thread]
class VANTIRO_HOST_API LoyaltyRegistry {
public:
    LoyaltyRegistry();
    ~LoyaltyRegistry();

    /// Adds the system, behind those that are there. True when it is in the registry; false when another system has its
    /// card mode, which tells the till whose a card is.
    [[nodiscard]] bool add(BasicLoyaltySystem* system);
    /// Does nothing for a system that is not in the registry.
    void remove(BasicLoyaltySystem* system);

    /// In the order of their adding.
    [[nodiscard]] QList<BasicLoyaltySystem*> systems() const;
    /// The system of the card mode, null if there is none.
    [[nodiscard]] BasicLoyaltySystem* systemOf(int cardMode) const;

private:
    Q_DISABLE_COPY(LoyaltyRegistry)

    QList<BasicLoyaltySystem*> announced;
};

}

extern template class VANTIRO_HOST_API Singleton<till::LoyaltyRegistry>;
