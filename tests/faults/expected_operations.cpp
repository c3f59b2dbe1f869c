#include "tests/faults/expected_outcomes.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace faults {

namespace {

[[nodiscard]] QString together(const QString& outcome, int server, int secondAsked)
{
    return u"%1 | server in use %2 | second server asked %3 | -"_s.arg(outcome, QString::number(server),
                                                                       QString::number(secondAsked));
}

[[nodiscard]] const char* outcomeOf(const ExpectedOperation& operation, Exchange exchange)
{
    switch (exchange) {
    case Exchange::unasked:
    case Exchange::lost:
    case Exchange::rejected:
        return operation.noConnection;
    case Exchange::unusable:
        return operation.unusable;
    case Exchange::refused:
        return operation.refused;
    case Exchange::foreign:
        return operation.foreign;
    case Exchange::answered:
        break;
    }
    return operation.answered;
}

/// How often the second server has been asked when the first one has not served.
[[nodiscard]] int secondAsked(const ExpectedFault& fault, const QString& arrangement)
{
    if (arrangement == u"Both") {
        return fault.exchange == Exchange::unasked ? 0 : 1;
    }
    return arrangement == u"Two" ? 1 : 0;
}

/// A ping goes on to the next server whatever kept the first one from success, and moves nothing by itself.
[[nodiscard]] QString expectedPing(const ExpectedFault& fault, const QString& arrangement)
{
    if (fault.ping == Ping::up) {
        return together(u"сервер доступен - true | server 0"_s, 0, 0);
    }
    if (arrangement == u"Two") {
        return together(u"сервер доступен - true | server 1"_s, 0, 1);
    }
    return together(u"сервер доступен - false | server -1"_s, 0, secondAsked(fault, arrangement));
}

[[nodiscard]] QString expectedDelivery(const ExpectedFault& fault, const QString& arrangement)
{
    switch (fault.delivery) {
    case Delivery::waits:
        if (arrangement == u"Two") {
            return together(u"delivered 1 | stepped aside 0"_s, 0, 1);
        }
        return together(u"delivered 0 | stepped aside 0 | pending, wrong answers 0"_s, 0,
                        secondAsked(fault, arrangement));
    case Delivery::wrong:
        return together(u"delivered 0 | stepped aside 0 | pending, wrong answers 1"_s, 0, 0);
    case Delivery::refused:
        return together(u"delivered 0 | stepped aside 1 | kept aside, wrong answers 1"_s, 0, 0);
    case Delivery::delivered:
        break;
    }
    return together(u"delivered 1 | stepped aside 0"_s, 0, 0);
}

}

// What the cashier is told, whether the cheque goes on offline, and what waits in the queue. A reply that cannot be
// read queues nothing: the service may have booked the cheque, and the till says that it does not know.
const QList<ExpectedOperation>& expectedOperations()
{
    static const QList<ExpectedOperation> table {
        { "IsCardValid", "no | Нет связи с сервером | offline | nothing queued | balance 0",
          "no | Некорректный ответ от сервера | online | nothing queued | balance 0",
          "no | Карта заблокирована | online | nothing queued | balance 0",
          "no | Некорректный ответ от сервера | online | nothing queued | balance 0",
          "yes | online | nothing queued | balance 120.5" },
        { "GetCardBalance", "no | Нет связи с сервером | offline | nothing queued | balance 0",
          "no | Некорректный ответ от сервера | online | nothing queued | balance 0",
          "no | Карта заблокирована | online | nothing queued | balance 0",
          "no | В ответе от сервера не найден баланс карты | online | nothing queued | balance 0",
          "yes | online | nothing queued | balance 120.5" },
        { "GetCardBalanceOfAKnownCard", "no | Нет связи с сервером | online | nothing queued | balance 0",
          "no | Некорректный ответ от сервера | online | nothing queued | balance 0",
          "no | Карта заблокирована | online | nothing queued | balance 0",
          "no | В ответе от сервера не найден баланс карты | online | nothing queued | balance 0",
          "yes | online | nothing queued | balance 120.5" },
        { "GetDiscounts", "no | Нет связи с сервером. Доступно только начисление баллов | offline | nothing queued",
          "no | Некорректный ответ от сервера | online | nothing queued",
          "no | Карта заблокирована | online | nothing queued",
          "no | В ответе от сервера не найден результат дисконтных воздействий | online | nothing queued",
          "yes | online | nothing queued" },
        { "GetMessages", "no | Нет связи с сервером. Доступно только начисление баллов | offline | nothing queued",
          "no | Некорректный ответ от сервера | online | nothing queued",
          "no | Карта заблокирована | online | nothing queued", "yes | online | nothing queued",
          "yes | online | nothing queued" },
        { "GetCardDiscountAmount",
          "no | Нет связи с сервером. Доступно только начисление баллов | offline | nothing queued",
          "no | Некорректный ответ от сервера | online | nothing queued",
          "yes | shown: Система лояльности: Карта заблокирована | online | nothing queued",
          "no | В ответе от сервера не найдена максимальная сумма оплаты | online | nothing queued",
          "yes | online | nothing queued" },
        { "GetCardDiscountAmountForAnOffer",
          "no | Нет связи с сервером. Доступно только начисление баллов | offline | nothing queued",
          "no | Некорректный ответ от сервера | online | nothing queued",
          "no | shown: Система лояльности: Карта заблокирована | online | nothing queued",
          "no | В ответе от сервера не найдена максимальная сумма оплаты | online | nothing queued",
          "yes | online | nothing queued" },
        { "SubtractBonus45",
          "no | Нет связи с сервером. Доступно только начисление баллов | offline | nothing queued | spendings 0",
          "no | Некорректный ответ от сервера | online | nothing queued | spendings 0",
          "no | Карта заблокирована | online | nothing queued | spendings 0",
          "no | Некорректный ответ от сервера | online | nothing queued | spendings 0",
          "yes | online | nothing queued | spendings 1" },
        { "CancelSubtractBonus", "no | Нет связи с сервером | online | nothing queued | spendings 1",
          "no | Некорректный ответ от сервера | online | nothing queued | spendings 1",
          "no | Карта заблокирована | online | nothing queued | spendings 1",
          "no | Некорректный ответ от сервера | online | nothing queued | spendings 1",
          "yes | online | nothing queued | spendings 0" },
        { "Accrual", "yes | online | OfflineAccrual for server 0",
          "no | Некорректный ответ от сервера | online | nothing queued",
          "no | Карта заблокирована | online | nothing queued", "yes | online | nothing queued",
          "yes | online | nothing queued | slip" },
        { "AccrualOfAReturn", "yes | online | OfflineAccrual for server 0",
          "no | Некорректный ответ от сервера | online | nothing queued",
          "no | Карта заблокирована | online | nothing queued", "yes | online | nothing queued",
          "yes | online | nothing queued" },
        { "AccrualWithoutACard", "yes | online | OfflineAccrual for server 0", "yes | online | nothing queued",
          "yes | online | nothing queued", "yes | online | nothing queued", "yes | online | nothing queued | slip" },
        { "AccrualOfACancelledCheque", "yes | online | OfflineAccrual for server 0", "yes | online | nothing queued",
          "yes | online | nothing queued", "yes | online | nothing queued", "yes | online | nothing queued" },
        { "GetVerifyCode", "no | Нет связи с сервером | online | nothing queued",
          "no | Некорректный ответ от сервера | online | nothing queued",
          "no | Карта заблокирована | online | nothing queued",
          "no | В ответе от сервера не найден код подтверждения для добавления карты | online | nothing queued",
          "yes | online | nothing queued | card 9000000001" },
        { "IsCouponValid", "no | Нет связи с сервером. Доступно только начисление баллов | offline | nothing queued",
          "no | Некорректный ответ от сервера | online | nothing queued",
          "no | Карта заблокирована | online | nothing queued",
          "no | Некорректный ответ от сервера | online | nothing queued",
          "yes | online | nothing queued | coupon taken" },
    };
    return table;
}

std::string expectedOutcome(const ExpectedFault& fault, const QString& arrangement, const QString& operation)
{
    if (operation == u"Ping") {
        return expectedPing(fault, arrangement).toStdString();
    }
    if (operation == u"OfflineAccrual") {
        return expectedDelivery(fault, arrangement).toStdString();
    }
    const auto found = std::ranges::find_if(expectedOperations(), [&operation](const ExpectedOperation& known) {
        return operation == QString::fromLatin1(known.name);
    });
    if (found == expectedOperations().cend()) {
        return "the table does not know the operation";
    }
    const bool walks = fault.exchange == Exchange::unasked || fault.exchange == Exchange::lost;
    if (walks && arrangement == u"Two") {
        return together(QString::fromUtf8(found->answered), 1, 1).toStdString();
    }
    const QString outcome = QString::fromUtf8(outcomeOf(*found, fault.exchange));
    return together(outcome, 0, walks ? secondAsked(fault, arrangement) : 0).toStdString();
}

}
