#include "host/facilities/rest_client.h"
#include "tests/support/scripted_rest_client.h"
#include "till/delivery/verdict.h"

#include <QElapsedTimer>
#include <QStringEncoder>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using till::Verdict;

// What a reply makes of a message of the operation OfflineAccrual. Only a whole envelope with that operation's response
// takes the message out of the queue.

namespace {

using enum Verdict::Kind;

[[nodiscard]] Verdict verdictOn(const RestOutcome& outcome)
{
    ScriptedRestClient rest;
    rest.next(outcome);
    rest.post(QUrl(u"http://server/"_s), "<e/>", {});
    return till::verdictOn(rest, u"OfflineAccrual"_s);
}

[[nodiscard]] std::string nameOf(Verdict::Kind kind)
{
    switch (kind) {
    case delivered:
        return "delivered";
    case refused:
        return "refused";
    case unanswered:
        return "unanswered";
    case misanswered:
        return "misanswered";
    }
    return "?";
}

/// "refused: reason".
[[nodiscard]] std::string told(const Verdict& verdict)
{
    return nameOf(verdict.kind) + ": " + verdict.reason.toStdString();
}

[[nodiscard]] QByteArray envelope(const QByteArray& body)
{
    return R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>)" + body
        + "</s:Body></s:Envelope>";
}

const QByteArray response
    = R"(<OfflineAccrualResponse xmlns="http://tempuri.org/"><OfflineAccrualResult>ok</OfflineAccrualResult>)"
      "</OfflineAccrualResponse>";
const QByteArray fault = "<s:Fault><faultcode>s:Client</faultcode><faultstring>Чек не принят</faultstring></s:Fault>";

struct Row {
    const char* rule;
    int status;
    QByteArray body;
    const char* expected;
};

class VerdictOnReply : public testing::TestWithParam<Row> { };

} // namespace

TEST_P(VerdictOnReply, IsToldWithItsReason)
{
    const Row& row = GetParam();
    EXPECT_EQ(told(verdictOn(RestOutcome::http(row.status, row.body))), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Responses, VerdictOnReply,
    testing::Values(
        Row { "ResponseDelivers", 200, envelope(response), "delivered: " },
        Row { "EmptyResponseDelivers", 200, envelope("<OfflineAccrualResponse/>"), "delivered: " },
        Row { "AnyStatusOfSuccessWillDo", 202, envelope(response), "delivered: " },
        Row { "DeclarationAndBlanksAreNothing", 200,
              "<?xml version=\"1.0\"?>\r\n" + envelope("\r\n  " + response + "\r\n"), "delivered: " },
        Row { "MarkOfTheByteOrderIsNothing", 200, "\xEF\xBB\xBF" + envelope(response), "delivered: " },
        Row { "PrefixesDoNotCount", 200,
              R"(<e:Envelope xmlns:e="http://schemas.xmlsoap.org/soap/envelope/"><e:Body>)"
              R"(<t:OfflineAccrualResponse xmlns:t="http://tempuri.org/"/></e:Body></e:Envelope>)",
              "delivered: " },
        Row { "DefaultNamespaceIsAsGood", 200,
              R"(<Envelope xmlns="http://schemas.xmlsoap.org/soap/envelope/"><Body>)"
              R"(<OfflineAccrualResponse xmlns="http://tempuri.org/"/></Body></Envelope>)",
              "delivered: " },
        Row {
            "HeadersArePassedOver", 200,
            R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Header><s:Fault/></s:Header><s:Body>)"
                + response + "</s:Body></s:Envelope>",
            "delivered: " },
        Row { "FaultWithinTheResponseIsItsAffair", 200,
              envelope("<OfflineAccrualResponse><s:Fault/></OfflineAccrualResponse>"), "delivered: " },
        Row { "ResponseOfAnotherOperation", 200, envelope("<AccrualResponse/>"),
              "misanswered: the reply is no answer of the service" },
        Row { "OperationItselfIsNoResponse", 200, envelope("<OfflineAccrual/>"),
              "misanswered: the reply is no answer of the service" },
        Row { "CaseOfLettersCounts", 200, envelope("<offlineAccrualResponse/>"),
              "misanswered: the reply is no answer of the service" },
        Row { "ResponseDeeperDown", 200, envelope("<a><OfflineAccrualResponse/></a>"),
              "misanswered: the reply is no answer of the service" },
        Row {
            "ResponseBesideTheBody", 200,
            R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><OfflineAccrualResponse/></s:Envelope>)",
            "misanswered: the reply is no answer of the service" },
        Row { "ResponseWithoutEnvelope", 200, response, "misanswered: the reply is no answer of the service" },
        Row { "EmptyBody", 200, envelope(""), "misanswered: the reply is no answer of the service" },
        Row { "EnvelopeWithoutBody", 200, R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"/>)",
              "misanswered: the reply is no answer of the service" },
        Row { "EnvelopeOfAnotherSoap", 200,
              R"(<s:Envelope xmlns:s="http://www.w3.org/2003/05/soap-envelope"><s:Body><OfflineAccrualResponse/>)"
              "</s:Body></s:Envelope>",
              "misanswered: the reply is no answer of the service" },
        Row { "EnvelopeOfNoNamespace", 200, "<Envelope><Body><OfflineAccrualResponse/></Body></Envelope>",
              "misanswered: the reply is no answer of the service" },
        Row { "ResponseWithStatus500", 500, envelope(response), "misanswered: HTTP status 500 with a response" }),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    Faults, VerdictOnReply,
    testing::Values(
        Row { "FaultRefuses", 500, envelope(fault), "refused: Чек не принят" },
        Row { "FaultRefusesWithStatus200", 200, envelope(fault), "refused: Чек не принят" },
        Row { "AnotherPrefixIsAFaultAllTheSame", 500,
              R"(<env:Envelope xmlns:env="http://schemas.xmlsoap.org/soap/envelope/"><env:Body><env:Fault>)"
              "<faultstring>Отказ</faultstring></env:Fault></env:Body></env:Envelope>",
              "refused: Отказ" },
        Row {
            "PrefixOfItsOwnIsAFaultAllTheSame", 500,
            envelope(
                R"(<x:Fault xmlns:x="http://schemas.xmlsoap.org/soap/envelope/"><faultstring>Отказ</faultstring></x:Fault>)"),
            "refused: Отказ" },
        Row { "PrefixOfAnotherNamespaceIsNone", 500,
              envelope(R"(<s:Fault xmlns:s="urn:other"><faultstring>Отказ</faultstring></s:Fault>)"),
              "misanswered: the reply is no answer of the service" },
        Row { "FaultOfNoNamespaceIsNone", 500, envelope("<Fault><faultstring>Отказ</faultstring></Fault>"),
              "misanswered: the reply is no answer of the service" },
        Row {
            "TextBehindOtherChildren", 500,
            envelope("<s:Fault><detail><faultstring>нет</faultstring></detail><faultstring>да</faultstring></s:Fault>"),
            "refused: да" },
        Row { "ResponseInTheDetailDeliversNothing", 500,
              envelope("<s:Fault><faultstring>Отказ</faultstring><detail>" + response + "</detail></s:Fault>"),
              "refused: Отказ" },
        Row { "FaultWithoutText", 500, envelope("<s:Fault/>"), "refused: the service refused it" },
        Row { "FaultWithBlankText", 500, envelope("<s:Fault><faultstring>  \n </faultstring></s:Fault>"),
              "refused: the service refused it" },
        Row { "TextOfSeveralLinesIsOne", 500,
              envelope("<s:Fault><faultstring> Строка\r\n\tвторая </faultstring></s:Fault>"),
              "refused: Строка вторая" },
        Row { "FaultThatIsCutOff", 500, envelope(fault).chopped(3),
              "misanswered: the reply cannot be read: Premature end of document." }),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    Statuses, VerdictOnReply,
    testing::Values(Row { "BadRequestIsFinal", 400, "", "refused: HTTP status 400" },
                    Row { "MethodNotAllowedIsFinal", 405, "", "refused: HTTP status 405" },
                    Row { "TooLargeIsFinal", 413, "", "refused: HTTP status 413" },
                    Row { "MediaTypeIsFinal", 415, "", "refused: HTTP status 415" },
                    Row { "UnprocessableIsFinal", 422, "", "refused: HTTP status 422" },
                    Row { "FinalStatusOutranksAResponse", 400, envelope(response), "refused: HTTP status 400" },
                    Row { "NotModified", 304, "", "unanswered: HTTP status 304" },
                    Row { "MovedElsewhere", 301, envelope(response), "unanswered: HTTP status 301" },
                    Row { "CredentialsAreTheOperatorsMatter", 401, "", "unanswered: HTTP status 401" },
                    Row { "ForbiddenIsTheOperatorsMatter", 403, "", "unanswered: HTTP status 403" },
                    Row { "AddressIsTheOperatorsMatter", 404, "", "unanswered: HTTP status 404" },
                    Row { "ProxyWantsCredentials", 407, "", "unanswered: HTTP status 407" },
                    Row { "RequestTimeout", 408, "", "unanswered: HTTP status 408" },
                    Row { "TooMany", 429, "", "unanswered: HTTP status 429" },
                    Row { "NotImplemented", 501, "", "unanswered: HTTP status 501" },
                    Row { "BadGateway", 502, "", "unanswered: HTTP status 502" },
                    Row { "Overloaded", 503, "", "unanswered: HTTP status 503" },
                    Row { "OverloadedEvenWithAFault", 503, envelope(fault), "unanswered: HTTP status 503" },
                    Row { "GatewayTimeout", 504, "", "unanswered: HTTP status 504" },
                    Row { "Status500WithoutAnswer", 500, "<html>Internal error</html>",
                          "misanswered: the reply is no answer of the service" }),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    Damage, VerdictOnReply,
    testing::Values(Row { "NothingAtAll", 200, "",
                          "misanswered: the reply cannot be read: Premature end of document." },
                    Row { "PageOfANetworkThatWantsALogin", 200, "<html><body>Войдите</body></html>",
                          "misanswered: the reply is no answer of the service" },
                    Row { "DocumentType", 200, "<!DOCTYPE a>" + envelope(response),
                          "misanswered: the reply cannot be read: it declares a document type" },
                    Row { "EntityBomb", 200,
                          "<!DOCTYPE a [<!ENTITY e \"" + QByteArray(4000, 'x') + "\">]>" + envelope("<a>&e;&e;&e;</a>"),
                          "misanswered: the reply cannot be read: it declares a document type" },
                    Row { "PrefixBeforeTheDigitsOfAReference", 200,
                          envelope("<OfflineAccrualResponse>&#x0x41;</OfflineAccrualResponse>"),
                          "misanswered: the reply cannot be read: it holds a malformed character reference" },
                    Row { "PrefixBeforeTheDigitsOfAReferenceInAFault", 500,
                          envelope("<s:Fault><faultstring a='&#x0X41;'>Отказ</faultstring></s:Fault>"),
                          "misanswered: the reply cannot be read: it holds a malformed character reference" },
                    Row { "DeclarationThatRepeatsItself", 200,
                          "<?xml version='1.0' encoding='utf-8' encoding='utf-8'?>" + envelope(response),
                          "misanswered: the reply cannot be read: its XML declaration says something twice" },
                    Row { "DeclarationThatIsAloneTwice", 200,
                          "<?xml version='1.0' standalone='yes' standalone='no'?>" + envelope(response),
                          "misanswered: the reply cannot be read: its XML declaration says something twice" },
                    Row { "TwoMarksOfTheByteOrder", 200, "\xEF\xBB\xBF\xEF\xBB\xBF" + envelope(response),
                          "misanswered: the reply begins with two byte order marks" },
                    Row { "TextBehindTheEnvelope", 200, envelope(response) + "x",
                          "misanswered: the reply cannot be read: Extra content at end of document." }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(Verdict, NoReplyIsUnansweredWithTheReasonOfTheClient)
{
    EXPECT_EQ(told(verdictOn(RestOutcome::connectionError(u"соединение отклонено"_s))),
              "unanswered: соединение отклонено");
}

TEST(Verdict, TextsThatAreNoXmlDeliverNothing)
{
    for (const QByteArray& body : { QByteArray("{}"), QByteArray("OK"), QByteArray(1, '\0'), QByteArray("<"),
                                    QByteArray("\xFF\xFE\xFF\xFE"), QByteArray("<a></b>") }) {
        EXPECT_EQ(verdictOn(RestOutcome::http(200, body)).kind, misanswered) << body.toStdString();
    }
}

TEST(Verdict, ResponseThatIsCutAnywhereDeliversNothing)
{
    const QByteArray whole = envelope(response);
    ASSERT_EQ(verdictOn(RestOutcome::http(200, whole)).kind, delivered);
    for (qsizetype length = 0; length < whole.size(); ++length) {
        ASSERT_EQ(verdictOn(RestOutcome::http(200, whole.first(length))).kind, misanswered) << length;
    }
}

TEST(Verdict, FaultThatIsCutAnywhereRefusesNothing)
{
    const QByteArray whole = envelope(fault);
    ASSERT_EQ(verdictOn(RestOutcome::http(500, whole)).kind, refused);
    for (qsizetype length = 0; length < whole.size(); ++length) {
        ASSERT_EQ(verdictOn(RestOutcome::http(500, whole.first(length))).kind, misanswered) << length;
    }
}

TEST(Verdict, AnswersInUtf16AreUnderstood)
{
    const QString text = QString::fromUtf8(R"(<?xml version="1.0" encoding="utf-16"?>)" + envelope(fault));
    for (const auto encoding : { QStringConverter::Utf16LE, QStringConverter::Utf16BE }) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        EXPECT_EQ(told(verdictOn(RestOutcome::http(500, encoder.encode(text)))), "refused: Чек не принят");
    }
}

TEST(Verdict, DocumentTypeInUtf16IsNoHidingPlace)
{
    QStringEncoder encoder(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
    const QByteArray reply = encoder.encode(QString::fromUtf8("<!DOCTYPE a>" + envelope(response)));
    EXPECT_EQ(told(verdictOn(RestOutcome::http(200, reply))),
              "misanswered: the reply cannot be read: it declares a document type");
}

TEST(Verdict, HostileRepliesTakeNoTime)
{
    QByteArray attributes = "<a";
    QByteArray namespaces;
    for (int i = 0; i < 100'000; ++i) {
        attributes += " a" + QByteArray::number(i) + "=\"\"";
        namespaces += "<a xmlns:n" + QByteArray::number(i) + "=\"u\">";
    }
    const QList<QByteArray> replies { envelope(attributes + "/>"),
                                      envelope(namespaces),
                                      envelope(QByteArray("<a>").repeated(400'000)),
                                      QByteArray(8'000'000, '<'),
                                      envelope(QByteArray(8'000'000, 'x')),
                                      envelope(QByteArray("&lt;").repeated(500'000)) };
    for (const QByteArray& reply : replies) {
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(verdictOn(RestOutcome::http(200, reply)).kind, misanswered);
        EXPECT_LT(timer.elapsed(), 4000) << reply.first(200).toStdString();
    }
}

TEST(Verdict, ReasonIsBounded)
{
    const Verdict verdict = verdictOn(RestOutcome::http(
        500, envelope("<s:Fault><faultstring>" + QByteArray(100'000, 'z') + "</faultstring></s:Fault>")));
    EXPECT_EQ(told(verdict), "refused: " + std::string(300, 'z') + "…");
}

TEST(Verdict, ReasonOfExactlyTheBoundIsWhole)
{
    const Verdict verdict = verdictOn(
        RestOutcome::http(500, envelope("<s:Fault><faultstring>" + QByteArray(300, 'z') + "</faultstring></s:Fault>")));
    EXPECT_EQ(told(verdict), "refused: " + std::string(300, 'z'));
}

TEST(Verdict, ReasonNeverEndsInHalfACharacter)
{
    const QByteArray text = QByteArray(299, 'z') + QString::fromUcs4(U"\U0001F600").toUtf8().repeated(20);
    const Verdict verdict
        = verdictOn(RestOutcome::http(500, envelope("<s:Fault><faultstring>" + text + "</faultstring></s:Fault>")));
    EXPECT_EQ(told(verdict), "refused: " + std::string(299, 'z') + "…");
}

TEST(Verdict, ReasonRepeatsNoCredentials)
{
    const Verdict verdict = verdictOn(RestOutcome::http(
        500, envelope("<s:Fault><faultstring>Authorization: Basic a2Fzc2E6c2VjcmV0</faultstring></s:Fault>")));
    EXPECT_EQ(verdict.kind, refused);
    EXPECT_THAT(verdict.reason.toStdString(), testing::Not(testing::HasSubstr("a2Fzc2E6c2VjcmV0")));
    EXPECT_THAT(verdict.reason.toStdString(), testing::HasSubstr("Authorization"));
}
