#include "tests/program/program_run.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

// What a till has done is written down, and done again where the service is out of reach.

namespace {

/// A sandbox service that ends with this.
class Service {
public:
    Service()
    {
        process.start(QStringLiteral(VANTIRO_SANDBOX_PROGRAM),
                      { u"--rules"_s, QStringLiteral(VANTIRO_EXAMPLES "/rules.yaml"), u"--name"_s, u"first"_s,
                        u"--quiet"_s });
        EXPECT_TRUE(process.waitForReadyRead(20'000));
        const QStringList words = QString::fromUtf8(process.readLine()).trimmed().split(u' ');
        address = words.value(3);
        control = words.value(5);
    }

    void stop()
    {
        process.terminate();
        EXPECT_TRUE(process.waitForFinished());
    }

    QString address;
    QString control;

private:
    QProcess process;
};

[[nodiscard]] QByteArray contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

const QByteArray script = "open sale 1\n"
                          "scan 4606453849072 x2 @450.00 code 2001\n"
                          "card 9000000001\n"
                          "request\n"
                          "points 40\n"
                          "crash\n"
                          "pay cash\n"
                          "close\n"
                          "expect ok\n"
                          "expect wire Accrual@first\n"
                          "expect books agree\n"
                          "server first stop\n"
                          "open sale 2\n"
                          "scan 46 @10.00\n"
                          "pay cash\n"
                          "close\n"
                          "deliver\n";

class TracedTill : public testing::Test {
protected:
    TracedTill()
    {
        const QByteArray configuration = "[Vantiro]\nhosts=" + service.address.toUtf8()
            + "\ntimeout=2\nuser=till\npassword=secret\n\n[Till]\nshift=3\n";
        const ProgramRun run = till.play(script,
                                         { "--config", till.write("till.ini", configuration), "--trace", trace,
                                           "--sandbox", "first=" + service.address + "," + service.control });
        EXPECT_EQ(run.status, 0) << run.errors;
        service.stop();
    }

    /// Writes a copy in which one text stands for another, once.
    [[nodiscard]] QString changed(const QByteArray& from, const QByteArray& to) const
    {
        QByteArray bytes = contentOf(trace);
        const qsizetype place = bytes.indexOf(from);
        EXPECT_GE(place, 0) << from.toStdString();
        return till.write("changed.trace", bytes.replace(place, from.size(), to));
    }

    Service service;
    const TillProgram till;
    const QString trace = till.path("sale.trace");
};

} // namespace

TEST_F(TracedTill, DoesTheSameAgainWithoutTheService)
{
    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), { "replay", trace });
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, HasSubstr("The same again: hooks "));
    EXPECT_EQ(run.errors, "");
}

TEST_F(TracedTill, WritesHooksExchangesSavingsAndWhatWasSaid)
{
    const std::string text = contentOf(trace).toStdString();
    EXPECT_THAT(text, HasSubstr(R"({"event":"hook","hook":"identifyByCard","result":"9000000001: true","step":2})"));
    EXPECT_THAT(text, HasSubstr(R"({"event":"hook","hook":"setPointsForSpend","result":"40.00","step":4})"));
    EXPECT_THAT(text, HasSubstr(R"("event":"save","state":"closing","step":7})"));
    EXPECT_THAT(text, HasSubstr(R"("action":"SubtractBonus45")"));
    EXPECT_THAT(text, HasSubstr("Восстановлен чек 1"));
}

TEST_F(TracedTill, WritesNoCredentialsAndClosesTheFile)
{
    const std::string text = contentOf(trace).toStdString();
    EXPECT_THAT(text, Not(HasSubstr("secret")));
    EXPECT_THAT(text, Not(HasSubstr("dGlsbDpzZWNyZXQ"))); // user and password, as the header has them
    EXPECT_EQ(QFileInfo(trace).permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
}

TEST_F(TracedTill, AnotherReplyComesOutOtherwise)
{
    // The balance that the service told the till.
    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM),
                                      { "replay", changed("Balance Value=\\\"500", "Balance Value=\\\"501") });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr(R"(It comes out otherwise at line 3, "card 9000000001": )"));
}

TEST_F(TracedTill, AnotherRequestComesOutOtherwise)
{
    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM),
                                      { "replay", changed("Price=\\\"450.00", "Price=\\\"451.00") });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr(R"(It comes out otherwise at line 4, "request": exchange GetDiscounts, request)"));
    EXPECT_THAT(run.output, HasSubstr("recorded: "));
    EXPECT_THAT(run.output, HasSubstr("now: "));
}

TEST_F(TracedTill, HookThatWasNotRecordedIsTold)
{
    const ProgramRun run = runProgram(
        QStringLiteral(VANTIRO_TILL_PROGRAM),
        { "replay", changed("{\"event\":\"hook\",\"hook\":\"commit\",\"result\":\"true\",\"step\":7}\n", "") });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("It comes out otherwise at line 8, \"close\": "));
}

TEST_F(TracedTill, AnotherScriptComesOutOtherwise)
{
    const ProgramRun run
        = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), { "replay", changed("x2 @450.00", "x3 @450.00") });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("It comes out otherwise at line 2, "));
}

TEST_F(TracedTill, TraceThatIsThereStaysAsItIs)
{
    const QByteArray before = contentOf(trace);
    const ProgramRun run = till.play("open sale 9\n", { "--trace", trace });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("name a new file"));
    EXPECT_EQ(contentOf(trace), before);
}

TEST_F(TracedTill, DamagedTraceIsNamedWithItsLine)
{
    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM),
                                      { "replay", changed("{\"event\":\"step\",\"step\":1}", "{\"event\":\"st") });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr(" is not that of a trace of this till"));
    EXPECT_THAT(run.errors, HasSubstr("changed.trace, line "));
}

TEST(Replay, OfAFileThatIsNotThereIsRefused)
{
    const TillProgram till;
    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), { "replay", till.path("nowhere.trace") });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("nowhere.trace cannot be read"));
}

TEST(Replay, OfAnEmptyFileIsRefused)
{
    const TillProgram till;
    const ProgramRun run
        = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), { "replay", till.write("empty.trace", "") });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("empty.trace is empty, and no trace of this till"));
}

TEST(Trace, BeginsWithoutAnOpenCheque)
{
    const TillProgram till;
    const QString configuration = till.write("till.ini", "[Vantiro]\nhosts=http://127.0.0.1:9/\ntimeout=1\n");
    ASSERT_EQ(till.play("open sale 7\n", { "--config", configuration }).status, 0);
    const ProgramRun run = till.play("cancel\n", { "--config", configuration, "--trace", till.path("cheque.trace") });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("a trace begins without an open cheque; close or cancel cheque 7 first"));
    EXPECT_FALSE(QFileInfo::exists(till.path("cheque.trace")));
}
