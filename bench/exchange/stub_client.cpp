#include "bench/exchange/stub_client.h"

#include "soapVantiroServiceSoap11Proxy.h"

#include <stdexcept>

struct StubClient::Private {
    std::string address;
    VantiroServiceSoap11Proxy proxy { SOAP_C_UTFSTRING };

    void require(int status)
    {
        if (status != SOAP_OK) {
            throw std::runtime_error("gSOAP has got no result");
        }
    }

    /// What the last call has allocated.
    void tidy()
    {
        proxy.destroy();
    }
};

StubClient::StubClient(const QByteArray& address)
    : d(std::make_unique<Private>())
{
    d->address = address.toStdString();
    d->proxy.soap_endpoint = d->address.c_str();
}

StubClient::~StubClient() = default;

bool StubClient::isCardValid(const std::string& cardNumber)
{
    _tempuri__IsCardValid question;
    question.discountCardNumber = cardNumber;
    _tempuri__IsCardValidResponse answer;
    d->require(d->proxy.IsCardValid(&question, answer));
    const bool result = answer.IsCardValidResult;
    d->tidy();
    return result;
}

std::string StubClient::getDiscounts(const std::string& cheque)
{
    _tempuri__GetDiscounts question;
    question.cheque = cheque;
    _tempuri__GetDiscountsResponse answer;
    d->require(d->proxy.GetDiscounts(&question, answer));
    std::string result = std::move(answer.GetDiscountsResult);
    d->tidy();
    return result;
}
