#include "tests/support/cheque_service.h"

#include "tests/support/sorted_attributes.h"
#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

namespace {

const QString actionHeader = QStringLiteral("SOAPAction");

testing::Message at(const std::source_location& where)
{
    return testing::Message() << "looked at in line " << where.line() << " of " << where.file_name();
}

}

ChequeService::~ChequeService()
{
    expectNothing();
}

void ChequeService::answer(const QByteArray& content)
{
    end(RestOutcome::http(200, soap::reply(content)));
}

void ChequeService::answerText(const QByteArray& operation, const QString& text)
{
    answer('<' + operation + R"(Response xmlns="http://tempuri.org/"><)" + operation + "Result>"
           + text.toHtmlEscaped().toUtf8() + "</" + operation + "Result></" + operation + "Response>");
}

void ChequeService::fault(const QByteArray& text)
{
    end(RestOutcome::http(500, soap::reply(soap::fault(text))));
}

void ChequeService::end(const RestOutcome& outcome)
{
    rest.next(outcome);
}

void ChequeService::refuse()
{
    end(RestOutcome::connectionError(QStringLiteral("соединение отклонено")));
}

void ChequeService::whilePosting(const std::function<void()>& action)
{
    rest.whilePosting(action);
}

void ChequeService::expect(const QByteArray& action, const QByteArray& lines, const std::source_location& where)
{
    ASSERT_LT(lookedAt, rest.posts().size()) << "no request; " << at(where);
    const RestPost post = take();
    EXPECT_EQ(readable(post.url.toString()), readable(ScriptedService::address)) << at(where);
    EXPECT_EQ(readable(post.headers.value(actionHeader)),
              "http://tempuri.org/IVantiroService/" + readable(action))
        << at(where);
    const QByteArray expected = soap::request("  <tem:" + action + ">\n" + lines + "  </tem:" + action + ">\n");
    EXPECT_EQ(readable(sortedAttributes(post.body)), readable(sortedAttributes(expected))) << at(where);
}

void ChequeService::expectNothing(const std::source_location& where) const
{
    EXPECT_EQ(rest.posts().size(), lookedAt) << "requests that nobody has looked at; " << at(where);
}

RestPost ChequeService::take()
{
    const QList<RestPost> posts = rest.posts();
    if (lookedAt >= posts.size()) {
        ADD_FAILURE() << "no request";
        return {};
    }
    return posts.at(lookedAt++);
}

QString ChequeService::take(const QByteArray& action, const std::source_location& where)
{
    const RestPost post = take();
    EXPECT_EQ(readable(post.headers.value(actionHeader)), "http://tempuri.org/IVantiroService/" + readable(action))
        << at(where);
    return QString::fromUtf8(post.body);
}

QString ChequeService::latestAction() const
{
    const QList<RestPost> posts = rest.posts();
    return posts.isEmpty() ? QString() : posts.constLast().headers.value(actionHeader).section(u'/', -1);
}

QByteArray chequeParameter(const QByteArray& cheque)
{
    return R"(   <tem:cheque><![CDATA[<?xml version="1.0" encoding="UTF-8"?>)" + cheque + "]]></tem:cheque>\n";
}
