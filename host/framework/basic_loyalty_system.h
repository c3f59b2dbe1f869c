#pragma once

#include "host/document/abstract_document.h"
#include "host/document/document_impact.h"
#include "host/export.h"
#include "host/facilities/tr.h"
#include "host/framework/basic_plugin.h"
#include "host/framework/card_number.h"
#include "host/framework/document_watcher.h"
#include "host/framework/loyalty_system_option.h"

#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

#include <memory>

/// The loyalty hooks. The host calls them; a loyalty plug-in overrides those that it serves, and the rest does what a
/// till without that ability does. All run on the thread of cheque operations, one at a time. A hook that asks a server
/// blocks, for each question it asks, for the number of servers times the timeout at the longest. A hook that can fail
/// says so by its result and leaves the text for the cashier in `getLastErrorString`. Sums are in roubles.
///
/// The order of bases, fields and operations is binary contract. [cheque-thread]
class VANTIRO_HOST_API BasicLoyaltySystem : public DocumentWatcher, virtual public BasicPlugin {
public:
    BasicLoyaltySystem();
    ~BasicLoyaltySystem() override;

    /// A card has been presented. True: it belongs to this system, and its balance is on the record. False: it does
    /// not, or the look-up failed (then there is a last error). [blocks]
    virtual bool identifyByCard(QSharedPointer<DocumentCardRecord>& card, ECardNumberType type);
    /// Asks what the open cheque earns; afterwards `getDiscountImpacts` and the messages are those of this cheque.
    /// True also when the document is offline. [blocks]
    virtual bool request(const QSharedPointer<AbstractDocument>& document);
    virtual bool requestCommit(bool online);
    /// The cheque closes: what was spent and earned becomes final, at the server or in the queue. Ends the loyalty
    /// state of the cheque whatever the result. [blocks]
    virtual bool commit(const QSharedPointer<AbstractDocument>& document);
    /// Undoes the spending of points. False: not undone, and may be tried again. [blocks]
    virtual bool rollback(const QSharedPointer<AbstractDocument>& document);
    /// Drops the loyalty state of the cheque without telling the server.
    virtual bool cancel();
    /// Pays with the points settled before; afterwards `getBonusImpactsForSpend` holds one record more. [blocks]
    virtual bool spendPoints();
    virtual void recalculatePointsForEarn();
    [[nodiscard]] virtual double calculatePointsForEarnByQualifier(const QString& qualifier, int position);
    virtual void removeEarnByValutCode(int valutCode);
    virtual void removeEarnAfterClose();
    virtual void recalculateAllPoints(const QSharedPointer<AbstractDocument>& document);
    /// Whether points can pay on this cheque now. [blocks]
    virtual bool hasPointsForSpend();
    /// How much points can pay: the offer cut down to the cheque, the balance and the step. Needs a card on the
    /// document.
    virtual double getPointsForSpend(const QSharedPointer<AbstractDocument>& document);
    [[nodiscard]] virtual bool hasPointsForEarn();
    [[nodiscard]] virtual double getPointsForEarn();
    [[nodiscard]] virtual bool hasBonusImpacts() const;
    /// The discounts of the last `request`, for the host to put on the document.
    [[nodiscard]] virtual QList<QSharedPointer<DiscountImpact>> getDiscountImpacts();
    /// The points spent on this cheque.
    [[nodiscard]] virtual QList<QSharedPointer<BonusImpact>> getBonusImpactsForSpend();
    [[nodiscard]] virtual QList<DocumentBonusRecord> getBonusRecords();
    [[nodiscard]] virtual QList<QString> getMessagesToCashier();
    [[nodiscard]] virtual QList<QString> getMessagesToClient();
    [[nodiscard]] virtual QList<QString> getMessagesToClientDisplay();
    /// Why the last hook failed; the empty text when nothing has failed since `clearLastErrorString`.
    [[nodiscard]] virtual tr::Tr getLastErrorString() const;
    virtual void clearLastErrorString();
    virtual bool takeForCustomer();
    /// Refreshes the balance of the card. [blocks]
    virtual bool getCardInfo(QSharedPointer<DocumentCardRecord>& card, ECardNumberType type);
    /// After a crash: takes the state of the cheque from the document that `setDocument` has named.
    virtual bool restoreLoyaltySystem();
    /// Whether less than the whole amount may be spent.
    [[nodiscard]] virtual bool isAllowPartialPointsSpend();
    /// The amount that the cashier has chosen; `spendPoints` sends it. Not checked.
    virtual void setPointsForSpend(const QSharedPointer<AbstractDocument>& document, double points);
    /// The step by which spendable points are counted, 0 if none is set.
    [[nodiscard]] virtual double getRoundPrecisionForSpend() const;
    virtual void setRoundPrecisionForSpend(double step);
    [[nodiscard]] virtual bool isAllowInternalDiscount() const;
    [[nodiscard]] virtual bool useDiscOnChangeWithBonusPayment();
    virtual void fillCardOwnerInfo();
    /// Turns what the cashier entered into a card number; may show a form. [blocks: the server and the cashier]
    virtual CardNumberResult getCardNumber(const loyalty::CardNumberInputData& input);
    [[nodiscard]] virtual int getCardMode() const;
    [[nodiscard]] virtual QList<QString> getSlips();
    virtual bool cardReplace();
    [[nodiscard]] virtual ECardNumberType getCardNumberTypeToAddCardInSubtotal() const;
    [[nodiscard]] virtual bool checkOption(LoyaltySystemOption option) const;
    [[nodiscard]] virtual bool requestInputPointsForSpendByLoyalty();
    virtual bool registerCheck();
    /// Whether coupons of the type are this system's.
    [[nodiscard]] virtual bool couponBelongsToSystem(ECoupon::Type type) const;
    /// The cheque is over, closed or cancelled: forgets everything of it.
    virtual void clearAfterClose();
    virtual bool payCheck();
    virtual void recalculatePointsForSpend(const QSharedPointer<AbstractDocument>& document);
    /// Before and after the document is set aside, and when it has come back.
    virtual void beforePutoutCheck();
    virtual void afterPutoutCheck();
    virtual void revealCheck();
    bool init() override;
    void deinit() override;
    virtual void distributeBonusRecord(const QSharedPointer<AbstractDocument>& document,
                                       const DocumentBonusRecord& record);
    [[nodiscard]] virtual QMap<int, double> getBonusImpactsLimits(
        const QSharedPointer<AbstractDocument>& document) const;
    /// The card of this system on the current document, null if there is none.
    [[nodiscard]] virtual QSharedPointer<DocumentCardRecord> getCard() const;
    [[nodiscard]] virtual bool hasCard() const;
    /// Announces the system to the host; after it the host calls the hooks.
    virtual bool registerLoyaltySystem();
    virtual void deregisterLoyaltySystem();
    virtual void setOption(LoyaltySystemOption option, bool on);
    /// The key under which the two operations below keep values on the document's behalf.
    [[nodiscard]] virtual QString getStoreDataKey() const;
    /// Keep a value with the current document under the system's own store key, so that it survives a restart with the
    /// document; durable after the next save. Without a document nothing is stored, and the default is read.
    virtual void setPluginData(const QString& key, const QVariant& value) const;
    virtual void setPluginData(const QSharedPointer<PluginData>& data, const QString& key,
                               const QVariant& value) const;
    [[nodiscard]] virtual QVariant getPluginData(const QString& key, const QVariant& defaultValue) const;
    [[nodiscard]] virtual QVariant getPluginData(const QSharedPointer<PluginData>& data, const QString& key) const;
    /// Drops what `setPluginData` has kept with the current document.
    virtual void clearData() const;
    /// Empties the per-cheque state: impacts, points to spend, messages.
    virtual void clearLoyaltyData();

    /// The points to spend, for the log.
    [[nodiscard]] QString pointsMessage() const;

protected:
    QList<QSharedPointer<BonusImpact>> bonusImpacts; // the points spent on this cheque
    QList<QSharedPointer<DiscountImpact>> discountImpacts; // the discounts of the last request
    double pointsForSpend = 0.0; // the amount that can be spent
    QList<QString> messagesToCashier;
    QList<QString> messagesToClient;
    tr::Tr lastError;
    int cardMode = 0; // the mode of this system's cards

private:
    Q_DISABLE_COPY(BasicLoyaltySystem)

    struct Private;
    std::unique_ptr<Private> d;
};

Q_DECLARE_INTERFACE(BasicLoyaltySystem, "LoyaltySystem")
