#include "tests/walk/answers.h"

#include <QMap>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace walk {

namespace {

QString discountsAnswer(int variant)
{
    switch (variant) {
    case 0:
    case 1:
        return uR"(<R><ChequeLine ChequeLineNo="1"><Discount DiscountID="77" Amount="17.98" Type="Percent")"
               uR"( Percent="10"/></ChequeLine></R>)"_s;
    case 2:
        return uR"(<R><Cheque><Discount DiscountID="9" Amount="5.00"/></Cheque></R>)"_s;
    case 3:
        return uR"(<R><Cheque><Discount DiscountID="12" Amount="1.25"/></Cheque><Lines><ChequeLine ChequeLineNo="2">)"
               uR"(<Discount DiscountID="78" Amount="3.50" Type="Sum" Percent="0"/></ChequeLine></Lines></R>)"_s;
    case 4:
        return u"<R/>"_s;
    default: // no rate: refused as a whole
        return uR"(<R><ChequeLine ChequeLineNo="1"><Discount DiscountID="77" Amount="17.98" Type="Sum"/></ChequeLine></R>)"_s;
    }
}

QString messagesAnswer(int variant)
{
    switch (variant) {
    case 0:
    case 1:
        return uR"(<R><Msg Device="1" Body="Спасибо"/><Msg Device="2" Body="Пакет?"/></R>)"_s;
    case 2:
        return uR"(<R><Msg Device="1" Body="Приходите"/></R>)"_s;
    case 3: // an unknown device, one that is no number, two messages for one
        return uR"(<R><Msg Device="3" Body="Никому"/><Msg Device="x" Body="Потеряно"/><Msg Device="2" Body="А"/>)"
               uR"(<Msg Device="2" Body="Б"/></R>)"_s;
    case 4:
        return uR"(<R><Msg Device="2"/></R>)"_s;
    default:
        return u"<R/>"_s;
    }
}

QString subtractionAnswer(int variant)
{
    switch (variant) {
    case 0:
    case 1:
        return uR"(<Cheque><ChequeLine ChequeLineNo="1" Amount="10.00"/></Cheque>)"_s;
    case 2:
        return uR"(<R><ChequeLine ChequeLineNo="1" Amount="6.50"/><X><ChequeLine ChequeLineNo="2" Amount="3.50"/></X></R>)"_s;
    case 3: // escaped once more
        return u"&lt;R&gt;&lt;ChequeLine ChequeLineNo=&quot;2&quot; Amount=&quot;5.5&quot;/&gt;&lt;/R&gt;"_s;
    case 4:
        return u"<R/>"_s;
    default: // a comma: the points are gone, and so is the record
        return uR"(<R><ChequeLine ChequeLineNo="1" Amount="1,00"/></R>)"_s;
    }
}

QString accrualAnswer(int variant)
{
    switch (variant) {
    case 0:
        return u"<doc><noformat>Чек 1</noformat></doc>"_s;
    case 1:
        return u""_s;
    case 2:
        return u"Спасибо за покупку"_s;
    case 3: // not a slip that can be printed here
        return u"<docs/>"_s;
    case 4:
        return u"<doc><br/></doc>"_s;
    default:
        return u"<doc/>"_s;
    }
}

} // namespace

QString answerTo(const QString& action, int variant)
{
    static const QMap<QString, QStringList> plain {
        { u"IsCardValid"_s, { u"true"_s, u"true"_s, u"true"_s, u"true"_s, u"false"_s, u"TRUE"_s } },
        { u"GetCardBalance"_s,
          { uR"(<R><Balance Value="60.7"/></R>)"_s, uR"(<R><Balance Value="1234,50"/></R>)"_s,
            uR"(<Balance Value="59.9995"/>)"_s, uR"(<Balance Value="-1.5"/>)"_s, uR"(<Balance Value="1 234,50"/>)"_s,
            uR"(<R><Balance Value="1"/><Balance Value="2"/></R>)"_s } },
        { u"GetCardDiscountAmount"_s, { u"50.00"_s, u"12.349"_s, u"0.005"_s, u"0.0051"_s, u"100"_s, u"12,50"_s } },
        { u"IsCouponValid"_s, { u"true"_s, u"true"_s, u"true"_s, u"true"_s, u"false"_s, u"True"_s } },
        { u"GetVerifyCode"_s,
          { u"1234:5555"_s, u"1234:5555"_s, u"1234:5555"_s, u"1234:5555"_s, u":5555"_s, u"1:2:3"_s } },
    };
    if (action == u"GetDiscounts"_s) {
        return discountsAnswer(variant);
    }
    if (action == u"GetMessages"_s) {
        return messagesAnswer(variant);
    }
    if (action == u"SubtractBonus45"_s) {
        return subtractionAnswer(variant);
    }
    if (action == u"Accrual"_s) {
        return accrualAnswer(variant);
    }
    const auto found = plain.constFind(action);
    return found == plain.constEnd() ? QString() : found->at(variant);
}

} // namespace walk
