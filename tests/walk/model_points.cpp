#include "tests/walk/model.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace walk {

Model::Got<double> Model::getAmount()
{
    logInfo(u"Получение баллов для списания"_s);
    if (!document.card) {
        return { {}, noCard() };
    }
    const auto [reply, failure]
        = exchange(u"GetCardDiscountAmount"_s,
                   u"discountCardNumber=%1 cheque=%2"_s.arg(document.card->number, openCheque(discounts, false)));
    if (failure && failure->kind == Failure::fault) { // shown, and no failure
        const QString shown = u"error 0 0 cardExceptionLoyaltyIdentify: Система лояльности: "_s + failure->text;
        account.told.append(shown);
        account.shown.append(shown);
        return { 0.0, {} };
    }
    if (failure) {
        return { {}, failure };
    }
    if (reply.content != Manner::answers || reply.variant == 5) {
        return { {},
                 Failure { Failure::unusable, u"vantiroPaymentSumNotFound"_s,
                           u"В ответе от сервера не найдена максимальная сумма оплаты"_s } };
    }
    const double amount = QList<double> { 50.0, 12.349, 0.005, 0.0051, 100.0 }.at(reply.variant);
    document.card->points = amount;
    return { amount, {} };
}

Model::Got<Bonus> Model::subtract(double amount)
{
    const auto [reply, failure]
        = exchange(u"SubtractBonus45"_s,
                   u"discountCardNumber=%1 amount=%2 cheque=%3"_s.arg(
                       document.card->number, QString::number(amount, 'f', 2), openCheque({}, false)));
    if (failure) {
        return { {}, failure };
    }
    if (reply.content == Manner::plainText || reply.content == Manner::emptyResult) {
        logError(u"Не удалось интерпретировать ответ от сервера(…"_s);
        return { {}, incorrectAnswer() };
    }
    if (reply.content == Manner::noResult || reply.variant == 5) {
        return { {}, incorrectAnswer() };
    }
    switch (reply.variant) { // of two results the first counts
    case 0:
    case 1:
        return { { amount, { { 1, 10.0 } } }, {} };
    case 2:
        return { { amount, { { 1, 6.5 }, { 2, 3.5 } } }, {} };
    case 3:
        return { { amount, { { 2, 5.5 } } }, {} };
    default:
        return { { amount, {} }, {} };
    }
}

std::optional<Model::Failure> Model::cancelSubtraction(double amount)
{
    if (!document.card) {
        return noCard();
    }
    const auto [reply, failure]
        = exchange(u"CancelSubtractBonus"_s,
                   u"discountCardNumber=%1 amount=%2 cheque=%3"_s.arg(
                       document.card->number, QString::number(amount, 'f', 2), openCheque({}, false)));
    if (!failure && reply.content == Manner::noResult) {
        return incorrectAnswer();
    }
    return failure;
}

bool Model::hasPoints()
{
    points = 0.0;
    if (isOffline()) {
        return false;
    }
    const auto [amount, failure] = getAmount();
    if (!failure) {
        points = amount;
        logInfo(u"Бонусные баллы получены"_s);
        updateData(false);
        return points > 0.005;
    }
    report(*failure);
    if (failure->kind == Failure::lost) {
        error = withEarningNote(*failure, true);
        updateData(true);
    }
    return false;
}

double Model::getPoints()
{
    account.log.append(u"debug: Доступно баллов для списания: "_s + QString::number(points, 'f', 2));
    const double amount = std::min({ points, document.sum(), document.card->balance.value_or(0.0) });
    const double step = setting.step == 0.0 ? 1.0 : setting.step;
    const double quotient = amount / step;
    const double whole = std::trunc(amount >= 0.0 ? quotient + 0.001 : quotient - 0.001);
    const double result = std::abs(quotient - whole) < 0.0001 ? amount : step * whole;
    points = std::min(result, points);
    return points;
}

bool Model::spend()
{
    if (!document.card) {
        report({ Failure::unusable, u"vantiroCardNotFound"_s, u"В документе отсутствует карта Vantiro"_s });
        return false;
    }
    if (isOffline()) {
        return true;
    }
    logInfo(u"Создание оплаты бонусами в виде скидки на сумму %1, по карте %2"_s.arg(
        QString::number(static_cast<int>(points)), document.card->number));
    discounts = {};
    const auto [bonus, failure] = subtract(points);
    if (!failure) {
        bonuses.append(bonus);
        points -= bonus.sum;
        updateData(false);
        document.card->spent += bonus.sum; // the host books it
        return true;
    }
    report(*failure);
    if (failure->kind == Failure::lost) {
        error = withEarningNote(*failure, true);
        updateData(true);
    }
    return false;
}

bool Model::rollback()
{
    logInfo(u"Отмена операций бонусной системы"_s);
    double sum = 0.0;
    for (const Bonus& bonus : bonuses) {
        sum += bonus.sum;
    }
    if (!bonuses.isEmpty() && !isOffline() && sum > 0.005) {
        logInfo(u"Отмена оплаты бонусами в виде скидки на сумму "_s + QString::number(sum, 'f', 2));
        if (const auto failure = cancelSubtraction(sum)) {
            report(*failure);
            return false;
        }
        document.card->spent = 0.0;
    }
    clearLoyaltyData();
    logInfo(u"Операции бонусной системы отменены"_s);
    return true;
}

} // namespace walk
