#include "tests/walk/mood.h"

#include "tests/support/client_under_test.h"
#include "tests/walk/answers.h"

#include <QList>

#include <utility>

using namespace Qt::StringLiterals;

namespace walk {

namespace {

// In percent. Most requests succeed, so that walks get far; refusals take the document offline and come second.
const QList<std::pair<Manner, int>>& frequencies()
{
    static const QList<std::pair<Manner, int>> table {
        { Manner::answers, 63 },   { Manner::answersAsError, 3 }, { Manner::fault, 7 },       { Manner::refuses, 8 },
        { Manner::status503, 3 },  { Manner::status404, 2 },      { Manner::damaged, 3 },     { Manner::noResult, 3 },
        { Manner::twoResults, 2 }, { Manner::plainText, 3 },      { Manner::emptyResult, 3 },
    };
    return table;
}

[[nodiscard]] QByteArray resultOf(const QString& action, const QString& text)
{
    const QByteArray tag = action.toUtf8() + "Result";
    return '<' + tag + '>' + text.toHtmlEscaped().toUtf8() + "</" + tag + '>';
}

[[nodiscard]] RestOutcome reply(int status, const QString& action, const QByteArray& results)
{
    const QByteArray tag = action.toUtf8() + "Response";
    return RestOutcome::http(status,
                             soap::reply('<' + tag + R"( xmlns="http://tempuri.org/">)" + results + "</" + tag + '>'));
}

[[nodiscard]] RestOutcome fault(int variant)
{
    switch (variant) {
    case 1:
        return RestOutcome::http(500,
                                 soap::reply("<s:Fault><faultstring>Первая причина</faultstring>"
                                             "<detail><faultstring>Вторая причина</faultstring></detail></s:Fault>"));
    case 2:
        return RestOutcome::http(500, soap::reply("<s:Fault><faultcode>s:Server</faultcode></s:Fault>"));
    case 3:
        return RestOutcome::http(200, soap::reply(soap::fault("Отказано")));
    default:
        return RestOutcome::http(500, soap::reply(soap::fault("Отказано")));
    }
}

} // namespace

Mood drawMood(Dice& dice)
{
    int percent = dice.below(100);
    Mood mood;
    for (const auto& [manner, frequency] : frequencies()) {
        mood.manner = manner;
        if (percent < frequency) {
            break;
        }
        percent -= frequency;
    }
    mood.variant = dice.below(Mood::variants);
    return mood;
}

QString told(const Mood& mood)
{
    static const QStringList names { u"answer"_s,      u"answer-500-"_s, u"fault"_s,       u"refusal"_s,
                                     u"503-"_s,        u"404-"_s,        u"damaged"_s,     u"no-result"_s,
                                     u"two-results"_s, u"plain-text"_s,  u"empty-result"_s };
    return names.at(static_cast<int>(mood.manner)) + QString::number(mood.variant);
}

QString faultText(int variant)
{
    switch (variant) {
    case 1:
        return u"Первая причина\nВторая причина"_s;
    case 2:
        return u""_s;
    default:
        return u"Отказано"_s;
    }
}

RestOutcome outcome(const QString& action, const Mood& mood)
{
    const QByteArray answer = resultOf(action, answerTo(action, mood.variant));
    switch (mood.manner) {
    case Manner::answers:
        return reply(200, action, answer);
    case Manner::answersAsError:
        return reply(500, action, answer);
    case Manner::fault:
        return fault(mood.variant);
    case Manner::refuses:
        return RestOutcome::connectionError(u"соединение отклонено"_s);
    case Manner::status503:
        return RestOutcome::http(503, "<html>занято</html>");
    case Manner::status404:
        return RestOutcome::http(404, QByteArray());
    case Manner::damaged:
        // An empty body, or one that breaks off.
        return RestOutcome::http(200, mood.variant == 0 ? QByteArray() : QByteArray("<s:Envelope><s:Body>"));
    case Manner::noResult:
        // A fault that is written with another prefix is an ordinary reply without a result.
        return mood.variant == 0
            ? RestOutcome::http(500, "<soap:Fault><faultstring>Отказано</faultstring></soap:Fault>")
            : reply(200, u"Other"_s, QByteArray());
    case Manner::twoResults:
        return reply(200, action, answer + answer);
    case Manner::plainText:
        return reply(200, action, resultOf(action, u"просто текст"_s));
    case Manner::emptyResult:
        return reply(200, action, resultOf(action, QString()));
    }
    return {};
}

} // namespace walk
