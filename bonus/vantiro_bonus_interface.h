#pragma once

#include "client/vantiro_interface.h"

/// The operations of the loyalty service that concern a cheque: one operation of the wire each, its request and the
/// reading of its reply. Failures are those of `VantiroInterface`; what an operation throws beyond them stands with it.
/// Nothing is kept between operations but the slip. [cheque-thread]
class VantiroBonusInterface : public VantiroInterface {
    Q_OBJECT

public:
    VantiroBonusInterface();
    ~VantiroBonusInterface() override;

    using VantiroInterface::cancelSubtractBonus;
    using VantiroInterface::getCardDiscountAmount;

    /// The points that the card of the document may spend on it; they are also written on the card record. A fault of
    /// the server is shown to the cashier and counts as nothing to spend. Throws `VantiroException` without a card.
    /// [blocks: the server, and the cashier after a fault]
    [[nodiscard]] virtual double getCardDiscountAmount(const QSharedPointer<AbstractDocument>& document,
                                                       const QList<QSharedPointer<DiscountImpact>>& discountImpacts);
    /// The texts that the server wants shown for the cheque, by device number. [blocks]
    [[nodiscard]] virtual QMap<int, QList<QString>> getMessages(
        const QSharedPointer<AbstractDocument>& document, const QList<QSharedPointer<DiscountImpact>>& discountImpacts,
        const QMap<int, QList<QString>>& positionCoupons, const QList<QString>& checkCoupons);
    /// The discounts that the server grants on the cheque: those of the whole cheque first, then those of positions.
    /// Either all of them or an exception. [blocks]
    [[nodiscard]] virtual QList<QSharedPointer<DiscountImpact>> getDiscounts(
        const QSharedPointer<AbstractDocument>& document, const QMap<int, QList<QString>>& positionCoupons,
        const QList<QString>& checkCoupons);
    /// Takes points from the card of the document on the server. The record holds the amount that was asked for, and
    /// the server's spread over positions. After an exception other than "no card" the server may have taken the
    /// points; no compensation is sent. [blocks]
    [[nodiscard]] virtual QSharedPointer<BonusImpact> subtractBonus(const QSharedPointer<AbstractDocument>& document,
                                                                    double amount);
    /// The close of a sale: posted now, or put into the queue. [blocks]
    virtual void accrual(const QSharedPointer<AbstractDocument>& document,
                         const QList<QSharedPointer<BonusImpact>>& bonusImpacts,
                         const QMap<int, QList<QString>>& positionCoupons, const QList<QString>& coupons);
    virtual void offlineAccrual(const QSharedPointer<AbstractDocument>& document,
                                const QList<QSharedPointer<BonusImpact>>& bonusImpacts,
                                const QMap<int, QList<QString>>& positionCoupons, const QList<QString>& coupons);
    /// The reversal for a return. Throws `VantiroException` when a return by sale does not know its sale. [blocks]
    virtual void accrual(const QSharedPointer<AbstractDocument>& document);
    virtual void offlineAccrual(const QSharedPointer<AbstractDocument>& document);
    /// The print form of one slip; an empty document when `source` holds none.
    [[nodiscard]] virtual QDomDocument transformReport(const QDomNode& source) const;
    /// The print forms of a document of several slips, in order; a slip that cannot be read gives an empty document.
    [[nodiscard]] virtual QList<QDomDocument> transformReports(const QDomDocument& source) const;
    /// Takes the waiting slip, as the text of its print form; empty when none is waiting. The slip is gone afterwards.
    [[nodiscard]] virtual QString getReport();
    /// The same for a document of several slips.
    [[nodiscard]] virtual QList<QString> getReports();
    /// The card of a telephone number, and the code that the customer has been sent. [blocks]
    virtual void getCardNumberAndCodeByPhone(const QString& phone, QString& cardNumber, QString& confirmCode);
    /// Whether the coupon may be used. [blocks]
    [[nodiscard]] virtual bool isCouponValid(const QString& couponNumber);
    /// A closed cheque that no loyalty step has touched. [blocks]
    virtual void accrualAnyCheck(const QSharedPointer<AbstractDocument>& document);
    virtual void offlineAccrualAnyCheck(const QSharedPointer<AbstractDocument>& document) const;
    /// A cancelled cheque. [blocks]
    virtual void accrualCanceledCheck(const QSharedPointer<AbstractDocument>& document,
                                      const QMap<int, QList<QString>>& positionCoupons,
                                      const QList<QString>& coupons);
    virtual void offlineAccrualCanceledCheck(const QSharedPointer<AbstractDocument>& document,
                                             const QMap<int, QList<QString>>& positionCoupons,
                                             const QList<QString>& coupons) const;
    /// Gives points back to the card of the document. Throws `VantiroException` without a card. [blocks]
    virtual void cancelSubtractBonus(const QSharedPointer<AbstractDocument>& document, double amount);
    /// The cheque of a return against a sale. Throws `VantiroException` when the sale is not found.
    [[nodiscard]] virtual QDomDocument buildBackXmlCheck(const QSharedPointer<AbstractDocument>& document) const;

    // The requests of the accruals. Each builds the body in `request` and assigns it to `body`; online and offline form
    // differ in the name of one element.
    virtual void buildOnlineOrOfflineAccrualRequest(const QSharedPointer<AbstractDocument>& document,
                                                    const QList<QSharedPointer<BonusImpact>>& bonusImpacts,
                                                    const QMap<int, QList<QString>>& positionCoupons,
                                                    const QList<QString>& coupons, QDomDocument& request,
                                                    QDomElement& body, bool offline);
    virtual void buildOnlineOrOfflineAccrualRequest(const QSharedPointer<AbstractDocument>& document,
                                                    QDomDocument& request, QDomElement& body, bool offline) const;
    /// Keeps the slip of the reply, if it holds one, in place of the one that was waiting. Throws nothing.
    virtual void fillReport(const QDomDocument& answer);
    virtual void buildOnlineOrOfflineAccrualAnyCheckRequest(const QSharedPointer<AbstractDocument>& document,
                                                            QDomDocument& request, QDomElement& body,
                                                            bool offline) const;
    /// The cheque of a document that no loyalty step has touched.
    [[nodiscard]] virtual QDomDocument buildAccrualAnyXmlCheck(const QSharedPointer<AbstractDocument>& document) const;
    virtual void buildOnlineOrOfflineAccrualCanceledCheckRequest(const QSharedPointer<AbstractDocument>& document,
                                                                 const QMap<int, QList<QString>>& positionCoupons,
                                                                 const QList<QString>& coupons, QDomDocument& request,
                                                                 QDomElement& body, bool offline) const;
    /// The cheque of a cancelled document, from its deleted lines when none is left live.
    [[nodiscard]] virtual QDomDocument buildAccrualCanceledXmlCheck(const QSharedPointer<AbstractDocument>& document,
                                                                    const QMap<int, QList<QString>>& positionCoupons,
                                                                    const QList<QString>& coupons) const;

protected:
    // discounts
    [[nodiscard]] QDomDocument processResponseXml(const QString& text) const;
    [[nodiscard]] QList<QSharedPointer<DiscountImpact>> extractCheckDiscounts(const QDomDocument& answer) const;
    [[nodiscard]] QList<QSharedPointer<DiscountImpact>> extractPositionDiscounts(const QDomDocument& answer) const;

    // subtraction; the document must have a card
    [[nodiscard]] QSharedPointer<BonusImpact> prepareBonusImpact(const QSharedPointer<AbstractDocument>& document,
                                                                 double amount) const;

    // accrual: appends the payments with certificates to the list
    void getCertificatesFromDocument(const QSharedPointer<AbstractDocument>& document,
                                     QList<QSharedPointer<MoneyItem>>& certificates) const;

    // returns: with `required`, throws `VantiroException` when the sale is not found
    void addSaleChequeTag(const QSharedPointer<AbstractDocument>& document, QDomElement& cheque, bool required) const;
    void addSaleChequeTag(int chequeNo, const QDateTime& openTime, const QDateTime& closeTime,
                          QDomElement& cheque) const;

    QDomDocument lastReport; // the server's slip, untransformed, until it is taken
};
