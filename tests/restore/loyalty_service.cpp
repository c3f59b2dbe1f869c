#include "tests/restore/loyalty_service.h"

#include "tests/support/client_under_test.h"
#include "tests/support/sorted_attributes.h"

using namespace Qt::StringLiterals;
using vantiro_test::Answer;
using vantiro_test::HttpRequest;

namespace {

[[nodiscard]] QByteArray actionOf(const HttpRequest& request)
{
    const QByteArray action = request.header("SOAPAction");
    return action.mid(action.lastIndexOf('/') + 1);
}

[[nodiscard]] QByteArray sum(double roubles)
{
    return QByteArray::number(roubles, 'f', 2);
}

[[nodiscard]] QByteArray discounts(const QByteArray& request)
{
    const double perCoupon = 1.0;
    const auto coupons = static_cast<double>(request.count("<Coupon "));
    return R"(<R><ChequeLine ChequeLineNo="1"><Discount DiscountID="77" Type="Percent" Percent="10" Amount=")"
        + sum(17.98 + perCoupon * coupons)
        + R"("/></ChequeLine><ChequeLine ChequeLineNo="2"><Discount DiscountID="78" Type="Amount" Percent="0" Amount="3.00"/>)"
          "</ChequeLine></R>";
}

[[nodiscard]] QByteArray spending(const QByteArray& request)
{
    const QByteArray tag = "<tem:amount>";
    const qsizetype from = request.indexOf(tag) + tag.size();
    const double amount = request.mid(from, request.indexOf('<', from) - from).toDouble();
    return R"(<C><ChequeLine ChequeLineNo="1" Amount=")" + sum(amount - 10.0)
        + R"("/><ChequeLine ChequeLineNo="2" Amount="10.00"/></C>)";
}

/// The text of the operation's result.
[[nodiscard]] QByteArray result(const QByteArray& action, const QByteArray& request)
{
    if (action == "IsCardValid" || action == "IsCouponValid") {
        return "true";
    }
    if (action == "GetCardBalance") {
        return R"(<B><Balance Value="120.50"/></B>)";
    }
    if (action == "GetDiscounts") {
        return discounts(request);
    }
    if (action == "GetMessages") {
        return R"(<R><Msg Device="1" Body="Спасибо за покупку"/><Msg Device="2" Body="Предложите пакет"/></R>)";
    }
    if (action == "GetCardDiscountAmount") {
        return "50.00";
    }
    if (action == "SubtractBonus45") {
        return spending(request);
    }
    return action == "Accrual" ? "<doc><left>Спасибо</left></doc>" : "";
}

}

LoyaltyService::LoyaltyService()
    : server([this](const HttpRequest& request) { return answer(request); })
{
}

QString LoyaltyService::address() const
{
    return server.url().toString();
}

void LoyaltyService::loseDiscounts()
{
    discountsLost = true;
}

void LoyaltyService::keepSilentAt(qsizetype request)
{
    silentAt = request;
}

qsizetype LoyaltyService::count() const
{
    return server.requests().size();
}

QStringList LoyaltyService::requestsFrom(qsizetype first) const
{
    QStringList lines;
    for (const HttpRequest& request : server.requests().mid(first)) {
        lines.append(QString::fromLatin1(actionOf(request)) + u' ' + sortedAttributes(request.body));
    }
    return lines;
}

Answer LoyaltyService::answer(const HttpRequest& request)
{
    if (answered++ == silentAt) {
        return Answer::silence();
    }
    const QByteArray action = actionOf(request);
    if (discountsLost && action == "GetDiscounts") {
        return Answer::reply(503);
    }
    const QByteArray text = QString::fromUtf8(result(action, request.body)).toHtmlEscaped().toUtf8();
    return Answer::reply(200,
                         soap::reply('<' + action + R"(Response xmlns="http://tempuri.org/"><)" + action + "Result>"
                                     + text + "</" + action + "Result></" + action + "Response>"));
}
