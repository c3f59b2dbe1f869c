#pragma once

#include "host/document/abstract_document.h"

/// A document that another host might have made: whatever is asked for is empty, but the identity. [cheque-thread]
class ForeignDocument : public AbstractDocument {
public:
    [[nodiscard]] QDateTime getOpenTime() override
    {
        return {};
    }

    [[nodiscard]] bool canGoOffline() override
    {
        return {};
    }

    [[nodiscard]] bool hasCardRecord(int /*cardMode*/) override
    {
        return {};
    }

    [[nodiscard]] QString getDocumentIdentity() override
    {
        return QStringLiteral("foreign");
    }

    [[nodiscard]] bool hasCoupon(const QSharedPointer<Coupon>& /*coupon*/) override
    {
        return {};
    }

    [[nodiscard]] bool hasCardRecordOfType(int /*cardType*/) override
    {
        return {};
    }

    [[nodiscard]] QSharedPointer<DocumentCardRecord> getCardRecord(int /*cardMode*/) override
    {
        return {};
    }

    [[nodiscard]] double getSumToPay() override
    {
        return {};
    }

    [[nodiscard]] Position getCurrentPosition() override
    {
        return {};
    }

    [[nodiscard]] QList<DocumentBonusRecord> getBonusRecords() override
    {
        return {};
    }

    [[nodiscard]] int getDocumentType() override
    {
        return {};
    }

    [[nodiscard]] int getChequeNumber() override
    {
        return {};
    }

    [[nodiscard]] int getShiftNumber() override
    {
        return {};
    }

    [[nodiscard]] QDateTime getCloseTime() override
    {
        return {};
    }

    [[nodiscard]] double getDocumentSum() override
    {
        return {};
    }

    [[nodiscard]] QVariant getSourceDocumentId() override
    {
        return {};
    }

    [[nodiscard]] QList<QSharedPointer<GoodsItem>> getGoodsItems() override
    {
        return {};
    }

    [[nodiscard]] QList<QSharedPointer<GoodsItem>> getDeletedGoodsItems() override
    {
        return {};
    }

    [[nodiscard]] QList<QSharedPointer<MoneyItem>> getMoneyItems() override
    {
        return {};
    }

    [[nodiscard]] int getPositionCount() override
    {
        return {};
    }

    [[nodiscard]] QList<QSharedPointer<DocumentImpact>> getDocumentImpacts() override
    {
        return {};
    }

    [[nodiscard]] bool isDeferred() override
    {
        return {};
    }

    void setPluginDataJson(const QString& /*json*/) override { }

    [[nodiscard]] QString getPluginDataJson() override
    {
        return {};
    }
};
