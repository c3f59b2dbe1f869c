#pragma once

#include "host/framework/basic_loyalty_system.h"

#include <QSharedPointer>
#include <QString>

namespace till {

/// The hooks that work on a document, as the checkout calls them: each is told to whoever records the work, with its
/// result. The system is not owned and outlives this. [cheque-thread] [blocks: as the hooks do]
class LoyaltyCalls {
public:
    explicit LoyaltyCalls(BasicLoyaltySystem& calledSystem);

    [[nodiscard]] bool identifyByCard(QSharedPointer<DocumentCardRecord>& card, const QString& number) const;
    [[nodiscard]] CardNumberResult cardNumberOfPhone(const QString& phone) const;
    [[nodiscard]] bool request(const QSharedPointer<AbstractDocument>& document) const;
    [[nodiscard]] bool hasPointsForSpend() const;
    [[nodiscard]] double getPointsForSpend(const QSharedPointer<AbstractDocument>& document) const;
    void setPointsForSpend(const QSharedPointer<AbstractDocument>& document, double points) const;
    [[nodiscard]] bool spendPoints() const;
    [[nodiscard]] bool rollback(const QSharedPointer<AbstractDocument>& document) const;
    [[nodiscard]] bool commit(const QSharedPointer<AbstractDocument>& document) const;
    bool cancel() const;
    void clearAfterClose() const;
    void beforePutoutCheck() const;
    void afterPutoutCheck() const;
    void revealCheck() const;

private:
    BasicLoyaltySystem& system;
};

} // namespace till
