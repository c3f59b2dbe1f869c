#include "files.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

// The program of the page, with the real plug-in and with plug-ins that a till must not accept.

namespace {

struct Outcome {
    int exitCode = -1;
    std::string output;
    std::string error;
};

[[nodiscard]] Outcome drive(const QString& plugin)
{
    QProcess process;
    process.start(QStringLiteral(VANTIRO_EXAMPLE_DRIVE), { plugin });
    EXPECT_TRUE(process.waitForFinished(30'000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return { process.exitCode(), process.readAllStandardOutput().toStdString(),
             process.readAllStandardError().toStdString() };
}

/// Drives a library of this content in place of the plug-in.
[[nodiscard]] Outcome driveContent(const QByteArray& content)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("libbroken.so"));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(content), content.size());
    file.close();
    return drive(path);
}

[[nodiscard]] QByteArray plugin()
{
    return contentOf(QStringLiteral(VANTIRO_PLUGIN_FILE));
}

} // namespace

TEST(HostExampleDrive, PrintsWhatThePageShows)
{
    const Outcome outcome = drive(QStringLiteral(VANTIRO_PLUGIN_FILE));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(outcome.output, "card mode 7, coupons of type 3: yes, part of the points: yes\n");
    EXPECT_THAT(readme().toStdString(), testing::HasSubstr("```text\n" + outcome.output + "```\n"));
}

TEST(HostExampleDrive, RefusesWhatIsNoLibrary)
{
    const Outcome outcome = driveContent("no library");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.error, testing::StartsWith("No loyalty plug-in: "));
}

TEST(HostExampleDrive, NamesAFunctionThatTheHostLacksBeforeAnythingIsCalled)
{
    // A function, as lazy binding would find it at its first call only; the till has none of the changed name.
    const QByteArray name = "_ZN6Log4Qt10LogManager6logger";
    const QByteArray lacking = "_ZN6Log4Qt10LogManager6logges";
    ASSERT_TRUE(plugin().contains(name));

    const Outcome outcome = driveContent(plugin().replace(name, lacking));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.error, testing::HasSubstr("undefined symbol: " + lacking.toStdString()));
    EXPECT_THAT(readme().toStdString(), testing::HasSubstr("`undefined symbol: "));
}

TEST(HostExampleDrive, RefusesAPluginOfANewerQt)
{
    // The note that Qt puts into a plug-in: its format, then the major and the minor version.
    const QByteArray mark("qt-project!\0\1\6", 14);
    QByteArray newer = plugin();
    const qsizetype minor = newer.indexOf(mark) + mark.size();
    ASSERT_GE(minor, mark.size());
    newer[minor] = 99;

    const Outcome outcome = driveContent(newer);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.error, testing::HasSubstr("uses incompatible Qt library. (6.99.0)"));
    EXPECT_THAT(readme().toStdString(), testing::HasSubstr("`uses incompatible Qt library`"));
}
