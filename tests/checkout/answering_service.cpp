#include "tests/checkout/answering_service.h"

#include "tests/support/client_under_test.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

AnsweringService::AnsweringService()
{
    EXPECT_EQ(MockFactory<RestClient>::mocked, nullptr) << "two substitutes at once";
    MockFactory<RestClient>::mocked = this;
    answer(u"IsCardValid"_s, u"true"_s);
    answer(u"GetCardBalance"_s, uR"(<B><Balance Value="1000,00"/></B>)"_s);
    grant(QString());
    answer(u"GetMessages"_s, QString());
    answer(u"GetCardDiscountAmount"_s, u"50.00"_s);
    answer(u"GetVerifyCode"_s, u"1234:9000000001"_s);
    answer(u"IsCouponValid"_s, u"true"_s);
    answer(u"SubtractBonus45"_s, u"<C/>"_s);
    answer(u"CancelSubtractBonus"_s, QString());
    answer(u"Accrual"_s, QString());
    answer(u"Ping"_s, QString());
}

AnsweringService::~AnsweringService()
{
    MockFactory<RestClient>::mocked = nullptr;
}

void AnsweringService::answer(const QString& action, const QString& result)
{
    const QByteArray name = action.toUtf8();
    answerRaw(action,
              soap::reply('<' + name + R"(Response xmlns="http://tempuri.org/"><)" + name + "Result>"
                          + result.toHtmlEscaped().toUtf8() + "</" + name + "Result></" + name + "Response>"));
}

void AnsweringService::answerRaw(const QString& action, const QByteArray& body)
{
    replies[action] = { 200, body };
}

void AnsweringService::refuse(const QString& action, const QString& text)
{
    replies[action] = { 500, soap::reply(soap::fault(text.toUtf8())) };
}

void AnsweringService::grant(const QString& discounts)
{
    answer(u"GetDiscounts"_s, discounts.isEmpty() ? QString() : u"<R>"_s + discounts + u"</R>"_s);
}

QStringList AnsweringService::bodies(const QString& action) const
{
    QStringList found;
    for (const Asked& one : asked) {
        if (one.action == action) {
            found.append(one.body);
        }
    }
    return found;
}

void AnsweringService::post(const QUrl& /*url*/, const QByteArray& body, const QHash<QString, QString>& headers)
{
    const QString action = headers.value(u"SOAPAction"_s).section(u'/', -1);
    asked.append({ action, QString::fromUtf8(body) });
    latest = { 0, {} };
    if (within) {
        within(action);
    }
    if (!down) {
        EXPECT_TRUE(replies.contains(action)) << action.toStdString();
        latest = replies.value(action);
    }
}

int AnsweringService::getHttpStatus()
{
    return latest.status;
}

tr::Tr AnsweringService::getErrorText()
{
    return tr::Tr(latest.status == 0 ? u"нет ответа"_s : u"состояние %1"_s.arg(latest.status));
}

QByteArray AnsweringService::getResponseBody()
{
    return latest.body;
}

void AnsweringService::setTimeout(int /*seconds*/) { }

bool AnsweringService::isSuccess()
{
    return latest.status == 200;
}

bool AnsweringService::hasConnectionError()
{
    return latest.status == 0;
}

bool AnsweringService::hasHttpError()
{
    return latest.status == 500;
}

std::string valueBehind(const QString& text, const QString& mark)
{
    const qsizetype from = text.indexOf(mark);
    if (from < 0) {
        return "(none)";
    }
    const QString rest = text.mid(from + mark.size());
    qsizetype end = 0;
    while (end < rest.size() && rest[end] != u'"' && rest[end] != u'<') {
        ++end;
    }
    return rest.left(end).toStdString();
}
