#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <ostream>

// The decision of an exchange: what comes out, from which server, and which server is in use afterwards.

namespace {

/// What the caller gets and what the log gets.
struct Verdict {
    std::string failure; // as `failureOf` tells it
    std::string answer; // the text of the reply, when there is one
    QString log; // a pattern for the one line, or empty for no line
};

Verdict answerOf(int server)
{
    return { "nothing", "узел " + std::to_string(server), QString() };
}

Verdict faultOf(int server)
{
    return { failure::fault("отказ узла " + std::to_string(server)), {}, QString() };
}

Verdict incorrectAnswer()
{
    return { failure::incorrectAnswer,
             {},
             QStringLiteral("error vantiro: Не удалось интерпретировать ответ от сервера\\(\\[\\d+, \\d+\\] .+\\)") };
}

/// `reason` is the error text of the last server asked.
Verdict noConnection(const char* reason)
{
    return { failure::noConnection,
             {},
             QStringLiteral("error vantiro: Произошла ошибка при выполнении запроса ")
                 + QRegularExpression::escape(QString::fromUtf8(reason)) };
}

struct Exchange {
    const char* servers; // how each of them answers, in order of priority
    int current;
    const char* asked; // indexes, in order
    int currentAfter;
    Verdict verdict;
};

QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

std::string nameOf(const testing::TestParamInfo<Exchange>& info)
{
    return "From" + std::to_string(info.param.current) + "_" + words(info.param.servers).join(u'_').toStdString();
}

void PrintTo(const Exchange& row, std::ostream* out)
{
    *out << row.servers << " from " << row.current;
}

RestOutcome outcomeOf(const QString& kind, int server)
{
    const QByteArray number = QByteArray::number(server);
    const QByteArray answer = soap::reply("<Answer>узел " + number + "</Answer>");
    const QByteArray fault = soap::reply(soap::fault("отказ узла " + number));
    const QHash<QString, RestOutcome> outcomes {
        { QStringLiteral("down"), RestOutcome::connectionError(QStringLiteral("узел %1 молчит").arg(server)) },
        { QStringLiteral("good"), RestOutcome::http(200, answer) },
        { QStringLiteral("created"), RestOutcome::http(201, answer) },
        { QStringLiteral("fault200"), RestOutcome::http(200, fault) },
        { QStringLiteral("text200"), RestOutcome::http(200, "OK") },
        { QStringLiteral("cut200"), RestOutcome::http(200, answer.chopped(1)) },
        { QStringLiteral("empty200"), RestOutcome::http(200, "") },
        { QStringLiteral("empty204"), RestOutcome::http(204, "") },
        { QStringLiteral("moved"), RestOutcome::http(301, answer) },
        { QStringLiteral("unauthorized"), RestOutcome::http(401, fault) },
        { QStringLiteral("missing"), RestOutcome::http(404, answer) },
        { QStringLiteral("fault"), RestOutcome::http(500, fault) },
        { QStringLiteral("answer500"), RestOutcome::http(500, answer) },
        { QStringLiteral("text500"), RestOutcome::http(500, "Internal Server Error") },
        { QStringLiteral("empty500"), RestOutcome::http(500, "") },
        { QStringLiteral("fault501"), RestOutcome::http(501, fault) },
        { QStringLiteral("busy"), RestOutcome::http(503, fault) },
    };
    EXPECT_TRUE(outcomes.contains(kind)) << kind.toStdString();
    return outcomes.value(kind);
}

QString urlOf(int server)
{
    return QStringLiteral("http://server%1/").arg(server);
}

class ExchangeDecision : public testing::TestWithParam<Exchange> { };

}

INSTANTIATE_TEST_SUITE_P(
    OneServer, ExchangeDecision,
    testing::Values(
        Exchange { "good", 0, "0", 0, answerOf(0) }, Exchange { "created", 0, "0", 0, answerOf(0) },
        Exchange { "down", 0, "0", 0, noConnection("узел 0 молчит") }, Exchange { "fault200", 0, "0", 0, faultOf(0) },
        Exchange { "text200", 0, "0", 0, incorrectAnswer() }, Exchange { "cut200", 0, "0", 0, incorrectAnswer() },
        Exchange { "empty200", 0, "0", 0, incorrectAnswer() }, Exchange { "empty204", 0, "0", 0, incorrectAnswer() },
        Exchange { "moved", 0, "0", 0, noConnection("состояние 301") },
        Exchange { "unauthorized", 0, "0", 0, noConnection("состояние 401") },
        Exchange { "missing", 0, "0", 0, noConnection("состояние 404") }, Exchange { "fault", 0, "0", 0, faultOf(0) },
        Exchange { "answer500", 0, "0", 0, answerOf(0) }, Exchange { "text500", 0, "0", 0, incorrectAnswer() },
        Exchange { "empty500", 0, "0", 0, incorrectAnswer() },
        Exchange { "fault501", 0, "0", 0, noConnection("состояние 501") },
        Exchange { "busy", 0, "0", 0, noConnection("состояние 503") }),
    nameOf);

INSTANTIATE_TEST_SUITE_P(AnyHttpReplyDoesNotWalk, ExchangeDecision,
                         testing::Values(Exchange { "good good", 0, "0", 0, answerOf(0) },
                                         Exchange { "good good", 1, "1", 1, answerOf(1) },
                                         Exchange { "good good good", 2, "2", 2, answerOf(2) },
                                         Exchange { "fault200 good", 0, "0", 0, faultOf(0) },
                                         Exchange { "text200 good", 0, "0", 0, incorrectAnswer() },
                                         Exchange { "empty200 good", 0, "0", 0, incorrectAnswer() },
                                         Exchange { "empty204 good", 0, "0", 0, incorrectAnswer() },
                                         Exchange { "moved good", 0, "0", 0, noConnection("состояние 301") },
                                         Exchange { "unauthorized good", 0, "0", 0, noConnection("состояние 401") },
                                         Exchange { "missing good", 0, "0", 0, noConnection("состояние 404") },
                                         Exchange { "fault good", 0, "0", 0, faultOf(0) },
                                         Exchange { "answer500 good", 0, "0", 0, answerOf(0) },
                                         Exchange { "text500 good", 0, "0", 0, incorrectAnswer() },
                                         Exchange { "empty500 good", 0, "0", 0, incorrectAnswer() },
                                         Exchange { "busy good", 0, "0", 0, noConnection("состояние 503") },
                                         Exchange { "good busy good", 1, "1", 1, noConnection("состояние 503") },
                                         Exchange { "good good fault", 2, "2", 2, faultOf(2) }),
                         nameOf);

// The status alone tells a success: a reply of no use still moves the server.
INSTANTIATE_TEST_SUITE_P(SuccessMovesTheServer, ExchangeDecision,
                         testing::Values(Exchange { "down good", 0, "0 1", 1, answerOf(1) },
                                         Exchange { "good down", 1, "1 0", 0, answerOf(0) },
                                         Exchange { "down created", 0, "0 1", 1, answerOf(1) },
                                         Exchange { "down fault200", 0, "0 1", 1, faultOf(1) },
                                         Exchange { "down text200", 0, "0 1", 1, incorrectAnswer() },
                                         Exchange { "down empty200", 0, "0 1", 1, incorrectAnswer() },
                                         Exchange { "down empty204", 0, "0 1", 1, incorrectAnswer() },
                                         Exchange { "down good good", 0, "0 1", 1, answerOf(1) },
                                         Exchange { "down text200 good", 0, "0 1", 1, incorrectAnswer() },
                                         Exchange { "down down good", 0, "0 1 2", 2, answerOf(2) },
                                         Exchange { "down fault good", 0, "0 1 2", 2, answerOf(2) },
                                         Exchange { "down answer500 good", 0, "0 1 2", 2, answerOf(2) },
                                         Exchange { "down text500 good", 0, "0 1 2", 2, answerOf(2) },
                                         Exchange { "down missing good", 0, "0 1 2", 2, answerOf(2) },
                                         Exchange { "down busy good", 0, "0 1 2", 2, answerOf(2) },
                                         Exchange { "down moved good", 0, "0 1 2", 2, answerOf(2) },
                                         Exchange { "down down empty204", 0, "0 1 2", 2, incorrectAnswer() }),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(NothingElseMovesTheServer, ExchangeDecision,
                         testing::Values(Exchange { "down down", 0, "0 1", 0, noConnection("узел 1 молчит") },
                                         Exchange { "down missing", 0, "0 1", 0, noConnection("состояние 404") },
                                         Exchange { "down busy", 0, "0 1", 0, noConnection("состояние 503") },
                                         Exchange { "down moved", 0, "0 1", 0, noConnection("состояние 301") },
                                         Exchange { "down fault", 0, "0 1", 0, faultOf(1) },
                                         Exchange { "down answer500", 0, "0 1", 0, answerOf(1) },
                                         Exchange { "down text500", 0, "0 1", 0, incorrectAnswer() },
                                         Exchange { "down empty500", 0, "0 1", 0, incorrectAnswer() },
                                         Exchange { "down down", 1, "1 0", 1, noConnection("узел 0 молчит") },
                                         Exchange { "fault down", 1, "1 0", 1, faultOf(0) }),
                         nameOf);

// After a walk without success, the last reply is judged, whichever server it came from.
INSTANTIATE_TEST_SUITE_P(
    LastPostIsJudged, ExchangeDecision,
    testing::Values(Exchange { "down down down", 0, "0 1 2", 0, noConnection("узел 2 молчит") },
                    Exchange { "down fault down", 0, "0 1 2", 0, noConnection("узел 2 молчит") },
                    Exchange { "down answer500 down", 0, "0 1 2", 0, noConnection("узел 2 молчит") },
                    Exchange { "down fault busy", 0, "0 1 2", 0, noConnection("состояние 503") },
                    Exchange { "down busy fault", 0, "0 1 2", 0, faultOf(2) },
                    Exchange { "down down fault", 0, "0 1 2", 0, faultOf(2) },
                    Exchange { "down fault fault", 0, "0 1 2", 0, faultOf(2) },
                    Exchange { "down fault answer500", 0, "0 1 2", 0, answerOf(2) },
                    Exchange { "down fault text500", 0, "0 1 2", 0, incorrectAnswer() },
                    Exchange { "fault down down", 1, "1 0 2", 1, noConnection("узел 2 молчит") },
                    Exchange { "busy down down", 1, "1 0 2", 1, noConnection("узел 2 молчит") },
                    Exchange { "down down fault", 1, "1 0 2", 1, faultOf(2) },
                    Exchange { "fault down down", 2, "2 0 1", 2, noConnection("узел 1 молчит") },
                    Exchange { "down fault down", 2, "2 0 1", 2, faultOf(1) },
                    Exchange { "down missing down", 2, "2 0 1", 2, noConnection("состояние 404") }),
    nameOf);

INSTANTIATE_TEST_SUITE_P(WalkGoesByPriority, ExchangeDecision,
                         testing::Values(Exchange { "good down good", 1, "1 0", 0, answerOf(0) },
                                         Exchange { "down down good", 1, "1 0 2", 2, answerOf(2) },
                                         Exchange { "fault down good", 1, "1 0 2", 2, answerOf(2) },
                                         Exchange { "busy down good", 1, "1 0 2", 2, answerOf(2) },
                                         Exchange { "down down down", 1, "1 0 2", 1, noConnection("узел 2 молчит") },
                                         Exchange { "good good down", 2, "2 0", 0, answerOf(0) },
                                         Exchange { "down good down", 2, "2 0 1", 1, answerOf(1) },
                                         Exchange { "fault good down", 2, "2 0 1", 1, answerOf(1) },
                                         Exchange { "text200 good down", 2, "2 0", 0, incorrectAnswer() },
                                         Exchange { "down down down", 2, "2 0 1", 2, noConnection("узел 1 молчит") }),
                         nameOf);

TEST_P(ExchangeDecision, IsAsTold)
{
    const Exchange& row = GetParam();
    ScriptedRestClient servers;
    QStringList urls;
    for (const QString& kind : words(row.servers)) {
        const int server = static_cast<int>(urls.size());
        servers.at(urlOf(server), outcomeOf(kind, server));
        urls.append(urlOf(server));
    }
    QStringList expectedUrls;
    for (const QString& index : words(row.asked)) {
        expectedUrls.append(urlOf(index.toInt()));
    }
    ClientUnderTest client(urls);
    client.changeServer(row.current);
    const LogRecorder log;

    std::string answer;
    const std::string failure = failureOf([&] { answer = readable(client.exchange().documentElement().text()); });

    EXPECT_EQ(failure, row.verdict.failure);
    EXPECT_EQ(answer, row.verdict.answer);
    EXPECT_EQ(readable(servers.asked()), readable(expectedUrls));
    EXPECT_EQ(client.currentServerIndex, row.currentAfter);
    const QString lines = log.lines().join(QLatin1Char('\n'));
    EXPECT_TRUE(QRegularExpression(QRegularExpression::anchoredPattern(row.verdict.log)).match(lines).hasMatch())
        << readable(lines);
}
