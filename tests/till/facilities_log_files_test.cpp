#include "host/facilities/log_manager.h"
#include "till/facilities/log_setup.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <thread>
#include <vector>

using Log4Qt::LogManager;
using till::LogLevel;
using till::LogSettings;

namespace {

[[nodiscard]] QString contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QStringLiteral("no file ") + path;
}

/// The lines without their time: "info [vantiro] text".
[[nodiscard]] QStringList linesOf(const QString& content)
{
    QStringList lines = content.split(u'\n');
    EXPECT_EQ(lines.takeLast(), QString()) << "the last line is not complete";
    static const QRegularExpression time(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} "));
    for (QString& line : lines) {
        EXPECT_TRUE(time.match(line).hasMatch()) << qPrintable(line);
        line.remove(time);
    }
    return lines;
}

/// What goes to standard error while it lives.
class StandardError {
public:
    StandardError()
        : former(dup(STDERR_FILENO))
        , file(std::tmpfile())
    {
        dup2(fileno(file), STDERR_FILENO);
    }

    ~StandardError()
    {
        dup2(former, STDERR_FILENO);
        close(former);
        std::fclose(file);
    }

    [[nodiscard]] QString text() const
    {
        QFile reader;
        EXPECT_TRUE(reader.open(fileno(file), QIODevice::ReadOnly));
        reader.seek(0);
        return QString::fromUtf8(reader.readAll());
    }

private:
    Q_DISABLE_COPY_MOVE(StandardError)

    int former;
    std::FILE* file;
};

class LogFileTest : public ::testing::Test {
protected:
    ~LogFileTest() override
    {
        till::setUpLogging({ .threshold = LogLevel::warn });
    }

    void logToFile(LogLevel threshold = LogLevel::trace)
    {
        till::setUpLogging({ .file = path(), .console = false, .threshold = threshold });
    }

    [[nodiscard]] QString path(const QString& name = QStringLiteral("till.log")) const
    {
        return folder.filePath(name);
    }

    [[nodiscard]] QStringList lines() const
    {
        return linesOf(contentOf(path()));
    }

    QTemporaryDir folder;
    const Log4Qt::Logger& vantiro = *LogManager::logger(QStringLiteral("vantiro"), QString());
};

using LogFileDeathTest = LogFileTest;

} // namespace

TEST_F(LogFileDeathTest, BeforeSetUpWarningsAndErrorsGoToStandardError)
{
    // A process of its own, in which nobody has set the log up.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto logAndExit = [this] {
        vantiro.info("первое");
        vantiro.warn("второе");
        vantiro.error("третье");
        std::fputs("end\n", stderr);
        std::_Exit(0);
    };
    EXPECT_EXIT(logAndExit(), ::testing::ExitedWithCode(0),
                "^[0-9: .-]* warning \\[vantiro\\] второе\n[0-9: .-]* error \\[vantiro\\] третье\nend\n$");
}

TEST_F(LogFileTest, EventIsOneLineThatIsThereWhenTheCallReturns)
{
    logToFile();
    vantiro.info("шаг %1", QStringLiteral("первый"));
    EXPECT_EQ(lines(), QStringList { "info [vantiro] шаг первый" });
    LogManager::logger("taskmanager", "vantiroping")->error("сбой");
    EXPECT_EQ(lines(), (QStringList { "info [vantiro] шаг первый", "error [taskmanager/vantiroping] сбой" }));
}

TEST_F(LogFileTest, EventsBelowTheThresholdAreNotWritten)
{
    logToFile(LogLevel::info);
    vantiro.trace("%1", QStringLiteral("трасса"));
    vantiro.debug(QStringLiteral("отладка"));
    vantiro.info("шаг");
    vantiro.warn("внимание");
    EXPECT_EQ(lines(), (QStringList { "info [vantiro] шаг", "warning [vantiro] внимание" }));
}

TEST_F(LogFileTest, WhatWouldBreakTheLineIsEscaped)
{
    logToFile();
    vantiro.debug(QStringLiteral("a\nb\r\nc\\nd\te"));
    vantiro.debug(QStringLiteral("\u001B[31m \u0000 \u007F \u0085 \u2028"));
    EXPECT_EQ(lines(),
              (QStringList { "debug [vantiro] a\\nb\\r\\nc\\\\nd\te",
                             "debug [vantiro] \\u001b[31m \\u0000 \\u007f \\u0085 \\u2028" }));
}

TEST_F(LogFileTest, FormatsOfTheLogLibraryAreText)
{
    logToFile();
    vantiro.error(QStringLiteral("{} {0} {:x} %v %n {"));
    EXPECT_EQ(lines(), QStringList { "error [vantiro] {} {0} {:x} %v %n {" });
}

TEST_F(LogFileTest, CredentialsAreNotWritten)
{
    logToFile();
    vantiro.trace("{\"Authorization\":\"%1\"}", QStringLiteral("Basic dXNlcjpwYXNz"));
    EXPECT_EQ(lines(), QStringList { "trace [vantiro] {\"Authorization\":\"***\"}" });
}

TEST_F(LogFileTest, EventsAlikeAreLinesEach)
{
    logToFile();
    const Log4Qt::Logger& ping = *LogManager::logger(QStringLiteral("vantiro"), QStringLiteral("ping"));
    const Log4Qt::Logger& manager = *LogManager::logger(QStringLiteral("taskmanager"), QStringLiteral("ping"));
    vantiro.error("сбой");
    vantiro.error("сбой");
    vantiro.info("сбой");
    ping.info("сбой");
    manager.info("сбой");
    manager.info("сбой!");
    manager.info("сбой!");
    EXPECT_EQ(lines(),
              (QStringList { "error [vantiro] сбой", "error [vantiro] сбой", "info [vantiro] сбой",
                             "info [vantiro/ping] сбой", "info [taskmanager/ping] сбой",
                             "info [taskmanager/ping] сбой!", "info [taskmanager/ping] сбой!" }));
}

TEST_F(LogFileTest, CredentialsOfEventsAlikeAreNotWritten)
{
    logToFile();
    for (int i = 0; i < 3; ++i) {
        vantiro.info("%1", QStringLiteral("password=canary"));
    }
    EXPECT_EQ(lines(), QStringList(3, "info [vantiro] password=***"));
}

TEST_F(LogFileTest, FileGoesOnWhereItEnded)
{
    logToFile();
    vantiro.info("первое");
    logToFile();
    vantiro.info("второе");
    EXPECT_EQ(lines(), (QStringList { "info [vantiro] первое", "info [vantiro] второе" }));
}

TEST_F(LogFileTest, FullFileStepsAsideAndTheOldestGoes)
{
    till::setUpLogging({ .file = path(), .maximumFileSize = 100, .maximumFiles = 2, .console = false });
    for (const char* const name : { "один", "два", "три", "четыре" }) {
        vantiro.info("%1 "
                     "0123456789012345678901234567890123456789",
                     QString(name));
    }
    const QString rest = QStringLiteral(" 0123456789012345678901234567890123456789");
    EXPECT_EQ(lines(), QStringList { "info [vantiro] четыре" + rest });
    EXPECT_EQ(linesOf(contentOf(path("till.1.log"))), QStringList { "info [vantiro] три" + rest });
    EXPECT_EQ(linesOf(contentOf(path("till.2.log"))), QStringList { "info [vantiro] два" + rest });
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 3);
}

TEST_F(LogFileTest, FilesAreForTheirOwnerAlone)
{
    till::setUpLogging({ .file = path(), .maximumFileSize = 40, .maximumFiles = 1, .console = false });
    vantiro.info("первое первое первое");
    vantiro.info("второе второе второе");
    for (const char* const name : { "till.log", "till.1.log" }) {
        struct stat state = {};
        ASSERT_EQ(stat(qPrintable(path(name)), &state), 0) << name;
        EXPECT_EQ(state.st_mode & 0777U, 0600U) << name;
    }
}

TEST_F(LogFileTest, MissingFolderIsMade)
{
    till::setUpLogging({ .file = path("лог/касса/till.log"), .console = false });
    vantiro.info("шаг");
    EXPECT_EQ(linesOf(contentOf(path("лог/касса/till.log"))), QStringList { "info [vantiro] шаг" });
}

TEST_F(LogFileTest, ConsoleIsStandardError)
{
    const StandardError error;
    till::setUpLogging({ .console = true, .threshold = LogLevel::info });
    vantiro.info("шаг");
    vantiro.debug(QStringLiteral("отладка"));
    EXPECT_EQ(linesOf(error.text()), QStringList { "info [vantiro] шаг" });
}

TEST_F(LogFileTest, WithoutConsoleStandardErrorStaysEmpty)
{
    const StandardError error;
    logToFile();
    vantiro.error("сбой");
    EXPECT_EQ(error.text(), QString());
}

TEST_F(LogFileTest, FileThatCannotBeWrittenIsToldAndTheConsoleTakesTheLog)
{
    QFile obstacle(path("obstacle"));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    const StandardError error;
    EXPECT_NO_THROW(till::setUpLogging({ .file = path("obstacle/till.log"), .console = false }));
    vantiro.info("шаг");
    QString text = error.text();
    EXPECT_TRUE(text.startsWith(QStringLiteral("Журнал не пишется в файл: "))) << qPrintable(text);
    EXPECT_TRUE(text.contains(path("obstacle/till.log"))) << qPrintable(text);
    EXPECT_EQ(linesOf(text.mid(text.indexOf(u'\n') + 1)), QStringList { "info [vantiro] шаг" });
}

TEST_F(LogFileTest, FullDiskIsToldOnceAndLoggingGoesOn)
{
    const StandardError error;
    till::setUpLogging({ .file = "/dev/full", .console = true });
    EXPECT_NO_THROW(vantiro.info("первое"));
    EXPECT_NO_THROW(vantiro.info("второе"));
    const QString text = error.text();
    EXPECT_EQ(text.count(QStringLiteral("Журнал не пишется: ")), 1) << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("info [vantiro] первое\n"))) << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("info [vantiro] второе\n"))) << qPrintable(text);
}

TEST_F(LogFileTest, LinesOfThreadsAreNotMixed)
{
    logToFile();
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([this, number] {
            for (int i = 0; i < 100; ++i) {
                vantiro.info("%1 %2", number, QString(200, QChar(u'a' + number)));
            }
        });
    }
    logToFile(); // the destination may change meanwhile
    for (std::thread& thread : threads) {
        thread.join();
    }
    const QStringList written = lines();
    EXPECT_EQ(written.size(), 400);
    for (int number = 0; number < 4; ++number) {
        const QString line
            = QStringLiteral("info [vantiro] ") + QString::number(number) + u' ' + QString(200, QChar(u'a' + number));
        EXPECT_EQ(written.count(line), 100);
    }
}
