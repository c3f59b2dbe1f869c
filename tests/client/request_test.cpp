#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

namespace {

QDomElement bodyWith(QDomDocument& document, const QDomNode& content)
{
    QDomElement body = document.createElement(QStringLiteral("soapenv:Body"));
    body.appendChild(content);
    return body;
}

/// The body that is posted when a card of that number is validated.
QByteArray postedFor(const QString& cardNumber)
{
    ScriptedRestClient server;
    server.next(RestOutcome::http(200, soap::reply("<IsCardValidResult>true</IsCardValidResult>")));
    ClientUnderTest client({ QStringLiteral("http://server/") });
    EXPECT_TRUE(client.isCardValid(cardNumber));
    return server.posts().constFirst().body;
}

QHash<QString, QString> headersWith(const QString& authorization)
{
    ClientUnderTest client({});
    client.setAuthorizationHeader(authorization);
    return client.createHttpHeaders(QStringLiteral("IsCardValid"));
}

}

TEST(RequestBody, IsTheEnvelopeByteForByte)
{
    EXPECT_EQ(
        readable(postedFor(QStringLiteral("1234567"))),
        R"(<soapenv:Envelope xmlns:soapenv="http://schemas.xmlsoap.org/soap/envelope/" xmlns:tem="http://tempuri.org/">
 <soapenv:Body>
  <tem:IsCardValid>
   <tem:discountCardNumber>1234567</tem:discountCardNumber>
  </tem:IsCardValid>
 </soapenv:Body>
</soapenv:Envelope>
)");
}

TEST(RequestBody, TextIsEscaped)
{
    EXPECT_EQ(readable(postedFor(QStringLiteral("<tem:a>&\"'"))),
              readable(soap::request("  <tem:IsCardValid>\n"
                                     "   <tem:discountCardNumber>&lt;tem:a>&amp;\"'</tem:discountCardNumber>\n"
                                     "  </tem:IsCardValid>\n")));
}

TEST(RequestBody, EndOfCdataIsEscapedInText)
{
    EXPECT_EQ(readable(postedFor(QStringLiteral("]]>"))),
              readable(soap::request("  <tem:IsCardValid>\n"
                                     "   <tem:discountCardNumber>]]&gt;</tem:discountCardNumber>\n"
                                     "  </tem:IsCardValid>\n")));
}

TEST(RequestBody, IsUtf8)
{
    EXPECT_EQ(readable(postedFor(QStringLiteral("Карта №7"))),
              readable(soap::request("  <tem:IsCardValid>\n"
                                     "   <tem:discountCardNumber>Карта №7</tem:discountCardNumber>\n"
                                     "  </tem:IsCardValid>\n")));
}

TEST(RequestBody, ElementWithoutChildrenIsAnEmptyTag)
{
    ScriptedRestClient server;
    server.next(RestOutcome::http(200, soap::reply("<Answer/>")));
    ClientUnderTest client({ QStringLiteral("http://server/") });

    const QDomDocument reply = client.exchange();

    EXPECT_EQ(readable(server.posts().constFirst().body), readable(soap::request("  <tem:Probe/>\n")));
    EXPECT_EQ(reply.elementsByTagName(QStringLiteral("Answer")).length(), 1);
}

TEST(RequestBody, CdataStaysOnTheLineOfItsParent)
{
    const ClientUnderTest client({});
    QDomDocument document;
    QDomElement cheque = document.createElement(QStringLiteral("tem:cheque"));
    cheque.appendChild(document.createCDATASection(QStringLiteral("<Cheque>\n <Head/>\n</Cheque>")));

    client.createXmlRequest(document, bodyWith(document, cheque));

    EXPECT_EQ(readable(document.toByteArray(1)),
              readable(soap::request("  <tem:cheque><![CDATA[<Cheque>\n <Head/>\n</Cheque>]]></tem:cheque>\n")));
}

TEST(XmlRequest, EnvelopeIsTheOnlyThingInTheDocument)
{
    const ClientUnderTest client({});
    QDomDocument document;
    const QDomElement body = bodyWith(document, document.createElement(QStringLiteral("tem:Probe")));

    client.createXmlRequest(document, body);

    ASSERT_EQ(document.childNodes().length(), 1);
    const QDomElement envelope = document.documentElement();
    EXPECT_EQ(readable(envelope.tagName()), "soapenv:Envelope");
    EXPECT_EQ(envelope.attributes().length(), 2);
    EXPECT_EQ(readable(envelope.attribute(QStringLiteral("xmlns:soapenv"))),
              "http://schemas.xmlsoap.org/soap/envelope/");
    EXPECT_EQ(readable(envelope.attribute(QStringLiteral("xmlns:tem"))), "http://tempuri.org/");
    ASSERT_EQ(envelope.childNodes().length(), 1);
    EXPECT_TRUE(envelope.firstChild() == body);
}

TEST(XmlRequest, EnvelopeIsMadeWithoutNamespaces)
{
    const ClientUnderTest client({});
    QDomDocument document;

    client.createXmlRequest(document, document.createElement(QStringLiteral("soapenv:Body")));

    EXPECT_TRUE(document.documentElement().namespaceURI().isNull());
    EXPECT_TRUE(document.documentElement().prefix().isNull());
}

TEST(HttpHeaders, AreTwoWithoutAuthorization)
{
    const QHash<QString, QString> expected {
        { QStringLiteral("Content-Type"), QStringLiteral("text/xml; charset=UTF-8") },
        { QStringLiteral("SOAPAction"), QStringLiteral("http://tempuri.org/IVantiroService/IsCardValid") },
    };

    EXPECT_EQ(headersWith(QString()), expected);
    EXPECT_EQ(headersWith(QStringLiteral("")), expected);
}

TEST(HttpHeaders, AreThreeWithAuthorization)
{
    const QHash<QString, QString> expected {
        { QStringLiteral("Content-Type"), QStringLiteral("text/xml; charset=UTF-8") },
        { QStringLiteral("SOAPAction"), QStringLiteral("http://tempuri.org/IVantiroService/IsCardValid") },
        { QStringLiteral("Authorization"), QStringLiteral("Basic Og==") },
    };

    EXPECT_EQ(headersWith(QStringLiteral("Basic Og==")), expected);
}

TEST(HttpHeaders, TakeTheAuthorizationAsItStands)
{
    EXPECT_EQ(readable(headersWith(QStringLiteral(" %1 ")).value(QStringLiteral("Authorization"))), " %1 ");
}

TEST(HttpHeaders, NameTheAction)
{
    const ClientUnderTest client({});

    EXPECT_EQ(readable(client.createHttpHeaders(QStringLiteral("GetDiscounts")).value(QStringLiteral("SOAPAction"))),
              "http://tempuri.org/IVantiroService/GetDiscounts");
}
