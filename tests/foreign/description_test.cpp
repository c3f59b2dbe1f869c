#include "tests/support/client_under_test.h"

#include <QFile>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <functional>

namespace {

const QString soapDescription = QStringLiteral("http://schemas.xmlsoap.org/wsdl/soap/");
const QString schema = QStringLiteral("http://www.w3.org/2001/XMLSchema");

/// What the description says of the elements of this name, in document order, as `read` tells it of each.
QStringList described(const QString& space, const QString& name,
                      const std::function<QString(const QXmlStreamAttributes&)>& read)
{
    QFile file(QStringLiteral(VANTIRO_SERVICE_WSDL));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << VANTIRO_SERVICE_WSDL;
    QXmlStreamReader reader(&file);
    QStringList found;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.namespaceUri() == space
            && reader.name() == name) {
            found.append(read(reader.attributes()));
        }
    }
    EXPECT_FALSE(reader.hasError()) << readable(reader.errorString());
    return found;
}

std::function<QString(const QXmlStreamAttributes&)> attributes(const QStringList& names)
{
    return [names](const QXmlStreamAttributes& all) {
        QStringList values;
        for (const QString& name : names) {
            values.append(all.value(name).toString());
        }
        return values.join(u' ').trimmed();
    };
}

}

TEST(ServiceDescription, NamesEachOperationWithItsAction)
{
    EXPECT_EQ(readable(described(soapDescription, QStringLiteral("operation"),
                                 attributes({ QStringLiteral("soapAction"), QStringLiteral("style") }))),
              "http://tempuri.org/IVantiroService/IsCardValid document\n"
              "http://tempuri.org/IVantiroService/GetCardBalance document\n"
              "http://tempuri.org/IVantiroService/Ping document\n"
              "http://tempuri.org/IVantiroService/GetDiscounts document\n"
              "http://tempuri.org/IVantiroService/GetMessages document\n"
              "http://tempuri.org/IVantiroService/GetCardDiscountAmount document\n"
              "http://tempuri.org/IVantiroService/SubtractBonus45 document\n"
              "http://tempuri.org/IVantiroService/CancelSubtractBonus document\n"
              "http://tempuri.org/IVantiroService/Accrual document\n"
              "http://tempuri.org/IVantiroService/OfflineAccrual document\n"
              "http://tempuri.org/IVantiroService/GetVerifyCode document\n"
              "http://tempuri.org/IVantiroService/IsCouponValid document");
}

TEST(ServiceDescription, NamesParametersAndResults)
{
    EXPECT_EQ(readable(described(schema, QStringLiteral("element"),
                                 attributes({ QStringLiteral("name"), QStringLiteral("type") }))),
              "IsCardValid\ndiscountCardNumber xs:string\n"
              "IsCardValidResponse\nIsCardValidResult xs:boolean\n"
              "GetCardBalance\ndiscountCardNumber xs:string\n"
              "GetCardBalanceResponse\nGetCardBalanceResult xs:string\n"
              "Ping\n"
              "PingResponse\nPingResult xs:boolean\n"
              "GetDiscounts\ncheque xs:string\n"
              "GetDiscountsResponse\nGetDiscountsResult xs:string\n"
              "GetMessages\ncheque xs:string\n"
              "GetMessagesResponse\nGetMessagesResult xs:string\n"
              "GetCardDiscountAmount\ndiscountCardNumber xs:string\ncheque xs:string\n"
              "GetCardDiscountAmountResponse\nGetCardDiscountAmountResult xs:decimal\n"
              "SubtractBonus45\ndiscountCardNumber xs:string\namount xs:decimal\ncheque xs:string\n"
              "SubtractBonus45Response\nSubtractBonus45Result xs:string\n"
              "CancelSubtractBonus\ndiscountCardNumber xs:string\namount xs:decimal\ncheque xs:string\n"
              "CancelSubtractBonusResponse\n"
              "Accrual\ncheque xs:string\n"
              "AccrualResponse\nAccrualResult xs:string\n"
              "OfflineAccrual\ncheque xs:string\n"
              "OfflineAccrualResponse\nOfflineAccrualResult xs:string\n"
              "GetVerifyCode\ndiscountCardNumber xs:string\n"
              "GetVerifyCodeResponse\nGetVerifyCodeResult xs:string\n"
              "IsCouponValid\ncouponNumber xs:string\n"
              "IsCouponValidResponse\nIsCouponValidResult xs:boolean");
}

TEST(ServiceDescription, IsOfQualifiedElementsAndLiteralBodies)
{
    EXPECT_EQ(
        readable(described(schema, QStringLiteral("schema"),
                           attributes({ QStringLiteral("targetNamespace"), QStringLiteral("elementFormDefault") }))),
        "http://tempuri.org/ qualified");
    EXPECT_EQ(readable(described(soapDescription, QStringLiteral("binding"),
                                 attributes({ QStringLiteral("transport"), QStringLiteral("style") }))),
              "http://schemas.xmlsoap.org/soap/http document");
    EXPECT_EQ(described(soapDescription, QStringLiteral("body"), attributes({ QStringLiteral("use") })),
              QStringList(24, QStringLiteral("literal")));
}
