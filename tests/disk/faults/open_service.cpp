#include "tests/disk/faults/open_service.h"

using namespace Qt::StringLiterals;

OpenService::OpenService()
    : results {
        { u"IsCardValid"_s, u"true"_s },
        { u"GetCardBalance"_s, uR"(<B><Balance Value="1000,00"/></B>)"_s },
        { u"GetDiscounts"_s,
          uR"(<R><Cheque><Discount DiscountID="7" Amount="9.80" Type="Amount" Percent="0"/></Cheque></R>)"_s },
        { u"GetMessages"_s, QString() },
        { u"GetCardDiscountAmount"_s, u"50.00"_s },
        { u"IsCouponValid"_s, u"true"_s },
        { u"SubtractBonus45"_s,
          uR"(<Cheque><ChequeLines><ChequeLine ChequeLineNo="2" Amount="50.00"/></ChequeLines></Cheque>)"_s },
        { u"CancelSubtractBonus"_s, QString() },
        { u"Accrual"_s, QString() },
        { u"OfflineAccrual"_s, QString() },
        { u"Ping"_s, QString() },
    }
{
    MockFactory<RestClient>::mocked = this;
}

OpenService::~OpenService()
{
    MockFactory<RestClient>::mocked = nullptr;
}

void OpenService::post(const QUrl& /*url*/, const QByteArray& body, const QHash<QString, QString>& headers)
{
    reply.clear();
    if (down) {
        return;
    }
    const QString operation = headers.value(u"SOAPAction"_s).section(u'/', -1);
    const QByteArray name = operation.toUtf8();
    if (heard) {
        heard(operation, body);
    }
    reply = R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><)" + name
        + R"(Response xmlns="http://tempuri.org/"><)" + name + "Result>"
        + results.value(operation).toHtmlEscaped().toUtf8() + "</" + name + "Result></" + name
        + "Response></s:Body></s:Envelope>";
}

int OpenService::getHttpStatus()
{
    constexpr int ok = 200;
    return isSuccess() ? ok : 0;
}

tr::Tr OpenService::getErrorText()
{
    return tr::Tr(isSuccess() ? QString() : u"соединение отклонено"_s);
}

QByteArray OpenService::getResponseBody()
{
    return reply;
}

void OpenService::setTimeout(int /*seconds*/) { }

bool OpenService::isSuccess()
{
    return !reply.isEmpty();
}

bool OpenService::hasConnectionError()
{
    return reply.isEmpty();
}

bool OpenService::hasHttpError()
{
    return false;
}
