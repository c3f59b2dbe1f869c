#include "front/vantiro.h"

#include "client/exceptions.h"
#include "client/forms.h"
#include "front/state_keys.h"
#include "host/framework/save_to_file_logic.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace vantiro;

bool Vantiro::commit(const QSharedPointer<AbstractDocument>& doc)
{
    logger->info("Подтверждение операций бонусной системы");

    bool done = true;
    const int type = doc->getDocumentType();
    if (type == EDocumentType::returnBySale || type == EDocumentType::goodsReturn) {
        done = backOrBackBySale(doc);
    } else if (isOfflineMode(doc)) {
        interface->offlineAccrual(doc, bonusImpacts, positionCoupons, checkCoupons);
    } else {
        try {
            interface->accrual(doc, bonusImpacts, positionCoupons, checkCoupons);
            printReport();
        } catch (const VantiroNoConnectionException&) {
            logger->error("Ошибка online начисления бонусов");
            interface->offlineAccrual(doc, bonusImpacts, positionCoupons, checkCoupons);
            logger->info("Бонусы зачислены в offline режиме");
        } catch (const VantiroException& exception) {
            done = fail(exception.tr());
        }
    }
    clearLoyaltyData();
    clearCoupons();
    return done;
}

bool Vantiro::backOrBackBySale(const QSharedPointer<AbstractDocument>& doc)
{
    logger->info("Возврат в бонусной системе Vantiro");
    try {
        interface->accrual(doc);
        return true;
    } catch (const VantiroNoConnectionException&) {
        logger->error("Ошибка online начисления или списания бонусов при возврате");
        interface->offlineAccrual(doc);
        logger->info("Бонусы начислены или списаны в offline режиме");
        return true;
    } catch (const VantiroException& exception) {
        return fail(exception.tr());
    }
}

bool Vantiro::rollback(const QSharedPointer<AbstractDocument>& doc)
{
    logger->info("Отмена операций бонусной системы");
    if (!bonusImpacts.isEmpty() && !isOfflineMode(doc)) {
        double sum = 0.0;
        for (const QSharedPointer<BonusImpact>& impact : bonusImpacts) {
            sum += impact ? impact->getTotals()->getDiscountSum() : 0.0; // a restored record may have been none
        }
        if (sum > 0.005) {
            try {
                logger->info("Отмена оплаты бонусами в виде скидки на сумму %1", forms::money(sum));
                interface->cancelSubtractBonus(doc, sum);
                getCard()->setSpentSum(0.0); // points spent mean that there is a card
            } catch (const VantiroException& exception) {
                return fail(exception.tr()); // all state stays, so that the rollback can be repeated
            }
        }
    }
    clearLoyaltyData();
    logger->info("Операции бонусной системы отменены");
    return true;
}

bool Vantiro::cancel()
{
    logger->info("Сброс состояния бонусной системы");
    clearLoyaltyData();
    return true;
}

void Vantiro::beforePutoutCheck()
{
    // Taken before the host moves the document on, and kept as texts: this is what the server knows the cheque by.
    const QJsonObject check {
        { state::chequeNo, QString::number(document->getChequeNumber()) },
        { state::chequeUid, interface->getChequeUID(document->getDocumentIdentity()) },
        { state::shiftNo, QString::number(document->getShiftNumber()) },
    };
    BasicLoyaltySystem::beforePutoutCheck();
    setPluginData(state::deferredCheck, QVariant(check));
}

void Vantiro::revealCheck()
{
    if (!document->isDeferred()) {
        return;
    }
    if (restoreLoyaltyState) {
        BasicLoyaltySystem::revealCheck();
    } else if (const QSharedPointer<DocumentCardRecord> card = getCard()) {
        pointsForSpend = 0.0;
        card->setPointsForSpend(0.0);
        document->setValue(state::group(*this), state::pointsForSpend, 0.0);
    }

    QJsonObject check = QJsonObject::fromVariantMap(getPluginData(state::deferredCheck, QVariant()).toMap());
    // Not const: an absent number becomes a null in the check data, and the server is then sent an empty one.
    const QJsonValue number = check[state::chequeNo];
    const QJsonObject data { { QStringLiteral("vantiro"), QJsonObject { { state::chequeNo, number } } } };
    document->setPluginDataJson(QString::fromUtf8(QJsonDocument(data).toJson(QJsonDocument::Compact)));
    interface->setCheckData(check);
    MockFactory<SaveToFileLogic>::create()->save(document, QString());
}
