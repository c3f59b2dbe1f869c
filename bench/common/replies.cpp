#include "bench/common/replies.h"

using namespace Qt::StringLiterals;

QByteArray reply(const QString& operation, const QString& result)
{
    const QString text = uR"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><%1Response )"
                         uR"(xmlns="http://tempuri.org/"><%1Result>%2</%1Result></%1Response></s:Body></s:Envelope>)"_s;
    return text.arg(operation, result.toHtmlEscaped()).toUtf8();
}

QString discountsOn(int lineCount)
{
    QString lines;
    for (int position = 1; position <= lineCount; ++position) {
        lines += uR"(<ChequeLine ChequeLineNo="%1"><Discounts><Discount DiscountID="%2" Amount="2.50" Type="Percent" )"
                 uR"(Percent="5"/></Discounts></ChequeLine>)"_s.arg(QString::number(position),
                                                                    QString::number(1 + position % 4));
    }
    return u"<Response><Cheque/><ChequeLines>%1</ChequeLines></Response>"_s.arg(lines);
}

std::map<std::string, QByteArray> repliesToSale(int lineCount)
{
    constexpr int kopecks = 3000;
    QString spread;
    for (int position = 1; position <= lineCount; ++position) {
        spread += uR"(<ChequeLine ChequeLineNo="%1" Amount="%2"/>)"_s.arg(
            QString::number(position), QString::number(kopecks / lineCount / 100.0, 'f', 2));
    }
    const std::pair<QString, QString> results[] {
        { u"IsCardValid"_s, u"true"_s },
        { u"GetCardBalance"_s, uR"(<B><Balance Value="1000,00"/></B>)"_s },
        { u"GetDiscounts"_s, discountsOn(lineCount) },
        { u"GetMessages"_s, {} },
        { u"GetCardDiscountAmount"_s, u"50.00"_s },
        { u"IsCouponValid"_s, u"true"_s },
        { u"SubtractBonus45"_s, u"<Cheque><ChequeLines>%1</ChequeLines></Cheque>"_s.arg(spread) },
        { u"Accrual"_s, {} },
        { u"CancelSubtractBonus"_s, {} },
        { u"Ping"_s, {} },
    };
    std::map<std::string, QByteArray> replies;
    for (const auto& [operation, result] : results) {
        replies.emplace(operation.toStdString(), reply(operation, result));
    }
    return replies;
}
