#include "tests/walk/model.h"

using namespace Qt::StringLiterals;

namespace walk {

namespace {

const QString buildingAccrual = u"Создание xml-чека для commit"_s;

} // namespace

bool Model::commit()
{
    logInfo(u"Подтверждение операций бонусной системы"_s);
    const auto queueAccrual = [this] {
        logInfo(u"Начисление бонусов в offline режиме"_s);
        logInfo(buildingAccrual);
        enqueue(accrualCheque());
    };
    bool result = true;
    if (document.type == 2 || document.type == 25) {
        result = giveBack();
    } else if (isOffline()) {
        queueAccrual();
    } else {
        logInfo(u"Начисление бонусов в online режиме"_s);
        logInfo(buildingAccrual);
        QString slip;
        const auto failure = sendAccrual(accrualCheque(), &slip);
        if (!failure) {
            logInfo(u"Бонусы начислены"_s);
            print(slip);
        } else if (failure->kind == Failure::lost) {
            logError(u"Ошибка online начисления бонусов"_s);
            queueAccrual();
            logInfo(u"Бонусы зачислены в offline режиме"_s);
        } else {
            report(*failure);
            result = false;
        }
    }
    clearLoyaltyData();
    clearCoupons();
    return result;
}

bool Model::giveBack()
{
    logInfo(u"Возврат в бонусной системе Vantiro"_s);
    logInfo(u"Отмена начисления бонусов в online режиме"_s);
    const auto [cheque, missing] = returnCheque();
    if (missing) {
        report(*missing);
        return false;
    }
    if (document.type == 2) {
        logInfo(buildingAccrual);
    }
    const auto failure = sendAccrual(cheque, nullptr);
    if (!failure) {
        logInfo(u"Бонусы отменены"_s);
        return true;
    }
    if (failure->kind != Failure::lost) {
        report(*failure);
        return false;
    }
    logError(u"Ошибка online начисления или списания бонусов при возврате"_s);
    logInfo(u"Отмена начисления бонусов в offline режиме"_s);
    if (document.type == 2) {
        logInfo(buildingAccrual);
    }
    enqueue(cheque);
    logInfo(u"Бонусы начислены или списаны в offline режиме"_s);
    return true;
}

QString Model::tellEvent(int code, About which)
{
    if (code == 9) {
        restore();
    }
    const bool isCancelled = code == 12 || code == 22;
    if (code != 10 && !isCancelled) { // 21 comes without a position here
        return u"done"_s;
    }
    Document empty;
    empty.identity = u"empty"_s;
    const Document subject = which == About::previous ? *previous : which == About::emptyOne ? empty : document;
    if (isCancelled) {
        sendCancelled(subject);
    } else {
        sendClosed(subject);
    }
    return u"done"_s;
}

void Model::sendClosed(const Document& closed)
{
    logInfo(u"Пинг серверов"_s);
    if (server == 0) {
        logInfo(u"Пинг не требуется - уже выбран самый приоритетный сервер"_s);
    } else {
        account.told.append(u"event 245"_s);
        ++tasks;
    }
    const bool isSent = closed.type == 1 || closed.type == 2 || closed.type == 25;
    if (closed.card || (closed.type == 1 && closed.hasOtherCard) || closed.hasBonusRecord || !isSent) {
        return;
    }
    logInfo(u"Отправка чека на сервер в online режиме"_s);
    logInfo(u"Отправка чека на сервер"_s);
    QString slip;
    const auto failure = sendAccrual(anyCheque(closed), &slip);
    if (!failure) {
        print(slip);
        logInfo(u"Чек отправлен в online режиме"_s);
    } else if (failure->kind == Failure::lost) {
        logError(u"Ошибка отправки чека на сервер в online режиме"_s);
        logInfo(u"Отправка чека на сервер в режиме offline"_s);
        enqueue(anyCheque(closed));
        logInfo(u"Чек отправлен в offline режиме"_s);
    } else {
        logError(failure->text);
    }
    clearLoyaltyData();
}

void Model::sendCancelled(const Document& cancelled)
{
    const bool isSent = cancelled.type == 1 || cancelled.type == 2 || cancelled.type == 25;
    if (cancelled.identity != lastCancelled && isSent && !(cancelled.live.isEmpty() && cancelled.deleted.isEmpty())) {
        logInfo(u"Отправка отмененного чека на сервер в online режиме"_s);
        logInfo(u"Отправка отмененного чека на сервер"_s);
        const auto failure = sendAccrual(cancelledCheque(cancelled), nullptr);
        if (!failure) {
            lastCancelled = cancelled.identity;
            logInfo(u"Отмененный чек отправлен в online режиме"_s);
        } else if (failure->kind == Failure::lost) {
            logError(u"Ошибка отправки отмененного чека на сервер в online режиме"_s);
            logInfo(u"Отправка отмененного чека на сервер в режиме offline"_s);
            enqueue(cancelledCheque(cancelled));
            lastCancelled = cancelled.identity;
            logInfo(u"Отмененный чек отправлен в offline режиме"_s);
        } else {
            logError(failure->text);
        }
    }
    clearCoupons();
}

QString Model::runPing()
{
    --tasks;
    server = 0;
    bool available = false;
    for (int host = 0; host < setting.hosts.size() && !available; ++host) {
        const Mood mood = post(host, u"Ping"_s, u"Ping"_s).mood;
        available = mood.manner != Manner::refuses && outcome(u"Ping"_s, mood).status == 200;
        server = available ? host : 0;
    }
    return available ? u"сервер доступен - true"_s : u"сервер доступен - false"_s;
}

} // namespace walk
