#pragma once

#include "host/document/abstract_document.h"
#include "host/facilities/logger.h"
#include "host/framework/task.h"

#include <QByteArray>
#include <QDomDocument>
#include <QDomElement>
#include <QDomNode>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QUrl>

/// The client of the loyalty service: the server list, the one road to the server, and the operations that all further
/// service calls rest on. `VantiroBonusInterface` is the concrete class.
///
/// Everything runs on the thread of cheque operations, but for `ping`. An operation that asks the server blocks for the
/// number of servers times the timeout at the longest, and throws `VantiroNoConnectionException` when no server could
/// be reached, `VantiroFaultException` when the server refused, and `VantiroException` when the reply is of no use.
/// Sums are in roubles. The order of fields and virtual operations is binary contract. [cheque-thread]
class VantiroInterface : public QObject {
    Q_OBJECT

public:
    /// Fetches the log of that name. There are no servers and no credentials until `initialize`.
    explicit VantiroInterface(const QString& loggerName);
    ~VantiroInterface() override = 0;

    /// Reads the configuration, once, before any service call. Checks nothing and throws nothing: a server address that
    /// cannot be parsed holds its place in the priority and fails at its first use.
    virtual void initialize();

    /// Whether the server knows the card. [blocks]
    [[nodiscard]] virtual bool isCardValid(const QString& cardNumber);
    /// The balance of points of the card. [blocks]
    [[nodiscard]] virtual double getCardBalance(const QString& cardNumber);
    /// When a server of lower priority is in use: hands the host a task that pings the servers, and takes the best one
    /// that answers when the task's result is delivered. Returns at once. This object must outlive the task.
    virtual void actualizeServer();
    /// Gives points back on the server. [blocks]
    virtual void cancelSubtractBonus(const QSharedPointer<AbstractDocument>& document, const QString& cardNumber,
                                     double amount);
    /// The UUID that names a cheque to the server, made from the identity of the document: the same identity gives the
    /// same UUID, on every till and after every restart. 36 characters, upper case.
    [[nodiscard]] virtual QString getChequeUID(const QString& identity) const;
    /// Replaces the identity of the cheque being sent ("chequeNo", "chequeUid", "shiftNo", each a string); a key that
    /// is absent is taken from the document.
    virtual void setCheckData(const QJsonObject& data);
    /// The servers in order of priority. Leaves the server in use as it is.
    virtual void setHosts(const QList<QUrl>& servers);
    /// Handed to every `RestClient` unchanged, in seconds.
    virtual void setTimeout(int seconds);
    /// The value of the "Authorization" header; no header when empty.
    virtual void setAuthorizationHeader(const QString& value);
    /// Posts the body to the server in use, and to the others by priority when that one cannot be reached; returns the
    /// parsed reply. `document` is the one that `body` was created in; it gains the envelope and is used up. `action`
    /// is the bare name of the operation. Only a success on another server changes the server in use. [blocks]
    [[nodiscard]] virtual QDomDocument processSoapMessage(QDomDocument& document, const QDomNode& body,
                                                          const QString& action);
    [[nodiscard]] virtual QHash<QString, QString> createHttpHeaders(const QString& action) const;
    /// Wraps the body in an envelope and appends it to the document.
    virtual void createXmlRequest(QDomDocument& document, const QDomNode& body) const;
    /// Parses a reply. Throws `VantiroException` when it is not XML that can be trusted, `VantiroFaultException` when
    /// it holds a fault.
    [[nodiscard]] virtual QDomDocument createXmlAnswer(const QByteArray& bytes) const;
    /// The largest sum that may be paid with the card on this cheque. [blocks]
    [[nodiscard]] virtual double getCardDiscountAmount(const QString& cardNumber,
                                                       const QSharedPointer<AbstractDocument>& document,
                                                       const QList<QSharedPointer<DiscountImpact>>& discountImpacts);
    /// The cheque of the open document. `discountImpacts` are discounts that the server has granted and that the
    /// document does not yet carry.
    [[nodiscard]] virtual QDomDocument buildXmlCheck(const QSharedPointer<AbstractDocument>& document,
                                                     const QMap<int, QList<QString>>& positionCoupons,
                                                     const QList<QString>& coupons,
                                                     const QList<QSharedPointer<DiscountImpact>>& discountImpacts) const;
    /// The closed form of a cheque that `buildXmlCheck` has made; `cheque` stays untouched.
    [[nodiscard]] virtual QDomDocument buildAccrualXmlCheck(const QDomDocument& cheque,
                                                            const QList<QSharedPointer<BonusImpact>>& bonusImpacts,
                                                            const QMap<int, QList<QString>>& positionCoupons,
                                                            const QList<QString>& coupons,
                                                            const QList<QSharedPointer<MoneyItem>>& certificates) const;
    /// Puts the finished request into the host's durable queue, with everything that its delivery needs. What the queue
    /// throws passes through. [blocks: until the record is on disk]
    virtual void sendOfflineAccrualRequest(QDomDocument& request, const QDomElement& body) const;

    /// Turns a result text that holds XML, escaped up to twice, back into XML. The order of its steps is the service's
    /// own: a doubly escaped "&amp;lt;" comes out as "<".
    [[nodiscard]] QString removeEscapeFromXml(const QString& text) const;

    /// Asks the servers by priority, from the top, which one answers. Never throws for a server that is down. The
    /// result is a `PingTaskResult` with the entry "serverIndex", -1 when none answered. Reads the server list, the
    /// timeout and the credentials, which must not change meanwhile. [any-thread] [blocks: servers times the timeout]
    [[nodiscard]] QSharedPointer<TaskResult> ping() const;

public slots:
    /// Makes the server of that index the one in use, the first when it is -1. Not checked.
    void changeServer(int serverIndex);

protected:
    // cheque head
    [[nodiscard]] QString getXmlCheckString(const QDomDocument& cheque) const;
    void addChequeTag(const QSharedPointer<AbstractDocument>& document, const QString& chequeType,
                      const QString& status, QDomDocument& target, QDomElement& cheque, double amount,
                      int positionCount, const QList<QSharedPointer<DiscountImpact>>& discountImpacts) const;
    void addDiscountCardTag(const QSharedPointer<AbstractDocument>& document, QDomElement& cheque) const;
    void addDiscountsMessagesPaymentsTags(QDomElement& cheque) const;
    void addCouponsTags(const QList<QString>& coupons, QDomElement& parent) const;
    [[nodiscard]] double getSubtractedBonus(const QSharedPointer<AbstractDocument>& document) const;

    // cheque lines
    void addChequeLinesTag(const QSharedPointer<AbstractDocument>& document, QDomElement& cheque,
                           const QList<QSharedPointer<DiscountImpact>>& discountImpacts,
                           const QMap<int, QList<QString>>& positionCoupons) const;
    void addChequeLinesTag(const QSharedPointer<AbstractDocument>& document, QDomElement& cheque,
                           const QMap<int, QList<QString>>& positionCoupons) const;
    void addChequeLineTag(const QSharedPointer<GoodsItem>& item, QDomElement& chequeLines, double deduction,
                          const QList<QSharedPointer<DocumentImpactDetail>>& details, double bonus,
                          const QList<QString>& coupons) const;
    void addDiscountsTag(const QList<QSharedPointer<DocumentImpactDetail>>& details, QDomElement& chequeLine) const;

    // print form
    void processXmlTextNode(QDomDocument& document, QDomNode& parent, const QString& text, const QString& align,
                            const QString& size) const;
    void processXmlAlignNode(QDomDocument& document, QDomNode& parent, const QDomNode& block) const;

    const Log4Qt::Logger* logger; // not owned
    QString authorizationHeader;
    int currentServerIndex = 0; // index into `hosts` of the server that requests go to first
    QList<QUrl> hosts; // in order of priority, 0 being the most wanted
    int timeout = 0; // seconds, as the host's `RestClient` takes it
    int noBonusForMinprice = 0; // for a line at its minimum price: 1 earns no points, 2 takes no points, 3 both
    bool forbidDiscountForDiscountedPosition = false;
    QJsonObject checkData; // identity of the cheque being sent, see `setCheckData`
};
