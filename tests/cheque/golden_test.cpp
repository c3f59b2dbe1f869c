#include "tests/cheque/golden_documents.h"
#include "tests/cheque/schema_check.h"
#include "tests/support/document_builder.h"
#include "tests/support/scripted_documents_dao.h"
#include "tests/support/xml_compare.h"

#include <QDir>
#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString folder = QStringLiteral(VANTIRO_GOLDEN_FOLDER);

QStringList goldenFiles()
{
    return QDir(folder).entryList({ u"*.xml"_s }, QDir::Files, QDir::Name);
}

std::vector<std::string> fileNames()
{
    std::vector<std::string> names;
    for (const QString& name : goldenFiles()) {
        names.push_back(name.toStdString());
    }
    return names;
}

QString contentOf(const QString& name)
{
    QFile file(QDir(folder).filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// The cheque that the request of an accrual carries.
QString chequeInRequest(OpenClient& client, const GoldenDocument& golden)
{
    QDomDocument request;
    QDomElement body;
    if (golden.document->getDocumentType() == EDocumentType::goodsReturn) {
        client.buildOnlineOrOfflineAccrualRequest(golden.document, request, body, false);
    } else {
        client.buildOnlineOrOfflineAccrualRequest(golden.document, golden.spent, golden.positionCoupons, golden.coupons,
                                                  request, body, false);
    }
    return below(body, "tem:Accrual/tem:cheque").text();
}

QString chequeOf(OpenClient& client, const GoldenDocument& golden, const QString& form)
{
    if (form == u"ordinary"_s) {
        return client.getXmlCheckString(
            client.buildXmlCheck(golden.document, golden.positionCoupons, golden.coupons, golden.granted));
    }
    if (form == u"accrual"_s) {
        return chequeInRequest(client, golden);
    }
    if (form == u"back"_s) {
        return client.getXmlCheckString(client.buildBackXmlCheck(golden.document));
    }
    if (form == u"any"_s) {
        return client.getXmlCheckString(client.buildAccrualAnyXmlCheck(golden.document));
    }
    if (form == u"canceled"_s) {
        return client.getXmlCheckString(
            client.buildAccrualCanceledXmlCheck(golden.document, golden.positionCoupons, golden.coupons));
    }
    ADD_FAILURE() << "no such form: " << form.toStdString();
    return {};
}

class GoldenCheque : public testing::TestWithParam<std::string> { };

TEST_P(GoldenCheque, IsWhatComesOut)
{
    const QStringList parts = QString::fromStdString(GetParam()).split(QLatin1Char('.'));
    ASSERT_EQ(parts.size(), 3) << "the name is made of document, form and xml";
    const QList<GoldenDocument> documents = goldenDocuments();
    const auto golden = std::find_if(documents.cbegin(), documents.cend(),
                                     [&](const GoldenDocument& document) { return document.name == parts.at(0); });
    ASSERT_NE(golden, documents.cend()) << "no test makes this document";
    ScriptedDocumentsDao dao;
    dao.add(
        4711,
        DocumentBuilder().number(900).openedAt(at("2024-03-01T10:00:00")).closedAt(at("2024-03-01T10:05:00")).build());
    OpenClient client;
    client.noBonusForMinprice = golden->noBonusForMinprice;
    client.forbidDiscountForDiscountedPosition = golden->forbidDiscountForDiscountedPosition;
    client.setCheckData(golden->checkData);

    const QString text = chequeOf(client, *golden, parts.at(1));

    EXPECT_TRUE(sameXml(text, contentOf(QString::fromStdString(GetParam()))));
    EXPECT_TRUE(isValidCheque(text));
}

std::string testName(const testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '-' || c == '.'; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Files, GoldenCheque, testing::ValuesIn(fileNames()), testName);

TEST(GoldenCheques, CoverEveryFormOfEveryDocument)
{
    QStringList wanted;
    for (const GoldenDocument& golden : goldenDocuments()) {
        for (const QString& form : golden.forms) {
            wanted.append(u"%1.%2.xml"_s.arg(golden.name, form));
        }
    }
    wanted.sort();

    EXPECT_EQ(goldenFiles().join(QLatin1Char('\n')).toStdString(), wanted.join(QLatin1Char('\n')).toStdString());
    EXPECT_GE(wanted.size(), 100);
}

TEST(GoldenCheques, AreThemselvesValid)
{
    QList<QString> texts;
    for (const QString& name : goldenFiles()) {
        texts.append(contentOf(name));
    }

    EXPECT_TRUE(areValidCheques(texts));
}

} // namespace
