#include "tests/cheque/cheque_support.h"
#include "tests/support/document_builder.h"
#include "tests/support/scripted_documents_dao.h"
#include "tests/support/xml_compare.h"

#include <QHash>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

const DocumentBuilder& sale()
{
    static const DocumentBuilder document = DocumentBuilder()
                                                .card(u"9000 \"<]]>\" & Ко"_s)
                                                .line(Goods(1, u"Сыр ]]> \"50%\""_s, 100.0).barcode(u"4600000000017"_s))
                                                .certificate(u"CERT-0001"_s, 40.0);
    return document;
}

/// Builds one of the requests for a finished cheque, for the server or for the queue.
using Build = std::function<void(OpenClient& client, QDomDocument& request, QDomElement& body, bool offline)>;

struct FamilyRow {
    const char* name;
    Build build;
};

void PrintTo(const FamilyRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class EnvelopeOfFamily : public ChequeTest, public testing::WithParamInterface<FamilyRow> {
protected:
    EnvelopeOfFamily()
    {
        dao.add(4711, DocumentBuilder().number(900).closed().build());
    }

    [[nodiscard]] QString envelope(bool offline)
    {
        QDomDocument request;
        QDomElement body;
        GetParam().build(client, request, body, offline);
        client.createXmlRequest(request, body);
        return request.toString(1);
    }

    ScriptedDocumentsDao dao;
};

TEST_P(EnvelopeOfFamily, DiffersInTheOperationsElementOnly)
{
    const QString online = envelope(false);
    const QString offline = envelope(true);

    EXPECT_EQ(online.count(u"tem:Accrual"_s), 2) << online.toStdString();
    EXPECT_EQ(online.count(u"OfflineAccrual"_s), 0) << online.toStdString();
    EXPECT_EQ(offline.count(u"tem:OfflineAccrual"_s), 2) << offline.toStdString();
    EXPECT_EQ(QString(offline).replace(u"tem:OfflineAccrual"_s, u"tem:Accrual"_s).toStdString(), online.toStdString());
}

TEST_P(EnvelopeOfFamily, HoldsTheChequeAsOneCdataSection)
{
    const QString text = envelope(true);
    const QStringList lines = canonicalXml(text).lines;

    EXPECT_TRUE(text.startsWith(u"<soapenv:Envelope "_s)) << text.toStdString();
    EXPECT_TRUE(text.contains(uR"(<tem:cheque><![CDATA[<?xml version="1.0" encoding="UTF-8"?><Cheque )"_s))
        << text.toStdString();
    EXPECT_EQ(text.count(u"<![CDATA["_s), 1);
    EXPECT_EQ(text.count(u"]]>"_s), 1);
    EXPECT_FALSE(text.contains(u"&amp;quot;"_s));
    EXPECT_FALSE(text.contains(u"&amp;lt;"_s));
    ASSERT_EQ(lines.size(), 7) << canonicalXml(text).error.toStdString() << lines.join(u'\n').toStdString();
    EXPECT_EQ(lines.mid(0, 6).join(u'\n').toStdString(),
              "/1:soapenv:Envelope\n"
              "/1:soapenv:Envelope @xmlns:soapenv = http://schemas.xmlsoap.org/soap/envelope/\n"
              "/1:soapenv:Envelope @xmlns:tem = http://tempuri.org/\n"
              "/1:soapenv:Envelope/1:soapenv:Body\n"
              "/1:soapenv:Envelope/1:soapenv:Body/1:tem:OfflineAccrual\n"
              "/1:soapenv:Envelope/1:soapenv:Body/1:tem:OfflineAccrual/1:tem:cheque");
}

INSTANTIATE_TEST_SUITE_P(
    Families, EnvelopeOfFamily,
    testing::Values(
        FamilyRow { "accrual",
                    [](OpenClient& client, QDomDocument& request, QDomElement& body, bool offline) {
                        client.buildOnlineOrOfflineAccrualRequest(sale().build(), { bonusImpact({ { 1, 10.0 } }) },
                                                                  { { 1, { u"P-1"_s } } }, { u"A-1"_s }, request, body,
                                                                  offline);
                    } },
        FamilyRow { "reversal of a return",
                    [](OpenClient& client, QDomDocument& request, QDomElement& body, bool offline) {
                        client.buildOnlineOrOfflineAccrualRequest(
                            DocumentBuilder(sale()).type(EDocumentType::goodsReturn).build(), request, body, offline);
                    } },
        FamilyRow { "reversal of a return by sale",
                    [](OpenClient& client, QDomDocument& request, QDomElement& body, bool offline) {
                        client.buildOnlineOrOfflineAccrualRequest(
                            DocumentBuilder(sale()).type(EDocumentType::returnBySale).sourceKey(4711).build(), request,
                            body, offline);
                    } },
        FamilyRow { "any cheque",
                    [](OpenClient& client, QDomDocument& request, QDomElement& body, bool offline) {
                        client.buildOnlineOrOfflineAccrualAnyCheckRequest(sale().build(), request, body, offline);
                    } },
        FamilyRow { "cancelled cheque", [](OpenClient& client, QDomDocument& request, QDomElement& body, bool offline) {
                       client.buildOnlineOrOfflineAccrualCanceledCheckRequest(sale().build(), { { 1, { u"P-1"_s } } },
                                                                              { u"A-1"_s }, request, body, offline);
                   } }));

class Envelope : public ChequeTest { };

TEST_F(Envelope, CarriesTheTextOfTheChequeUnchanged)
{
    const auto document = sale().build();
    QDomDocument request;
    QDomElement body;

    client.buildOnlineOrOfflineAccrualAnyCheckRequest(document, request, body, false);

    EXPECT_EQ(below(body, "tem:Accrual/tem:cheque").text().toStdString(),
              client.getXmlCheckString(client.buildAccrualAnyXmlCheck(document)).toStdString());
}

TEST_F(Envelope, HeadersDifferInTheActionOnly)
{
    client.setAuthorizationHeader(u"Basic Og=="_s);
    QHash<QString, QString> online = client.createHttpHeaders(u"Accrual"_s);
    QHash<QString, QString> offline = client.createHttpHeaders(u"OfflineAccrual"_s);

    EXPECT_EQ(online.take(u"SOAPAction"_s), u"http://tempuri.org/IVantiroService/Accrual"_s);
    EXPECT_EQ(offline.take(u"SOAPAction"_s), u"http://tempuri.org/IVantiroService/OfflineAccrual"_s);
    EXPECT_EQ(online, offline);
    EXPECT_EQ(online.size(), 2);
}

} // namespace
