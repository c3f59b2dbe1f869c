#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <ostream>

namespace {

std::string failureOn(const QByteArray& reply)
{
    const ClientUnderTest client({});
    return failureOf([&] { (void)client.createXmlAnswer(reply); });
}

QDomDocument parsed(const QByteArray& reply)
{
    const ClientUnderTest client({});
    return client.createXmlAnswer(reply);
}

struct Unreadable {
    const char* rule;
    QByteArray reply;
};

void PrintTo(const Unreadable& row, std::ostream* out)
{
    *out << row.reply.toStdString();
}

class UnreadableReply : public testing::TestWithParam<Unreadable> { };

struct Fault {
    const char* rule;
    QByteArray content; // of the body of the reply
    const char* text;
};

void PrintTo(const Fault& row, std::ostream* out)
{
    *out << row.content.toStdString();
}

class FaultReply : public testing::TestWithParam<Fault> { };

struct Ordinary {
    const char* rule;
    QByteArray content; // of the body of the reply
    const char* element; // found in what is returned
};

void PrintTo(const Ordinary& row, std::ostream* out)
{
    *out << row.content.toStdString();
}

class OrdinaryReply : public testing::TestWithParam<Ordinary> { };

}

INSTANTIATE_TEST_SUITE_P(
    Replies, UnreadableReply,
    testing::Values(Unreadable { "Empty", QByteArray() }, Unreadable { "Blank", " \n" },
                    Unreadable { "Text", "Service Unavailable" },
                    Unreadable { "CutOff", "<s:Envelope><s:Body><Answer>tr" },
                    Unreadable { "TagsCross", "<a><b></a></b>" }, Unreadable { "TwoRoots", "<a/><b/>" },
                    Unreadable { "DeclarationAlone", R"(<?xml version="1.0" encoding="UTF-8"?>)" },
                    Unreadable { "UnknownEntity", "<a>&nbsp;</a>" },
                    Unreadable { "AttributeTwice", R"(<a b="1" b="2"/>)" },
                    Unreadable { "ControlCharacter", QByteArray("<a>\x01</a>") },
                    Unreadable { "FaultCutOff", "<s:Envelope><s:Body><s:Fault><faultstring>отказ</faultstring>" },
                    Unreadable { "Json", R"({"IsCardValidResult": true})" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(UnreadableReply, IsIncorrectAndLogged)
{
    const LogRecorder log;

    EXPECT_EQ(failureOn(GetParam().reply), failure::incorrectAnswer);

    ASSERT_EQ(log.lines().size(), 1);
    const QRegularExpression line(
        QStringLiteral("^error vantiro: Не удалось интерпретировать ответ от сервера\\(\\[\\d+, \\d+\\] .+\\)$"));
    EXPECT_TRUE(line.match(log.lines().constFirst()).hasMatch()) << readable(log.lines());
}

TEST(Reply, LogNamesTheLineBeforeTheColumn)
{
    const LogRecorder log;

    EXPECT_EQ(failureOn("<a>\n<b>\n                    </c></b></a>"), failure::incorrectAnswer);

    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(
        log.lines().constFirst().startsWith(u"error vantiro: Не удалось интерпретировать ответ от сервера([3, 2"))
        << readable(log.lines());
}

INSTANTIATE_TEST_SUITE_P(
    Replies, FaultReply,
    testing::Values(
        Fault { "OneText",
                "<s:Fault><faultcode>s:Client</faultcode><faultstring>Карта заблокирована</faultstring>"
                "</s:Fault>",
                "Карта заблокирована" },
        Fault { "TwoTextsAreTwoLines",
                "<s:Fault><faultstring>Первая</faultstring><faultstring>Вторая</faultstring>"
                "</s:Fault>",
                "Первая\nВторая" },
        Fault { "ThreeTextsInDocumentOrder",
                "<s:Fault><x><faultstring>1</faultstring></x><faultstring>2</faultstring></s:Fault>"
                "<faultstring>3</faultstring>",
                "1\n2\n3" },
        Fault { "NoTextIsEmpty", "<s:Fault><faultcode>s:Client</faultcode></s:Fault>", "" },
        Fault { "EmptyElementIsEmpty", "<s:Fault/>", "" },
        Fault { "EmptyTextIsEmpty", "<s:Fault><faultstring/></s:Fault>", "" },
        Fault { "EmptyTextHoldsItsLine",
                "<s:Fault><faultstring/><faultstring>Вторая</faultstring><faultstring/></s:Fault>", "\nВторая\n" },
        Fault { "TextInDetailCountsToo",
                "<s:Fault><faultstring>Отказ</faultstring><detail><Inner><faultstring>Причина</faultstring></Inner>"
                "</detail></s:Fault>",
                "Отказ\nПричина" },
        Fault { "OtherTextInDetailDoesNot",
                "<s:Fault><faultstring>Отказ</faultstring><detail><Stack>at Main</Stack></detail></s:Fault>", "Отказ" },
        Fault { "TextBeforeTheFaultCountsToo", "<faultstring>Раньше</faultstring><s:Fault/>", "Раньше" },
        Fault { "TwoFaultsAreOne",
                "<s:Fault><faultstring>1</faultstring></s:Fault><s:Fault><faultstring>2</faultstring></s:Fault>",
                "1\n2" },
        Fault { "FaultBelowAResult", "<Answer><s:Fault><faultstring>Отказ</faultstring></s:Fault></Answer>", "Отказ" },
        Fault { "PrefixedTextIsNotTheText", "<s:Fault><s:faultstring>Отказ</s:faultstring></s:Fault>", "" },
        Fault { "MarkersStay", "<s:Fault><faultstring>Скидка %1 из %2 (100%)</faultstring></s:Fault>",
                "Скидка %1 из %2 (100%)" },
        Fault { "EscapesAreDecodedOnce", "<s:Fault><faultstring>&lt;b&gt; &amp;amp; &quot;</faultstring></s:Fault>",
                "<b> &amp; \"" },
        Fault { "CdataIsText", "<s:Fault><faultstring><![CDATA[a < b]]></faultstring></s:Fault>", "a < b" },
        Fault { "LineFeedsStay", "<s:Fault><faultstring>Строка\nстрока\n</faultstring></s:Fault>",
                "Строка\nстрока\n" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(FaultReply, IsTheServersOwnTextAndNotLogged)
{
    const LogRecorder log;

    EXPECT_EQ(failureOn(soap::reply(GetParam().content)), failure::fault(GetParam().text));

    EXPECT_EQ(readable(log.lines()), "");
}

INSTANTIATE_TEST_SUITE_P(
    Replies, OrdinaryReply,
    testing::Values(
        Ordinary { "Result", "<Answer>да</Answer>", "Answer" }, Ordinary { "EmptyBody", "", "s:Body" },
        Ordinary { "FaultUnderSoapEnv", "<SOAP-ENV:Fault><faultstring>Отказ</faultstring></SOAP-ENV:Fault>",
                   "SOAP-ENV:Fault" },
        Ordinary { "FaultUnderSoap", "<soap:Fault><faultstring>Отказ</faultstring></soap:Fault>", "soap:Fault" },
        Ordinary { "FaultUnderSoapenv", "<soapenv:Fault><faultstring>Отказ</faultstring></soapenv:Fault>",
                   "soapenv:Fault" },
        Ordinary { "FaultUnderCapitalS", "<S:Fault><faultstring>Отказ</faultstring></S:Fault>", "S:Fault" },
        Ordinary {
            "FaultWithoutPrefix",
            R"(<Fault xmlns="http://schemas.xmlsoap.org/soap/envelope/"><faultstring>Отказ</faultstring></Fault>)",
            "Fault" },
        Ordinary { "FaultInLowerCase", "<s:fault/>", "s:fault" },
        Ordinary { "LongerNameThanFault", "<s:FaultInfo/>", "s:FaultInfo" },
        Ordinary { "TextOfAFaultAlone", "<faultstring>Отказ</faultstring>", "faultstring" },
        Ordinary { "FaultAsText", "<Answer>&lt;s:Fault/&gt;<![CDATA[<s:Fault/>]]></Answer>", "Answer" },
        Ordinary { "PrefixWithoutDeclaration", "<a:Answer/>", "a:Answer" }),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_P(OrdinaryReply, IsReturnedAndNotLogged)
{
    const LogRecorder log;

    const QDomDocument reply = parsed(soap::reply(GetParam().content));

    EXPECT_EQ(readable(reply.documentElement().tagName()), "s:Envelope");
    EXPECT_EQ(reply.elementsByTagName(QString::fromUtf8(GetParam().element)).length(), 1);
    EXPECT_EQ(readable(log.lines()), "");
}

TEST(Reply, IsParsedWithoutNamespaces)
{
    const QDomElement answer = parsed(soap::reply(R"(<a:Answer xmlns:a="http://tempuri.org/">да</a:Answer>)"))
                                   .elementsByTagName(QStringLiteral("a:Answer"))
                                   .at(0)
                                   .toElement();

    EXPECT_TRUE(answer.namespaceURI().isNull());
    EXPECT_EQ(readable(answer.tagName()), "a:Answer");
    EXPECT_EQ(readable(answer.attribute(QStringLiteral("xmlns:a"))), "http://tempuri.org/");
}

TEST(Reply, MayHaveADeclarationAndAByteOrderMark)
{
    EXPECT_EQ(readable(parsed(R"(<?xml version="1.0" encoding="utf-8"?><a>Привет</a>)").documentElement().text()),
              "Привет");
    EXPECT_EQ(readable(parsed("\xEF\xBB\xBF<a>Привет</a>").documentElement().text()), "Привет");
}

TEST(Reply, MayHaveCommentsAndInstructions)
{
    EXPECT_EQ(readable(parsed("<!-- a --><?till b?><a><!-- <s:Fault/> -->да</a>\n<!-- c -->").documentElement().text()),
              "да");
}

TEST(Reply, MayBeAsLargeAsASlipOfManyLines)
{
    QByteArray lines;
    for (int line = 0; line < 5000; ++line) {
        lines += "<Line No=\"" + QByteArray::number(line) + "\">Спасибо за покупку</Line>";
    }

    EXPECT_EQ(parsed(soap::reply(lines)).elementsByTagName(QStringLiteral("Line")).length(), 5000);
}
