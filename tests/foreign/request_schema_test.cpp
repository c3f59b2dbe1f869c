#include "tests/support/sample_cheque.h"
#include "tests/support/client_under_test.h"
#include "tests/support/scripted_queue.h"

#include <QDomDocument>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>

namespace {

// PHP's SoapServer takes a parameter whatever its namespace, so what the description says of it is checked here as
// well, by a parser that knows schemas.

QByteArray read(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << readable(path);
    return file.readAll();
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()) << readable(path);
}

/// The schema within the description of the service, as a document of its own.
QByteArray schemaOfService()
{
    const QByteArray description = read(QStringLiteral(VANTIRO_SERVICE_WSDL));
    const QByteArray end = "</xs:schema>";
    const qsizetype from = description.indexOf("<xs:schema");
    QByteArray schema = description.mid(from, description.indexOf(end) + end.size() - from);
    schema.insert(static_cast<qsizetype>(qstrlen("<xs:schema")), R"( xmlns:xs="http://www.w3.org/2001/XMLSchema")");
    return schema;
}

/// What stands within the body of the envelope, as a document of its own.
QByteArray contentOf(const QByteArray& envelope)
{
    QDomDocument document;
    EXPECT_TRUE(document.setContent(envelope, true)) << readable(envelope);
    const QDomElement operation = document.documentElement().firstChildElement().firstChildElement();
    QDomDocument content;
    content.appendChild(content.importNode(operation, true));
    return content.toByteArray(-1);
}

/// What `xmllint` has to say against the document; empty when the schema allows it.
std::string complaint(const QByteArray& document)
{
    const QTemporaryDir folder;
    write(folder.filePath(QStringLiteral("service.xsd")), schemaOfService());
    write(folder.filePath(QStringLiteral("request.xml")), document);
    QProcess checker;
    checker.setWorkingDirectory(folder.path());
    checker.start(QStringLiteral("xmllint"),
                  { QStringLiteral("--noout"), QStringLiteral("--nonet"), QStringLiteral("--schema"),
                    QStringLiteral("service.xsd"), QStringLiteral("request.xml") });
    if (!checker.waitForFinished(30'000)) {
        checker.kill();
        checker.waitForFinished();
        return "xmllint: " + readable(checker.errorString());
    }
    const bool valid = checker.exitStatus() == QProcess::NormalExit && checker.exitCode() == 0;
    return valid ? std::string() : "refused: " + checker.readAllStandardError().toStdString();
}

/// Sends one request of each operation, to a server that refuses all of them, and returns what was sent.
QList<QByteArray> requestsOfAllOperations()
{
    ScriptedRestClient rest;
    rest.at(ScriptedService::address, RestOutcome::http(500, soap::reply(soap::fault("Отказано"))));
    const ScriptedQueue queue;
    ClientUnderTest client { { ScriptedService::address } };
    const auto document = sample::cheque(EDocumentType::sale);
    const QString card = QStringLiteral("9000000001");
    QString found;
    QString code;
    for (const std::function<void()>& call : std::initializer_list<std::function<void()>> {
             [&] { (void)client.isCardValid(card); }, [&] { (void)client.getCardBalance(card); },
             [&] { (void)client.ping(); }, [&] { (void)client.getDiscounts(document, {}, {}); },
             [&] { (void)client.getMessages(document, {}, {}, {}); },
             [&] { (void)client.getCardDiscountAmount(card, document, {}); },
             [&] {
                 sample::addCard(*document);
                 (void)client.subtractBonus(document, 100.5);
             },
             [&] { client.cancelSubtractBonus(document, -0.001); }, [&] { client.accrual(document, {}, {}, {}); },
             [&] { client.getCardNumberAndCodeByPhone(QStringLiteral("+7 999"), found, code); },
             [&] { (void)client.isCouponValid(QStringLiteral("vantiro-10")); },
             [&] { client.offlineAccrual(document, {}, {}, {}); } }) {
        (void)failureOf(call);
    }
    QList<QByteArray> bodies;
    for (const RestPost& post : rest.posts()) {
        bodies.append(post.body);
    }
    for (const ScriptedQueue::Record& record : queue.records()) {
        bodies.append(record.message.value(QStringLiteral("body")).toString().toUtf8());
    }
    return bodies;
}

}

TEST(RequestSchema, AllowsTheRequestOfEachOperation)
{
    const QList<QByteArray> requests = requestsOfAllOperations();

    EXPECT_EQ(requests.size(), 12);
    for (const QByteArray& request : requests) {
        EXPECT_EQ(complaint(contentOf(request)), "") << readable(request);
    }
}

TEST(RequestSchema, RefusesWhatIsNotOfTheContract)
{
    const QByteArray operation = R"(<tem:IsCardValid xmlns:tem="http://tempuri.org/">)";
    const QByteArray end = "</tem:IsCardValid>";
    ASSERT_EQ(complaint(operation + "<tem:discountCardNumber>1</tem:discountCardNumber>" + end), "");

    for (const char* const content :
         { "", "<discountCardNumber>1</discountCardNumber>", "<tem:cardNumber>1</tem:cardNumber>",
           "<tem:discountCardNumber>1</tem:discountCardNumber><tem:discountCardNumber>1</tem:discountCardNumber>" }) {
        EXPECT_EQ(complaint(operation + content + end).substr(0, 8), "refused:") << content;
    }
}
