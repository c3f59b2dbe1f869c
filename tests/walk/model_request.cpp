#include "tests/walk/model.h"

using namespace Qt::StringLiterals;

namespace walk {

QString Model::withEarningNote(const Failure& failure, bool noted)
{
    return u"undefined: "_s + failure.text + (noted ? u". Доступно только начисление баллов"_s : QString());
}

void Model::report(const Failure& failure)
{
    logError(failure.text);
    error = failure.told();
}

QString Model::identify(const QString& number)
{
    logInfo(u"Получение информации о карте Vantiro"_s);
    const auto [isValid, refusal] = isOffline() ? Got<bool> { {}, lostConnection() } : isCardValid(number);
    std::optional<Failure> failure = refusal;
    double balance = 0.0;
    if (!failure) {
        if (!isValid) {
            return u"false"_s;
        }
        const auto [itsBalance, balanceFailure] = balanceOf(number);
        balance = itsBalance;
        failure = balanceFailure;
    }
    if (failure) {
        if (failure->kind == Failure::lost && !isOffline() && document.canGoOffline) {
            updateData(true);
        }
        report(*failure);
        return u"false"_s;
    }
    document.card = Card { number, balance, 0.0, 0.0 }; // the host attaches it
    return u"true"_s;
}

QString Model::cardInfo()
{
    logInfo(u"Запрос информации о карте"_s);
    const auto [balance, failure] = balanceOf(document.card ? document.card->number : u"9000000003"_s);
    if (failure) {
        report(*failure);
        return u"false"_s;
    }
    if (document.card) {
        document.card->balance = balance;
    }
    return u"true, balance "_s + exact(balance);
}

QString Model::cardNumber(int type, Cashier cashier)
{
    if (type != 1) {
        logError(u"Система лояльности не поддерживает поиск карты по введенному типу %1"_s.arg(type));
        return u"no, number , error loyaltyCardSearchNotSupported: Поиск карты по введенным данным не поддерживается"_s;
    }
    logInfo(u"Получение номера карты по номеру телефона '79990001122'"_s);
    auto [number, failure] = cardByPhone(u"79990001122"_s);
    if (!failure) {
        account.told.append(u"form inputVantiroConfirmCode"_s);
        if (cashier == Cashier::cancels) {
            needed.entries.append(std::nullopt);
            return u"yes, number , error : "_s;
        }
        if (cashier == Cashier::rightCode) {
            needed.entries.append(u"1234"_s);
            return u"yes, number %1, error : "_s.arg(number);
        }
        needed.entries.append(cashier == Cashier::wrongCode ? u"9999"_s : u"1234 "_s);
        failure = { Failure::unusable, u"vantiroIncorrectConfirmCode"_s, u"Неверный код подтверждения"_s };
        account.shown.append(u"form "_s + failure->told());
    }
    logError(failure->text);
    return u"no, number , error "_s + failure->told();
}

Model::Got<QList<Discount>> Model::getDiscounts()
{
    const auto [reply, failure] = exchange(u"GetDiscounts"_s, u"cheque="_s + openCheque({}, true));
    if (failure) {
        return { {}, failure };
    }
    switch (reply.content) {
    case Manner::noResult:
    case Manner::twoResults:
        return { {},
                 Failure { Failure::unusable, u"vantiroDiscountsNotFound"_s,
                           u"В ответе от сервера не найден результат дисконтных воздействий"_s } };
    case Manner::emptyResult:
        logInfo(u"Нет дисконтных воздействий"_s);
        return {};
    case Manner::plainText:
        logError(u"Не удалось разобрать ответ от сервера(…"_s);
        return { {}, incorrectAnswer() };
    default:
        break;
    }
    switch (reply.variant) {
    case 0:
    case 1:
        return { { { 17.98, 1, 77 } }, {} };
    case 2:
        return { { { 5.0, 0, 9 } }, {} };
    case 3:
        return { { { 1.25, 0, 12 }, { 3.5, 2, 78 } }, {} };
    case 4:
        return {};
    default:
        return { {}, incorrectAnswer() };
    }
}

std::optional<Model::Failure> Model::getMessages(QStringList& forCashier, QStringList& forClient)
{
    forCashier = {};
    forClient = {};
    logInfo(u"Получение сообщений от системы лояльности"_s);
    const auto [reply, failure] = exchange(u"GetMessages"_s, u"cheque="_s + openCheque(discounts, true));
    if (failure) {
        return failure;
    }
    if (reply.content == Manner::noResult || reply.content == Manner::emptyResult) {
        return {};
    }
    if (reply.content == Manner::plainText) {
        logError(u"Не удалось интерпретировать ответ от сервера(…"_s);
        return incorrectAnswer();
    }
    switch (reply.variant) { // of two results the first counts
    case 0:
    case 1:
        forClient = { u"Спасибо"_s };
        forCashier = { u"Пакет?"_s };
        break;
    case 2:
        forClient = { u"Приходите"_s };
        break;
    case 3:
        account.log.append(u"warn: Ошибка получения атрибута 'Device'"_s);
        forCashier = { u"А"_s, u"Б"_s };
        break;
    case 4:
        forCashier = { QString() };
        break;
    default:
        break;
    }
    return {};
}

bool Model::request()
{
    logInfo(u"Запрос к бонусной системе Vantiro"_s);
    if (isOffline()) {
        return true;
    }
    const auto [granted, refusal] = getDiscounts();
    std::optional<Failure> failure = refusal;
    if (!failure) {
        discounts = granted;
        logInfo(u"Дисконт получен"_s);
        QStringList forCashier;
        QStringList forClient;
        failure = getMessages(forCashier, forClient);
        if (!failure) {
            toCashier = forCashier;
            toClient = forClient;
        }
    }
    if (!failure && document.card) {
        const auto [amount, amountFailure] = getAmount();
        failure = amountFailure;
        points = failure ? points : amount;
    }
    if (!failure) {
        updateData(false);
        return true;
    }
    report(*failure);
    if (failure->kind == Failure::lost) {
        error = withEarningNote(*failure, document.card.has_value());
        updateData(true);
    }
    return false;
}

} // namespace walk
