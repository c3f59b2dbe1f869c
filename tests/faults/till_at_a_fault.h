#pragma once

#include "front/vantiro.h"
#include "till/document/cheque_contents.h"

#include <QSharedPointer>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>

namespace faults {

/// One operation at a till with the real parts: the plug-in, the HTTP client, the store. Its folder has a store, which
/// is open; its queue is empty before and afterwards. [cheque-thread]
class TillAtAFault {
public:
    /// What has become of an operation, for people and for comparison.
    struct Outcome {
        QString text; // "no | Нет связи с сервером | offline | nothing queued"
        int server = 0; // the one in use afterwards, by its place in the list
        std::chrono::milliseconds wait { 0 };
    };

    /// The servers in order of priority, as they are configured, and the timeout of a delivery in seconds.
    TillAtAFault(const QStringList& servers, int timeout);
    ~TillAtAFault();
    Q_DISABLE_COPY_MOVE(TillAtAFault)

    /// The names of the operations, each the action of the request that the fault befalls, and what asks it when that
    /// is not the only one: "AccrualOfAReturn".
    [[nodiscard]] static QStringList operations();
    /// The action of the operation: "Accrual".
    [[nodiscard]] static QByteArray actionOf(const QString& operation);

    [[nodiscard]] Outcome perform(const QString& operation);

private:
    class OpenVantiro;
    class RefusedCoupons;

    void open(const QSharedPointer<AbstractDocument>& document);
    [[nodiscard]] QString told(bool done) const;
    [[nodiscard]] QString state() const;
    [[nodiscard]] QString queued() const;
    [[nodiscard]] int serverInUse();

    QString presentCard();
    QString refreshCard();
    QString request();
    QString offerPoints();
    QString spendPoints();
    QString rollBack();
    QString commit(int type);
    QString tellClosed();
    QString tellCancelled();
    QString findCardByPhone();
    QString addCoupon();
    QString ping();
    QString deliver();

    QStringList servers;
    int timeout;
    QSharedPointer<OpenVantiro> plugin;
    QSharedPointer<AbstractDocument> document;
    int slips = 0;
    QStringList shown;
    std::chrono::milliseconds wait { 0 };

    /// Measures the call.
    template <class Call>
    auto timed(Call call);
};

}
