#pragma once

#include "till/document/cheque_contents.h"

#include <QString>

namespace till {

/// A document of the class `Base`, `AbstractDocument` or one that derives from it, which answers out of its contents.
/// `Base` comes first, so that the document keeps its place as a `QObject`. [cheque-thread]
template <class Base>
class ChequeOver : public Base, public ChequeContents {
public:
    ChequeOver(const ChequeHead& chequeHead, const QString& identity)
        : ChequeContents(chequeHead, identity)
    {
    }

    [[nodiscard]] QDateTime getOpenTime() override
    {
        return head.openTime;
    }

    [[nodiscard]] bool canGoOffline() override
    {
        return head.offlineAllowed;
    }

    [[nodiscard]] bool hasCardRecord(int cardMode) override
    {
        return !card(cardMode).isNull();
    }

    [[nodiscard]] QString getDocumentIdentity() override
    {
        return identity();
    }

    [[nodiscard]] bool hasCoupon(const QSharedPointer<Coupon>& coupon) override
    {
        return !coupon.isNull() && coupons.contains(coupon);
    }

    [[nodiscard]] bool hasCardRecordOfType(int cardType) override
    {
        return hasCardOfType(cardType);
    }

    [[nodiscard]] QSharedPointer<DocumentCardRecord> getCardRecord(int cardMode) override
    {
        return card(cardMode);
    }

    [[nodiscard]] double getSumToPay() override
    {
        return sumForPoints();
    }

    [[nodiscard]] Position getCurrentPosition() override
    {
        return currentPosition();
    }

    [[nodiscard]] QList<DocumentBonusRecord> getBonusRecords() override
    {
        return bonusRecords;
    }

    [[nodiscard]] int getDocumentType() override
    {
        return head.type;
    }

    [[nodiscard]] int getChequeNumber() override
    {
        return head.number;
    }

    [[nodiscard]] int getShiftNumber() override
    {
        return head.shift;
    }

    [[nodiscard]] QDateTime getCloseTime() override
    {
        return head.closeTime;
    }

    [[nodiscard]] double getDocumentSum() override
    {
        return sum();
    }

    [[nodiscard]] QVariant getSourceDocumentId() override
    {
        return head.sourceDocumentId;
    }

    [[nodiscard]] QList<QSharedPointer<GoodsItem>> getGoodsItems() override
    {
        return liveLines();
    }

    [[nodiscard]] QList<QSharedPointer<GoodsItem>> getDeletedGoodsItems() override
    {
        return deletedLines();
    }

    [[nodiscard]] QList<QSharedPointer<MoneyItem>> getMoneyItems() override
    {
        return payments;
    }

    [[nodiscard]] int getPositionCount() override
    {
        return static_cast<int>(liveLines().size());
    }

    [[nodiscard]] QList<QSharedPointer<DocumentImpact>> getDocumentImpacts() override
    {
        return impacts;
    }

    [[nodiscard]] bool isDeferred() override
    {
        return head.deferred;
    }

    void setPluginDataJson(const QString& json) override
    {
        pluginDataJson = json;
    }

    [[nodiscard]] QString getPluginDataJson() override
    {
        return pluginDataJson;
    }
};

}
