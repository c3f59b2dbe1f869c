#include "tests/walk/model.h"

using namespace Qt::StringLiterals;

namespace walk {

namespace {

const QString unreadable = u"Не удалось интерпретировать ответ от сервера(…"_s;

} // namespace

Model::Failure Model::incorrectAnswer()
{
    return { Failure::unusable, u"requestIncorrectAnswer"_s, u"Некорректный ответ от сервера"_s };
}

Model::Failure Model::noCard()
{
    return { Failure::unusable, u"vantiroCardNotFound"_s, u"В документе нет карты Vantiro"_s };
}

Model::Failure Model::lostConnection()
{
    return { Failure::lost, u"requestNoConnection"_s, u"Нет связи с сервером"_s };
}

Model::Ending Model::post(int host, const QString& action, const QString& wire)
{
    const QString address = setting.hosts.at(host);
    account.told.append(u"post "_s + action);
    account.sent.append(u"%1 %2"_s.arg(address, wire));
    if (address.isEmpty()) { // cannot be asked
        return { { Manner::refuses, 0 }, u"негодный адрес"_s };
    }
    const Mood mood = moods.takeFirst();
    used.append(told(mood));
    needed.outcomes.append(outcome(action, mood));
    switch (mood.manner) {
    case Manner::refuses:
        return { mood, u"соединение отклонено"_s };
    case Manner::status503:
        return { mood, u"состояние 503"_s };
    case Manner::status404:
        return { mood, u"состояние 404"_s };
    default:
        return { mood, {} };
    }
}

Model::Got<Model::Reply> Model::exchange(const QString& action, const QString& parameters)
{
    const QString wire = parameters.isEmpty() ? action : action + u' ' + parameters;
    Ending last = post(server, action, wire);
    if (last.mood.manner == Manner::refuses) {
        for (int other = 0; other < setting.hosts.size(); ++other) {
            if (other == server) {
                continue;
            }
            last = post(other, action, wire);
            if (outcome(action, last.mood).status == 200) {
                server = other;
                break;
            }
        }
    }
    switch (last.mood.manner) {
    case Manner::refuses:
    case Manner::status503:
    case Manner::status404:
        logError(u"Произошла ошибка при выполнении запроса "_s + last.error);
        return { {}, lostConnection() };
    case Manner::damaged:
        logError(unreadable);
        return { {}, incorrectAnswer() };
    case Manner::fault:
        return { {}, Failure { Failure::fault, {}, faultText(last.mood.variant) } };
    case Manner::answersAsError:
        return { { Manner::answers, last.mood.variant }, {} };
    default:
        return { { last.mood.manner, last.mood.variant }, {} };
    }
}

Model::Got<bool> Model::isCardValid(const QString& number)
{
    logInfo(u"Валидация карты на сервере"_s);
    const auto [reply, failure] = exchange(u"IsCardValid"_s, u"discountCardNumber="_s + number);
    if (failure) {
        return { {}, failure };
    }
    if (reply.content == Manner::noResult || reply.content == Manner::twoResults) {
        return { {}, incorrectAnswer() };
    }
    return { reply.content == Manner::answers && reply.variant < 4, {} };
}

Model::Got<double> Model::balanceOf(const QString& number)
{
    logInfo(u"Получение баланса карты Vantiro"_s);
    const auto [reply, failure] = exchange(u"GetCardBalance"_s, u"discountCardNumber="_s + number);
    if (failure) {
        return { {}, failure };
    }
    const Failure notFound { Failure::unusable, u"vantiroBalanceNotFound"_s,
                             u"В ответе от сервера не найден баланс карты"_s };
    switch (reply.content) {
    case Manner::noResult:
    case Manner::twoResults:
        return { {}, notFound };
    case Manner::plainText:
    case Manner::emptyResult:
        logError(unreadable);
        return { {}, incorrectAnswer() };
    default:
        break;
    }
    switch (reply.variant) {
    case 0:
        return { 60.7, {} };
    case 1:
        return { 1234.5, {} };
    case 2:
        return { 59.9995, {} };
    case 3:
        return { -1.5, {} };
    case 4:
        return { {}, incorrectAnswer() };
    default:
        return { {}, notFound };
    }
}

Model::Got<QString> Model::cardByPhone(const QString& phone)
{
    const auto [reply, failure] = exchange(u"GetVerifyCode"_s, u"discountCardNumber="_s + phone);
    if (failure) {
        return { {}, failure };
    }
    if (reply.content == Manner::noResult || reply.content == Manner::twoResults) {
        return { {},
                 Failure { Failure::unusable, u"vantiroConfirmCodeNotFound"_s,
                           u"В ответе от сервера не найден код подтверждения для добавления карты"_s } };
    }
    if (reply.content != Manner::answers || reply.variant >= 4) {
        return { {}, incorrectAnswer() };
    }
    return { u"5555"_s, {} };
}

Model::Got<bool> Model::isCouponValid(const QString& number)
{
    logInfo(u"Валидация купона на сервере"_s);
    const auto [reply, failure] = exchange(u"IsCouponValid"_s, u"couponNumber="_s + number);
    if (failure) {
        return { {}, failure };
    }
    if (reply.content == Manner::noResult || reply.content == Manner::twoResults) {
        return { {}, incorrectAnswer() };
    }
    return { reply.content == Manner::answers && reply.variant < 4, {} };
}

std::optional<Model::Failure> Model::sendAccrual(const QString& cheque, QString* slip)
{
    const auto [reply, failure] = exchange(u"Accrual"_s, u"cheque="_s + cheque);
    const bool onlyOne = reply.content == Manner::answers || reply.content == Manner::plainText;
    if (failure || slip == nullptr || !onlyOne || (reply.content == Manner::answers && reply.variant == 1)) {
        return failure;
    }
    logInfo(u"lastReport = …"_s);
    const QString report = uR"(print -1: <report cached="false" name="custom" title="vantiro check" type="document")"_s;
    if (reply.content == Manner::plainText) {
        *slip = report + u">\n <text>просто текст</text>\n</report>\n"_s;
        return {};
    }
    switch (reply.variant) {
    case 0:
        *slip = report + u">\n <text>Чек 1</text>\n</report>\n"_s;
        break;
    case 2:
        *slip = report + u">\n <text>Спасибо за покупку</text>\n</report>\n"_s;
        break;
    case 3:
        *slip = u"wrong root"_s;
        break;
    case 4:
        *slip = report + u">\n <br/>\n</report>\n"_s;
        break;
    default:
        *slip = report + u"/>\n"_s;
        break;
    }
    return {};
}

void Model::print(const QString& slip)
{
    if (slip == u"wrong root"_s) {
        logError(u"Ошибка преобразования отчёта от Vantiro"_s);
    } else if (!slip.isEmpty()) {
        account.told.append(slip);
    }
}

void Model::enqueue(const QString& cheque)
{
    account.told.append(u"enqueue vantiro OfflineAccrual"_s);
    account.queued.append(u"%1 OfflineAccrual cheque=%2"_s.arg(setting.hosts.at(server), cheque));
}

} // namespace walk
