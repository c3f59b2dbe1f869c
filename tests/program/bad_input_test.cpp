#include "tests/program/program_run.h"
#include "tests/support/loopback_port.h"

#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

[[nodiscard]] QByteArray contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// One line that names the program, and nothing else.
void expectOneLine(const ProgramRun& run)
{
    EXPECT_THAT(run.errors, StartsWith("vantiro-till: "));
    EXPECT_THAT(run.errors, EndsWith("\n"));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
}

} // namespace

TEST(BadInput, WithoutACommandTheUsageIsNamed)
{
    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), {});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errors, "vantiro-till: A subcommand is required; see vantiro-till --help\n");
}

TEST(BadInput, MistakesInOptionsNameTheHelpOfTheirCommand)
{
    struct Mistake {
        QStringList arguments;
        std::string reason;
    };
    const QList<Mistake> mistakes {
        { { "--verson" }, "A subcommand is required; see vantiro-till --help" },
        { { "play", "--wir", "x" }, "The following argument was not expected: --wir; see vantiro-till play --help" },
        { { "play" }, "FILE is required; see vantiro-till play --help" },
        { { "queue" }, "A subcommand is required; see vantiro-till queue --help" },
        { { "queue", "send", "one" }, "Could not convert: ID = one; see vantiro-till queue send --help" },
    };
    for (const Mistake& mistake : mistakes) {
        const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), mistake.arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.errors, "vantiro-till: " + mistake.reason + '\n');
        EXPECT_EQ(run.output, "");
    }
}

TEST(BadInput, UnknownCommandIsRefused)
{
    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), { "dance" });
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("dance"));
}

TEST(BadInput, MissingScriptIsNamed)
{
    const TillProgram till;
    const ProgramRun run = till.run({ "play", till.path("nowhere.till") });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("nowhere.till cannot be read"));
}

TEST(BadInput, UnknownVerbIsNamedWithItsLine)
{
    const TillProgram till;
    const ProgramRun run = till.play("\nopen sale 1\ndance\n");
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("script.till:3: unknown verb \"dance\""));
}

TEST(BadInput, WrongArgumentShowsTheUsageOfItsVerb)
{
    const TillProgram till;
    const ProgramRun run = till.play("open sale 1\nscan 46 @1.234\n");
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("script.till:2: PRICE must be a number with at most 2 decimals, not \"1.234\""));
    EXPECT_THAT(run.errors, HasSubstr("(usage: scan BARCODE"));
}

TEST(BadInput, OpenQuoteIsRefusedBeforeAnythingIsPlayed)
{
    const TillProgram till;
    const ProgramRun run = till.play("open sale 1\nsay \"half\n");
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("line 2: a quote is not closed"));
    EXPECT_EQ(run.output, "");
}

TEST(BadInput, MissingPluginIsNamed)
{
    const TillProgram till;
    const ProgramRun run = till.play("open sale 1\n", { "--plugin", till.path("libvantiro.so") });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("there is no plug-in"));
    EXPECT_THAT(run.errors, HasSubstr("--plugin FILE"));
}

TEST(BadInput, PluginThatIsNotWhereItIsInstalledIsAskedFor)
{
    const TillProgram till;
    const QString program = till.path("vantiro-till");
    ASSERT_TRUE(QFile::copy(QStringLiteral(VANTIRO_TILL_PROGRAM), program));
    const ProgramRun run
        = runProgram(program, { "play", till.write("script.till", "open sale 1\n"), "--data", till.path("data") });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("libvantiro.so is not where it is installed; name it with --plugin FILE"));
}

TEST(BadInput, LibraryThatIsNoPluginIsRefused)
{
    const TillProgram till;
    const QString file = till.write("libvantiro.so", "no library at all");
    const ProgramRun run = till.play("open sale 1\n", { "--plugin", file });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("the plug-in cannot be loaded"));
}

// The version that the library says it was built with stands behind the mark of its metadata.
TEST(BadInput, PluginOfANewerQtIsRefusedWithBothVersions)
{
    const TillProgram till;
    QByteArray library = contentOf(QStringLiteral(VANTIRO_PLUGIN));
    const qsizetype mark = library.indexOf("qt-project!"); // the owner of the note, twelve bytes with its zero
    ASSERT_GT(mark, 0);
    const qsizetype minor = mark + 14; // behind the owner, the format and the major version
    ASSERT_EQ(library.at(mark + 13), char(QT_VERSION_MAJOR));
    ASSERT_EQ(library.at(minor), char(QT_VERSION_MINOR));
    library[minor] = 99;
    const QString file = till.write("libvantiro.so", library);
    const ProgramRun run = till.play("open sale 1\n", { "--plugin", file });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("6.99"));
    EXPECT_THAT(run.errors, HasSubstr(qVersion()));
}

TEST(BadInput, MissingConfigurationIsNamed)
{
    const TillProgram till;
    const ProgramRun run = till.play("open sale 1\n", { "--config", till.path("nowhere.ini") });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("nowhere.ini cannot be read"));
}

TEST(BadInput, DataFolderThatIsAFileIsRefusedAndStays)
{
    const TillProgram till;
    const QString file = till.write("data", "precious");
    const ProgramRun run = till.play("open sale 1\n");
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("--data DIR"));
    EXPECT_EQ(contentOf(file).toStdString(), "precious");
}

TEST(BadInput, DemoTouchesNoFolderThatIsThere)
{
    const TillProgram till;
    const QString file = till.write("mine.txt", "precious");
    const QString folder = QFileInfo(file).path();
    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), { "demo", "--output", folder });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("--output DIR"));
    EXPECT_EQ(contentOf(file).toStdString(), "precious");
}

TEST(BadInput, UnknownChapterIsNamed)
{
    const TillProgram till;
    const ProgramRun run
        = runProgram(QStringLiteral(VANTIRO_TILL_PROGRAM), { "demo", "--output", till.path("demo"), "77-nothing" });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("there is no chapter 77-nothing"));
}

TEST(BadInput, UnknownRecordOfTheQueueIsNamed)
{
    const TillProgram till;
    ASSERT_EQ(till.play("say hello\n").status, 0);
    const ProgramRun run = till.run({ "queue", "show", "12" });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("there is no record 12 in the queue"));
}

TEST(BadInput, FolderWithoutATillIsNamedAndNotMade)
{
    const TillProgram till;
    for (const QStringList& command :
         { QStringList { "queue", "list" }, { "reconcile", "--sandbox", "a=http://b/,http://c/" } }) {
        const ProgramRun run = till.run(command);
        EXPECT_EQ(run.status, 1);
        expectOneLine(run);
        EXPECT_THAT(
            run.errors,
            HasSubstr("there is no till in " + till.path("data").toStdString() + "; name its folder with --data DIR"));
        EXPECT_FALSE(QFileInfo::exists(till.path("data")));
    }
}

TEST(BadInput, ExportOverwritesNothing)
{
    const TillProgram till;
    ASSERT_EQ(till.play("say hello\n").status, 0);
    const QString file = till.write("queue.json", "precious");
    const ProgramRun run = till.run({ "queue", "export", "--output", file });
    EXPECT_EQ(run.status, 1);
    expectOneLine(run);
    EXPECT_THAT(run.errors, HasSubstr("queue.json cannot be written"));
    EXPECT_EQ(contentOf(file).toStdString(), "precious");
}

TEST(BadInput, SandboxWithATakenPortSaysSo)
{
    const vantiro_test::DeafPort taken;
    const ProgramRun run = runProgram(
        QStringLiteral(VANTIRO_SANDBOX_PROGRAM),
        { "--rules", QStringLiteral(VANTIRO_EXAMPLES "/rules.yaml"), "--port", QString::number(taken.number()) });
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr(std::to_string(taken.number())));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
}

TEST(BadInput, SandboxNamesFileAndLineOfAMalformedRule)
{
    const TillProgram till;
    const QString rules = till.write("rules.yaml", "cards:\n  - number: \"1\"\n    balance: many\n");
    const ProgramRun run = runProgram(QStringLiteral(VANTIRO_SANDBOX_PROGRAM), { "--rules", rules });
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("rules.yaml:3"));
}
