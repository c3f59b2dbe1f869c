#include "tests/support/client_under_test.h"

#include "client/exceptions.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace {

std::string nameOf(const BasicException& exception)
{
    const std::type_info& type = typeid(exception);
    if (type == typeid(VantiroFaultException)) {
        return "VantiroFaultException";
    }
    if (type == typeid(VantiroNoConnectionException)) {
        return "VantiroNoConnectionException";
    }
    if (type == typeid(VantiroException)) {
        return "VantiroException";
    }
    return type.name();
}

testing::Message at(const std::source_location& where)
{
    return testing::Message() << "looked at in line " << where.line() << " of " << where.file_name();
}

}

ClientUnderTest::ClientUnderTest(const QStringList& servers)
{
    for (const QString& server : servers) {
        hosts.append(QUrl(server));
    }
}

QDomDocument ClientUnderTest::exchange()
{
    QDomDocument document;
    QDomElement body = document.createElement(QStringLiteral("soapenv:Body"));
    body.appendChild(document.createElement(QStringLiteral("tem:Probe")));
    return processSoapMessage(document, body, QStringLiteral("Probe"));
}

ScriptedService::~ScriptedService()
{
    expectNothing();
}

void ScriptedService::answer(const QByteArray& content)
{
    rest.next(RestOutcome::http(200, soap::reply(content)));
}

void ScriptedService::fault(const QByteArray& text)
{
    rest.next(RestOutcome::http(500, soap::reply(soap::fault(text))));
}

void ScriptedService::refuse()
{
    rest.next(RestOutcome::connectionError(QStringLiteral("соединение отклонено")));
}

void ScriptedService::expect(const QByteArray& action, const QByteArray& lines, const std::source_location& where)
{
    const QList<RestPost> posts = rest.posts();
    ASSERT_LT(lookedAt, posts.size()) << "no request; " << at(where);
    const RestPost& post = posts.at(lookedAt);
    ++lookedAt;
    EXPECT_EQ(readable(post.url.toString()), readable(address)) << at(where);
    EXPECT_EQ(readable(post.headers.value(QStringLiteral("SOAPAction"))),
              "http://tempuri.org/IVantiroService/" + readable(action))
        << at(where);
    EXPECT_EQ(readable(post.body),
              readable(soap::request("  <tem:" + action + ">\n" + lines + "  </tem:" + action + ">\n")))
        << at(where);
}

void ScriptedService::expectNothing(const std::source_location& where) const
{
    EXPECT_EQ(rest.posts().size(), lookedAt) << "requests that nobody has looked at; " << at(where);
}

QByteArray soap::request(const QByteArray& lines)
{
    return R"(<soapenv:Envelope xmlns:soapenv="http://schemas.xmlsoap.org/soap/envelope/")"
           R"( xmlns:tem="http://tempuri.org/">)"
           "\n <soapenv:Body>\n"
        + lines + " </soapenv:Body>\n</soapenv:Envelope>\n";
}

QByteArray soap::reply(const QByteArray& content)
{
    return R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>)" + content
        + "</s:Body></s:Envelope>";
}

QByteArray soap::fault(const QByteArray& text)
{
    return R"(<s:Fault><faultcode>s:Client</faultcode><faultstring xml:lang="ru-RU">)" + text
        + "</faultstring></s:Fault>";
}

std::string failure::fault(const std::string& text)
{
    return "VantiroFaultException : " + text;
}

std::string failureOf(const std::function<void()>& call)
{
    try {
        call();
    } catch (const BasicException& exception) {
        return nameOf(exception) + ' ' + readable(exception.tr().getKey()) + ": " + readable(exception.tr().ru());
    }
    return "nothing";
}

std::string readable(const QString& text)
{
    return text.toStdString();
}

std::string readable(const QByteArray& text)
{
    return text.toStdString();
}

std::string readable(const QStringList& lines)
{
    return readable(lines.join(QLatin1Char('\n')));
}
