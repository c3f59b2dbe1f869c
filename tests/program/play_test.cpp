#include "tests/program/program_run.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using testing::Not;

// Scripts that need no service: an address where nobody listens stands for it.

namespace {

const QByteArray nobody = "[Vantiro]\nhosts=http://127.0.0.1:9/\ntimeout=1\n";

[[nodiscard]] ProgramRun playOffline(const TillProgram& till, const QByteArray& script)
{
    return till.play(script, { "--config", till.write("till.ini", nobody) });
}

} // namespace

TEST(Play, SaleWithoutServiceIsQueued)
{
    const TillProgram till;
    const ProgramRun run = playOffline(till, "open sale 1\nscan 46 x2 @10.50\npay cash\nclose\nexpect queue 1 pending\n");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(run.output, HasSubstr("Нет связи с сервером"));

    const ProgramRun list = till.run({ "queue", "list" });
    EXPECT_EQ(list.status, 0);
    EXPECT_THAT(list.output, HasSubstr("1 in the queue"));
    EXPECT_THAT(list.output, HasSubstr("pending"));
}

TEST(Play, BrokenExpectationFails)
{
    const TillProgram till;
    const ProgramRun run = playOffline(till, "open sale 1\nscan 46 x2 @10.50\nexpect sum 21.01\npay cash\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("script.till:3: sum is 21.00, not 21.01"));
    EXPECT_THAT(run.output, Not(HasSubstr("pay cash"))) << "it stops there";
}

TEST(Play, RefusalThatNobodyExpectsFailsAtTheNextLine)
{
    const TillProgram till;
    const ProgramRun run = playOffline(till, "open sale 1\nclose\nopen sale 2\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("the cheque has no lines"));
}

TEST(Play, RefusalThatEndsTheScriptFails)
{
    const TillProgram till;
    const ProgramRun run = playOffline(till, "open sale 1\nclose\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("the cheque has no lines"));
}

TEST(Play, ExpectedRefusalIsFine)
{
    const TillProgram till;
    const ProgramRun run = playOffline(till, "open sale 1\nclose\nexpect refused \"no lines\"\ncancel\n");
    EXPECT_EQ(run.status, 0) << run.errors;
}

TEST(Play, CrashGoesOnWithTheChequeThatWasOpen)
{
    const TillProgram till;
    const ProgramRun run
        = playOffline(till, "open sale 7\nscan 46 x2 @10.50\ncrash\nexpect sum 21.00\nscan 46 @1.00\nexpect sum 22.00\n");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("the till was killed and starts again"));
    EXPECT_THAT(run.output, HasSubstr("Восстановлен чек 7"));
}

TEST(Play, NextRunGoesOnWithTheChequeThatWasOpen)
{
    const TillProgram till;
    EXPECT_EQ(playOffline(till, "open sale 7\nscan 46 x2 @10.50\n").status, 0);
    const ProgramRun run = playOffline(till, "expect sum 21.00\npay cash\nclose\nexpect queue 1\n");
    EXPECT_EQ(run.status, 0) << run.errors;
}

TEST(Play, ScriptComesFromStandardInput)
{
    const TillProgram till;
    const ProgramRun run = till.run({ "play", "-", "--config", till.write("till.ini", nobody) }, "open sale 1\ncancel\n");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("> cancel"));
}

TEST(Play, ServerVerbsNeedASandbox)
{
    const TillProgram till;
    const ProgramRun run = playOffline(till, "server stop\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("there is no sandbox service to control"));
}

TEST(Play, RefusedLineIsNamedAndNotTheOneBehindIt)
{
    const TillProgram till;
    const ProgramRun run = playOffline(till, "open sale 1\nclose\nscan 46 @3.00\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("script.till:2: the cheque has no lines"));
    EXPECT_THAT(run.output, Not(HasSubstr("scan 46")));
}

TEST(Play, FolderHoldsOneTillAtATime)
{
    const TillProgram till;
    const QString configuration = till.write("till.ini", nobody);
    QProcess first;
    const auto startFirst = [&] {
        first.start(QStringLiteral(VANTIRO_TILL_PROGRAM),
                    { "shell", "--config", configuration, "--data", till.path("data") });
        first.write("open sale 7\n");
        ASSERT_TRUE(first.waitForReadyRead(20'000));
    };
    startFirst();
    const ProgramRun refused = playOffline(till, "cancel\n");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.errors,
                HasSubstr("a till is already running on " + till.path("data").toStdString() + " (process "
                          + std::to_string(first.processId())
                          + "); end it first, or name another folder with --data DIR"));
    EXPECT_EQ(till.run({ "queue", "list" }).status, 0) << "who only looks may";

    first.kill();
    ASSERT_TRUE(first.waitForFinished());
    EXPECT_EQ(playOffline(till, "cancel\n").status, 0) << "a killed till holds nothing";
    startFirst();
    first.closeWriteChannel();
    ASSERT_TRUE(first.waitForFinished());
    EXPECT_EQ(playOffline(till, "cancel\n").status, 0) << "nor does one that has ended";
}

TEST(Shell, CarriesLinesOutAndTellsRefusalsAtOnce)
{
    const TillProgram till;
    const ProgramRun run = till.run({ "shell", "--config", till.write("till.ini", nobody) },
                                    "open sale 5\nclose\nscan 46 @3.00\nshow cheque\nhelp\nquit\n");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("! the cheque has no lines"));
    EXPECT_THAT(run.output, HasSubstr("sum 3.00"));
    EXPECT_THAT(run.output, HasSubstr("present a card"));
}

TEST(Queue, HoldReleaseAndExport)
{
    const TillProgram till;
    ASSERT_EQ(playOffline(till, "open sale 1\nscan 46 @10.50\npay cash\nclose\n").status, 0);
    EXPECT_THAT(till.run({ "queue", "hold", "1" }).output, HasSubstr("record 1 is held"));
    EXPECT_THAT(till.run({ "queue", "list" }).output, HasSubstr("held by the operator"));
    EXPECT_EQ(till.run({ "queue", "send" }).status, 1) << "what is held is not sent";
    EXPECT_THAT(till.run({ "queue", "release", "1" }).output, HasSubstr("record 1 is pending again"));

    const ProgramRun shown = till.run({ "queue", "show", "1" });
    EXPECT_THAT(shown.output, HasSubstr("Authorization: ***"));
    EXPECT_THAT(shown.output, HasSubstr("tem:OfflineAccrual"));
    const ProgramRun exported = till.run({ "queue", "export" });
    EXPECT_THAT(exported.output, HasSubstr("\"state\": \"pending\""));
    EXPECT_THAT(exported.output, Not(HasSubstr("Basic ")));

    const ProgramRun sent = till.run({ "queue", "send" });
    EXPECT_EQ(sent.status, 1);
    EXPECT_THAT(sent.output, HasSubstr("delivered 0, stepped aside 0, left in the queue 1"));
}

// The story stops at the first thing that is not as it was told, and says where.
TEST(Demo, BrokenChapterFails)
{
    const TillProgram till;
    ASSERT_TRUE(QDir().mkpath(till.path("examples")));
    ASSERT_TRUE(QFile::copy(QStringLiteral(VANTIRO_EXAMPLES "/rules.yaml"), till.path("examples/rules.yaml")));
    QFile chapter(QStringLiteral(VANTIRO_EXAMPLES "/04-return.till"));
    ASSERT_TRUE(chapter.open(QIODevice::ReadOnly));
    QByteArray script = chapter.readAll();
    ASSERT_EQ(script.count("expect discount 30.00"), 1);
    till.write("examples/04-return.till", script.replace("expect discount 30.00", "expect discount 30.01"));

    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM),
                                      { "demo", "--examples", till.path("examples"), "--output", till.path("demo") });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("04-return.till:7: discount is 30.00, not 30.01"));
    EXPECT_THAT(run.output, HasSubstr("The story has gone wrong"));
}
