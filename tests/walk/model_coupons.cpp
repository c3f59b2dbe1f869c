#include "tests/walk/model.h"

using namespace Qt::StringLiterals;

namespace walk {

// The whole action: the plug-in's check, the host's own part, the plug-in's note of it.
bool Model::addCoupon(const QString& number)
{
    bool isOurs = false;
    if (!checkCoupon(number, isOurs)) {
        return false;
    }
    account.told.append(
        u"host adds %1 type=%2 same=%3"_s.arg(number, isOurs ? u"3"_s : QString(), isOurs ? u"true"_s : QString()));
    document.coupons.append(number);
    if (!isOurs) {
        return true;
    }
    if (setting.coupons.ofCheque.contains(number)) {
        chequeCoupons.append(number);
    } else {
        positionCoupons[document.live.isEmpty() ? 0 : document.currentPosition].append(number);
    }
    updateCoupons();
    logInfo(u"Купон Vantiro %1 добавлен"_s.arg(number));
    return true;
}

bool Model::checkCoupon(const QString& number, bool& isOurs)
{
    logInfo(u"Добавление купона Vantiro"_s);
    const bool ofPosition = setting.coupons.ofPosition.contains(number);
    if (!ofPosition && !setting.coupons.ofCheque.contains(number)) {
        logInfo(u"Купон %1 не является купоном Vantiro"_s.arg(number));
        return true;
    }
    std::optional<Failure> failure;
    if (ofPosition && document.live.isEmpty()) {
        failure = { Failure::unusable, {}, u"Нет позиций для добавления купона на позицию"_s };
    } else if (isOffline()) {
        failure = lostConnection();
    } else {
        account.told.append(u"event 72 message=Обращение к системе лояльности"_s);
        const auto got = isCouponValid(number);
        account.told.append(u"event 73"_s);
        isOurs = got.value;
        failure = got.failure;
    }
    if (!failure) {
        return true;
    }
    QString text = failure->text;
    if (failure->kind == Failure::lost) {
        if (!isOffline()) {
            updateData(true);
        }
        text += document.card ? u". Доступно только начисление баллов"_s : QString();
    }
    account.told.append(u"event 127 text=%1 couponNumber=%2 forCustomer=true"_s.arg(text, number));
    return false;
}

bool Model::deleteCoupon(const QString& number)
{
    if (!forgetCoupon(number)) {
        return false;
    }
    account.told.append(u"host deletes "_s + number);
    document.coupons.removeOne(number);
    return true;
}

bool Model::forgetCoupon(const QString& number)
{
    logInfo(u"Удаление купона/купонов Vantiro"_s);
    const bool ofCheque = setting.coupons.ofCheque.contains(number);
    if ((chequeCoupons.isEmpty() && positionCoupons.isEmpty())
        || (!ofCheque && !setting.coupons.ofPosition.contains(number))) {
        return true;
    }
    logInfo(u"Удаление купона с номером "_s + number);
    if (!document.coupons.contains(number)) {
        const QString shown = u"message 1 0 0 vantiroNoCoupon: Купон отсутствует в чеке"_s;
        account.told.append(shown);
        account.shown.append(shown);
        return false;
    }
    if (ofCheque) {
        chequeCoupons.removeAll(number);
    } else {
        for (const int position : positionCoupons.keys()) {
            positionCoupons[position].removeAll(number);
            if (positionCoupons[position].isEmpty()) {
                positionCoupons.remove(position);
            }
        }
    }
    logInfo(u"Купон Vantiro удален"_s);
    updateCoupons();
    return true;
}

void Model::takeOff(int position)
{
    for (qsizetype i = 0; i < document.live.size(); ++i) {
        if (document.live.at(i).number == position) {
            document.deleted.append(document.live.takeAt(i));
            break;
        }
    }
    if (document.currentPosition == position) {
        document.currentPosition = document.live.isEmpty() ? 0 : document.live.constLast().number;
    }

    // Event 21 follows.
    if (!positionCoupons.contains(position)) {
        return;
    }
    if (!document.live.isEmpty()) {
        const QStringList numbers = positionCoupons.value(position);
        for (const QString& number : numbers) {
            account.told.append(u"coupon off "_s + number);
            static_cast<void>(deleteCoupon(number)); // the host deletes it like any other
        }
    }
    positionCoupons.remove(position);
    updateCoupons();
}

} // namespace walk
