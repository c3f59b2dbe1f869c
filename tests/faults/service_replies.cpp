#include "tests/faults/service_replies.h"

#include "tests/support/client_under_test.h"

using namespace Qt::StringLiterals;

namespace faults {

namespace {

[[nodiscard]] QString resultOf(const QByteArray& action)
{
    if (action == "IsCardValid" || action == "IsCouponValid") {
        return u"true"_s;
    }
    if (action == "GetCardBalance") {
        return uR"(<B><Balance Value="120,50"/></B>)"_s;
    }
    if (action == "GetCardDiscountAmount") {
        return u"50.00"_s;
    }
    if (action == "SubtractBonus45") {
        return uR"(<C><ChequeLine ChequeLineNo="1" Amount="40.00"/></C>)"_s;
    }
    if (action == "GetVerifyCode") {
        return u"1234:9000000001"_s;
    }
    return action == "Accrual" ? u"<doc><left>Спасибо</left></doc>"_s : QString();
}

}

QByteArray actionOf(const vantiro_test::HttpRequest& request)
{
    const QByteArray action = request.header("SOAPAction");
    return action.mid(action.lastIndexOf('/') + 1);
}

QByteArray responseTo(const QByteArray& action)
{
    return R"(<?xml version="1.0" encoding="utf-8"?>)"
        + soap::reply('<' + action + R"(Response xmlns="http://tempuri.org/"><)" + action + "Result>"
                      + resultOf(action).toHtmlEscaped().toUtf8() + "</" + action + "Result></" + action + "Response>");
}

QByteArray faultUnder(const QByteArray& prefix)
{
    return QByteArray(R"(<p:Envelope xmlns:p="http://schemas.xmlsoap.org/soap/envelope/"><p:Body><p:Fault>)"
                      "<faultcode>p:Client</faultcode><faultstring>Карта заблокирована</faultstring>"
                      "</p:Fault></p:Body></p:Envelope>")
        .replace("<p:", '<' + prefix + ':')
        .replace("</p:", "</" + prefix + ':')
        .replace(":p=", ':' + prefix + '=');
}

QByteArray http(const QByteArray& status, const QByteArray& body, const QByteArray& headers)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: text/xml; charset=utf-8\r\n" + headers
        + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

}
