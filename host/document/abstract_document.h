#pragma once

#include "host/document/coupon.h"
#include "host/document/document_bonus_record.h"
#include "host/document/document_card_record.h"
#include "host/document/document_impact.h"
#include "host/document/goods_item.h"
#include "host/document/money_item.h"
#include "host/document/plugin_data.h"
#include "host/document/position.h"
#include "host/export.h"

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

/// The host's cheque. All reads are cheap, and agree with each other for as long as a hook runs: plug-ins call them
/// again and again within one operation. Lists come by value; plug-ins keep none beyond the call. Money is in roubles,
/// not rounded; times are in the time zone of the till. None of the operations throws or blocks. The order of the
/// operations is binary contract. [cheque-thread]
class VANTIRO_HOST_API AbstractDocument : public QObject, public PluginData {
    Q_OBJECT

public:
    AbstractDocument();
    ~AbstractDocument() override;

    /// When the document was opened.
    [[nodiscard]] virtual QDateTime getOpenTime() = 0;
    /// True when a lost connection, met while a card is identified, may put the document into offline mode.
    [[nodiscard]] virtual bool canGoOffline() = 0;
    /// Whether the document carries a card of the card mode.
    [[nodiscard]] virtual bool hasCardRecord(int cardMode) = 0;
    /// The document's own identity: the same text at every call, for the life of the document and across restarts, and
    /// never used for another document. The server knows the cheque by what is derived from it.
    [[nodiscard]] virtual QString getDocumentIdentity() = 0;
    /// Whether the cheque holds the coupon.
    [[nodiscard]] virtual bool hasCoupon(const QSharedPointer<Coupon>& coupon) = 0;
    /// Whether the document carries a card of the host's card type.
    [[nodiscard]] virtual bool hasCardRecordOfType(int cardType) = 0;
    /// The card of the card mode, null if there is none.
    [[nodiscard]] virtual QSharedPointer<DocumentCardRecord> getCardRecord(int cardMode) = 0;
    /// The most that points may pay on the cheque now.
    [[nodiscard]] virtual double getSumToPay() = 0;
    /// The position that a new coupon attaches to.
    [[nodiscard]] virtual Position getCurrentPosition() = 0;
    /// The points that the host itself has booked on the document.
    [[nodiscard]] virtual QList<DocumentBonusRecord> getBonusRecords() = 0;
    /// A value of `EDocumentType`, or any other number.
    [[nodiscard]] virtual int getDocumentType() = 0;
    [[nodiscard]] virtual int getChequeNumber() = 0;
    [[nodiscard]] virtual int getShiftNumber() = 0;
    /// When the document was closed; invalid while it is open.
    [[nodiscard]] virtual QDateTime getCloseTime() = 0;
    /// The cheque's sum as it stands, discounts taken off.
    [[nodiscard]] virtual double getDocumentSum() = 0;
    /// For a return, the key by which `DocumentsDao` finds the sale; null if the document has none.
    [[nodiscard]] virtual QVariant getSourceDocumentId() = 0;
    /// The live lines, in cheque order.
    [[nodiscard]] virtual QList<QSharedPointer<GoodsItem>> getGoodsItems() = 0;
    /// The lines taken off the cheque; all of them, when none is left live.
    [[nodiscard]] virtual QList<QSharedPointer<GoodsItem>> getDeletedGoodsItems() = 0;
    [[nodiscard]] virtual QList<QSharedPointer<MoneyItem>> getMoneyItems() = 0;
    /// The number of live lines; 0 or less when none is left.
    [[nodiscard]] virtual int getPositionCount() = 0;
    /// Every discount and bonus record that the document carries at present, of all sources.
    [[nodiscard]] virtual QList<QSharedPointer<DocumentImpact>> getDocumentImpacts() = 0;
    /// True for a document that was set aside and is being brought back.
    [[nodiscard]] virtual bool isDeferred() = 0;
    /// Stores the text that `getPluginDataJson` gives; durable after the next `SaveToFileLogic::save`.
    virtual void setPluginDataJson(const QString& json) = 0;
    /// The text of a JSON object with one key per plug-in; empty when nothing was stored.
    [[nodiscard]] virtual QString getPluginDataJson() = 0;

private:
    Q_DISABLE_COPY(AbstractDocument)
};

Q_DECLARE_METATYPE(QSharedPointer<AbstractDocument>)
