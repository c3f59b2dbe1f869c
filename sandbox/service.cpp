#include "sandbox/service.h"

#include "sandbox/accrual.h"
#include "sandbox/discounts.h"
#include "sandbox/messages.h"
#include "sandbox/refusal.h"
#include "sandbox/spending.h"
#include "sandbox/xml_tree.h"

namespace sandbox {

namespace {

[[nodiscard]] std::string wordOf(bool value)
{
    return value ? "true" : "false";
}

[[nodiscard]] Kopecks amountOf(const Call& call)
{
    const auto amount = parseFixed(call.parameter(amountParameter), 2);
    if (!amount) {
        throw Refusal("Неверный запрос: amount не число с двумя знаками");
    }
    return *amount;
}

}

Service::Service(Rules allRules, const std::filesystem::path& state, std::string serverName, std::string soapNamespace)
    : serviceRules(std::move(allRules))
    , server(std::move(serverName))
    , space(std::move(soapNamespace))
    , database(state)
{
    Transaction transaction(database);
    Ledger ledger(database);
    for (const CardRule& card : serviceRules.cards) {
        ledger.addCard(card.number, card.balance);
    }
    transaction.commit();
}

ServiceReply Service::execute(RequestRecord request, std::string_view action)
{
    const std::lock_guard lock(mutex);
    try {
        return executeAlone(request, action);
    } catch (const DatabaseFailure& failure) {
        const std::string reason = std::string("Ошибка базы данных сервиса: ") + failure.what();
        return { 500, faultText(Blame::server, reason), std::string(outcome::refused), {}, reason };
    }
}

void Service::keep(RequestRecord request)
{
    const std::lock_guard lock(mutex);
    request.server = server;
    Transaction transaction(database);
    static_cast<void>(RequestLog(database).add(request));
    transaction.commit();
}

ServiceReply Service::executeAlone(RequestRecord& request, std::string_view action)
{
    request.server = server;
    ServiceReply reply;
    Transaction transaction(database);
    RequestLog log(database);
    const std::int64_t id = log.add(request);
    database.run("SAVEPOINT execution");
    try {
        const Call call = readCall(request.body, action, space);
        const OperationForm& form = formOf(call.operation);
        request.operation = form.name;
        const Done done = perform(call, id, request.uid);
        reply.body = replyText(form, done.result, space);
        reply.outcome = done.outcome;
    } catch (const Refusal& refusal) {
        database.run("ROLLBACK TO execution");
        reply.status = 500;
        reply.body = faultText(Blame::client, refusal.what());
        reply.outcome = outcome::refused;
        reply.reason = refusal.what();
    }
    database.run("RELEASE execution");
    reply.uid = request.uid;
    request.outcome = reply.outcome;
    request.status = reply.status;
    request.reason = reply.reason;
    log.finish(id, request);
    transaction.commit();
    return reply;
}

Service::Done Service::perform(const Call& call, std::int64_t request, std::string& uid)
{
    switch (call.operation) {
    case Operation::ping:
        return { wordOf(true), outcome::answered };
    case Operation::isCardValid: {
        const CardRule* const card = serviceRules.findCard(call.parameter(cardParameter));
        return { wordOf(card != nullptr && !card->isBlocked), outcome::answered };
    }
    case Operation::getCardBalance: {
        const std::string& card = call.parameter(cardParameter);
        requireValidCard(serviceRules, card);
        return { "<Card><Balance Value=\"" + moneyText(Ledger(database).balance(card)) + "\"/></Card>",
                 outcome::answered };
    }
    case Operation::getVerifyCode: {
        const CardRule* const card = serviceRules.findPhone(call.parameter(cardParameter));
        if (card == nullptr) {
            throw Refusal("Карта по номеру телефона не найдена");
        }
        requireValidCard(serviceRules, card->number);
        return { card->code + ':' + card->number, outcome::answered };
    }
    case Operation::isCouponValid: {
        const CouponRule* const coupon = serviceRules.findCoupon(call.parameter(couponParameter));
        return { wordOf(coupon != nullptr && !coupon->isRefused), outcome::answered };
    }
    default:
        return performOnCheque(call, request, uid);
    }
}

Service::Done Service::performOnCheque(const Call& call, std::int64_t request, std::string& uid)
{
    const Cheque cheque = readCheque(call.parameter(chequeParameter));
    uid = cheque.uid;
    if (call.operation == Operation::accrual || call.operation == Operation::offlineAccrual) {
        const AccrualAnswer answer = Accrual(database, serviceRules).accept(cheque, request);
        return { answer.result, answer.outcome };
    }
    if (cheque.status != ChequeStatus::open) {
        throw Refusal("Неверный чек: чек не открыт");
    }
    if (call.operation == Operation::getDiscounts) {
        return { discountsText(grantDiscounts(cheque, serviceRules)), outcome::answered };
    }
    if (call.operation == Operation::getMessages) {
        const Kopecks balance = cheque.card ? Ledger(database).balance(cheque.card->number) : 0;
        return { messagesText(cheque, serviceRules, balance), outcome::answered };
    }
    return performOnPoints(call, cheque, request);
}

Service::Done Service::performOnPoints(const Call& call, const Cheque& cheque, std::int64_t request)
{
    Spending spending(database, serviceRules);
    const std::string& card = call.parameter(cardParameter);
    if (call.operation == Operation::getCardDiscountAmount) {
        return { moneyText(spending.limit(card, cheque)), outcome::answered };
    }
    if (call.operation == Operation::subtractBonus) {
        // Its readers undo one more escaping than others.
        return { escaped(spending.subtract(card, amountOf(call), cheque, request)), outcome::answered };
    }
    const bool isNew = spending.cancel(card, amountOf(call), cheque, request);
    return { {}, isNew ? outcome::answered : outcome::repeat };
}

}
