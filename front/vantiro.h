#pragma once

#include "bonus/vantiro_bonus_interface.h"
#include "host/facilities/logger.h"
#include "host/framework/action.h"
#include "host/framework/base_activity_listener.h"
#include "host/framework/basic_loyalty_system.h"

#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>

/// The plug-in: the one object that the host creates and calls, and its loyalty system of card mode 7. What each hook
/// means to the host stands with `BasicLoyaltySystem`; here stands what this system adds.
///
/// Everything runs on one thread, that of cheque operations: hooks, events and triggers share the state of the open
/// cheque without a lock. No exception of the service leaves a hook. The order of bases, fields and virtual operations
/// is binary contract. [cheque-thread]
class Vantiro : public BaseActivityListener, public BasicLoyaltySystem {
    Q_OBJECT
    Q_INTERFACES(BasicLoyaltySystem BasicPlugin)
    Q_PLUGIN_METADATA(IID "Vantiro" FILE "vantiro.json")

public:
    /// Reads nothing and connects to nothing.
    Vantiro();
    ~Vantiro() override;

public slots:
    void handleEvent(const Event& event) override;

public:
    /// Reads the configuration, subscribes to the events, adds the triggers and registers the system; the result is
    /// that of the registration. Not protected against a second call.
    bool init() override;

    bool identifyByCard(QSharedPointer<DocumentCardRecord>& card, ECardNumberType type) override;
    bool request(const QSharedPointer<AbstractDocument>& document) override;
    bool commit(const QSharedPointer<AbstractDocument>& document) override;
    bool rollback(const QSharedPointer<AbstractDocument>& document) override;
    bool cancel() override;
    bool spendPoints() override;
    bool hasPointsForSpend() override;
    double getPointsForSpend(const QSharedPointer<AbstractDocument>& document) override;
    void setPointsForSpend(const QSharedPointer<AbstractDocument>& document, double points) override;
    bool getCardInfo(QSharedPointer<DocumentCardRecord>& card, ECardNumberType type) override;
    bool isAllowPartialPointsSpend() override;
    CardNumberResult getCardNumber(const loyalty::CardNumberInputData& input) override;
    bool restoreLoyaltySystem() override;
    void clearAfterClose() override;
    bool couponBelongsToSystem(ECoupon::Type type) const override;
    void beforePutoutCheck() override;
    void revealCheck() override;
    void clearLoyaltyData() override;

    /// Forgets the coupons in memory; what is stored with the document stays until the next update.
    virtual void clearCoupons();
    /// A return: posted now, or queued when no server can be reached. False with a last error when the server refused.
    virtual bool backOrBackBySale(const QSharedPointer<AbstractDocument>& document);
    /// Stores the loyalty state and the offline flag with the document, and saves it. [blocks: until it is on disk]
    virtual void updatePluginData(const QSharedPointer<AbstractDocument>& document, bool offline) const;
    /// Stores the coupons with the document, and saves it. [blocks: until it is on disk]
    virtual void updateCouponsPluginData(const QSharedPointer<AbstractDocument>& document) const;
    /// Before the host adds a coupon: recognises this system's own by its number and asks the server. Refuses the
    /// action after reporting an error. [blocks]
    virtual EContext::Result addCoupon(const control::Action& action);
    /// Before the host deletes a coupon: forgets its number.
    virtual EContext::Result deleteCoupons(const control::Action& action);
    /// Tells the till that the coupon cannot be added, and why.
    virtual void dispatchCouponAddError(const QString& couponNumber, const tr::Tr& text) const;
    /// Whether the server is not to be asked about this document any more. The flag lives with the document.
    [[nodiscard]] virtual bool isOfflineMode(const QSharedPointer<AbstractDocument>& document) const;
    /// Whether the number is that of a coupon on the whole cheque, or on a position: by mask where there is one, else
    /// by prefix. A number may be both.
    [[nodiscard]] virtual bool isCheckCouponNumber(const QString& number) const;
    [[nodiscard]] virtual bool isPositionCouponNumber(const QString& number) const;

    /// After the host has added a coupon: keeps the number of one that `addCoupon` has marked as this system's.
    EContext::Result appendCoupon(const control::Action& action);
    /// Gives the host a task that pings the servers, when the action names this plug-in.
    EContext::Result checkConnection(const control::Action& action) const;
    /// Takes the waiting slips and prints them.
    void printReports() const;

private:
    /// Logs why a hook fails and keeps the text for the host; the result is the hook's: false.
    bool fail(const tr::Tr& reason);
    /// The same for a lost connection, with a remark behind the reason; the document is offline from here on.
    bool goOffline(const QSharedPointer<AbstractDocument>& document, const tr::Tr& reason, const tr::Tr& remark);
    void printReport() const; // the one waiting slip, if there is one
    void sendClosedDocument(const QSharedPointer<AbstractDocument>& document);
    void sendCancelledDocument(const Event& event);
    void removePositionCoupons(const Event& event);

    QSharedPointer<VantiroBonusInterface> interface; // never replaced
    QString checkCouponPrefix;
    QString checkCouponMask;
    QString positionCouponPrefix;
    QString positionCouponMask;
    QList<QString> checkCoupons; // coupons of the whole cheque, in order of entry
    QMap<int, QList<QString>> positionCoupons; // by position number; a key exists only while its list has an entry
    QString lastCanceledDocumentId; // the cancelled document last sent; events come twice
    bool restoreLoyaltyState = false;
    Log4Qt::Logger* logger; // not owned
};
