#include "bonus/vantiro_bonus_interface.h"

#include "client/wire.h"
#include "client/xml_writer.h"
#include "host/framework/db_queue_broker.h"

using namespace vantiro;

namespace {

const QString online = QStringLiteral("Accrual");
const QString queued = QStringLiteral("OfflineAccrual");

/// The body of every accrual: one function for both forms, so that they cannot drift apart.
void buildBody(QDomDocument& request, QDomElement& body, bool offline, const QString& chequeText)
{
    body = request.createElement(QStringLiteral("soapenv:Body"));
    QDomElement operation = request.createElement(QStringLiteral("tem:") + (offline ? queued : online));
    QDomElement cheque = request.createElement(wire::chequeTag);
    cheque.appendChild(request.createCDATASection(chequeText));
    operation.appendChild(cheque);
    body.appendChild(operation);
}

} // namespace

void VantiroBonusInterface::accrual(const QSharedPointer<AbstractDocument>& document,
                                    const QList<QSharedPointer<BonusImpact>>& bonusImpacts,
                                    const QMap<int, QList<QString>>& positionCoupons, const QList<QString>& coupons)
{
    logger->info("Начисление бонусов в online режиме");
    QDomDocument request;
    QDomElement body;
    buildOnlineOrOfflineAccrualRequest(document, bonusImpacts, positionCoupons, coupons, request, body, false);
    fillReport(processSoapMessage(request, body, online));
    logger->info("Бонусы начислены");
}

void VantiroBonusInterface::offlineAccrual(const QSharedPointer<AbstractDocument>& document,
                                           const QList<QSharedPointer<BonusImpact>>& bonusImpacts,
                                           const QMap<int, QList<QString>>& positionCoupons,
                                           const QList<QString>& coupons)
{
    logger->info("Начисление бонусов в offline режиме");
    QDomDocument request;
    QDomElement body;
    buildOnlineOrOfflineAccrualRequest(document, bonusImpacts, positionCoupons, coupons, request, body, true);
    sendOfflineAccrualRequest(request, body);
}

void VantiroBonusInterface::accrual(const QSharedPointer<AbstractDocument>& document)
{
    logger->info("Отмена начисления бонусов в online режиме");
    QDomDocument request;
    QDomElement body;
    buildOnlineOrOfflineAccrualRequest(document, request, body, false);
    static_cast<void>(processSoapMessage(request, body, online)); // a reversal has no slip
    logger->info("Бонусы отменены");
}

void VantiroBonusInterface::offlineAccrual(const QSharedPointer<AbstractDocument>& document)
{
    logger->info("Отмена начисления бонусов в offline режиме");
    QDomDocument request;
    QDomElement body;
    buildOnlineOrOfflineAccrualRequest(document, request, body, true);
    sendOfflineAccrualRequest(request, body);
}

void VantiroBonusInterface::accrualAnyCheck(const QSharedPointer<AbstractDocument>& document)
{
    logger->info("Отправка чека на сервер");
    QDomDocument request;
    QDomElement body;
    buildOnlineOrOfflineAccrualAnyCheckRequest(document, request, body, false);
    fillReport(processSoapMessage(request, body, online));
}

void VantiroBonusInterface::offlineAccrualAnyCheck(const QSharedPointer<AbstractDocument>& document) const
{
    logger->info("Отправка чека на сервер в режиме offline");
    QDomDocument request;
    QDomElement body;
    buildOnlineOrOfflineAccrualAnyCheckRequest(document, request, body, true);
    sendOfflineAccrualRequest(request, body);
}

void VantiroBonusInterface::accrualCanceledCheck(const QSharedPointer<AbstractDocument>& document,
                                                 const QMap<int, QList<QString>>& positionCoupons,
                                                 const QList<QString>& coupons)
{
    logger->info("Отправка отмененного чека на сервер");
    QDomDocument request;
    QDomElement body;
    buildOnlineOrOfflineAccrualCanceledCheckRequest(document, positionCoupons, coupons, request, body, false);
    static_cast<void>(processSoapMessage(request, body, online)); // a cancelled cheque has no slip
}

void VantiroBonusInterface::offlineAccrualCanceledCheck(const QSharedPointer<AbstractDocument>& document,
                                                        const QMap<int, QList<QString>>& positionCoupons,
                                                        const QList<QString>& coupons) const
{
    logger->info("Отправка отмененного чека на сервер в режиме offline");
    QDomDocument request;
    QDomElement body;
    buildOnlineOrOfflineAccrualCanceledCheckRequest(document, positionCoupons, coupons, request, body, true);
    sendOfflineAccrualRequest(request, body);
}

void VantiroBonusInterface::buildOnlineOrOfflineAccrualRequest(const QSharedPointer<AbstractDocument>& document,
                                                               const QList<QSharedPointer<BonusImpact>>& bonusImpacts,
                                                               const QMap<int, QList<QString>>& positionCoupons,
                                                               const QList<QString>& coupons, QDomDocument& request,
                                                               QDomElement& body, bool offline)
{
    QDomDocument cheque = buildXmlCheck(document, positionCoupons, coupons, {});
    QList<QSharedPointer<MoneyItem>> certificates;
    getCertificatesFromDocument(document, certificates);
    // The closed cheque takes the place of the open one, which is freed before the text is made: each may be large.
    cheque = buildAccrualXmlCheck(cheque, bonusImpacts, positionCoupons, coupons, certificates);
    buildBody(request, body, offline, getXmlCheckString(cheque));
}

void VantiroBonusInterface::buildOnlineOrOfflineAccrualRequest(const QSharedPointer<AbstractDocument>& document,
                                                               QDomDocument& request, QDomElement& body,
                                                               bool offline) const
{
    // A return without its sale is told like a sale, closed; a return by sale points back to it.
    const QDomDocument cheque = document->getDocumentType() == EDocumentType::goodsReturn
        ? buildAccrualXmlCheck(buildXmlCheck(document, {}, {}, {}), {}, {}, {}, {})
        : buildBackXmlCheck(document);
    buildBody(request, body, offline, getXmlCheckString(cheque));
}

void VantiroBonusInterface::buildOnlineOrOfflineAccrualAnyCheckRequest(
    const QSharedPointer<AbstractDocument>& document, QDomDocument& request, QDomElement& body, bool offline) const
{
    buildBody(request, body, offline, getXmlCheckString(buildAccrualAnyXmlCheck(document)));
}

void VantiroBonusInterface::buildOnlineOrOfflineAccrualCanceledCheckRequest(
    const QSharedPointer<AbstractDocument>& document, const QMap<int, QList<QString>>& positionCoupons,
    const QList<QString>& coupons, QDomDocument& request, QDomElement& body, bool offline) const
{
    buildBody(request, body, offline,
              getXmlCheckString(buildAccrualCanceledXmlCheck(document, positionCoupons, coupons)));
}

void VantiroBonusInterface::getCertificatesFromDocument(const QSharedPointer<AbstractDocument>& document,
                                                        QList<QSharedPointer<MoneyItem>>& certificates) const
{
    constexpr int countedOperation = 3;
    for (const QSharedPointer<MoneyItem>& payment : document->getMoneyItems()) {
        const int code = payment->getOpCode();
        if (payment->getValutOperation() == countedOperation && (code == 70 || code == 74)) {
            certificates.append(payment);
        }
    }
}

void VantiroInterface::sendOfflineAccrualRequest(QDomDocument& request, const QDomElement& body) const
{
    createXmlRequest(request, body);

    // All that the delivery needs is frozen here: it may happen after a restart, under another configuration.
    QVariantMap headers;
    const QHash<QString, QString> table = createHttpHeaders(queued);
    for (auto it = table.cbegin(); it != table.cend(); ++it) {
        headers.insert(it.key(), it.value());
    }
    const QVariantMap record {
        { QStringLiteral("url"), hosts.value(currentServerIndex).toString() },
        { QStringLiteral("request"), queued },
        { QStringLiteral("headers"), headers },
        { QStringLiteral("body"), writeXml(request) },
    };
    Singleton<DBQueueBroker>::get()->enqueue(QStringLiteral("vantiro"), QJsonObject::fromVariantMap(record), QString());
}
