#include "tests/doctor/doctor_support.h"
#include "till/program/commands.h"

#include <QDir>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <utility>

using namespace vantiro_test;
using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

class Doctor : public testing::Test {
protected:
    /// The exit status, and what is printed.
    [[nodiscard]] std::pair<int, std::string> run(const QByteArray& content)
    {
        const ConfigFile config(content);
        testing::internal::CaptureStdout();
        const int status = till::doctor({ config.path(), folder.path(), QStringLiteral(VANTIRO_PLUGIN_FILE) });
        QString printed = QString::fromStdString(testing::internal::GetCapturedStdout());
        printed.replace(config.path(), u"CONFIG"_s);
        printed.replace(QDir(folder.path()).canonicalPath(), u"FOLDER"_s);
        printed.replace(QStringLiteral(VANTIRO_PLUGIN_FILE), u"PLUGIN"_s);
        return { status, withoutTimes(printed) };
    }

    QTemporaryDir folder;
};

TEST_F(Doctor, SoundTillHasStatusZero)
{
    const LoopbackServer server(healthyAnswer);
    const QByteArray address = server.url().toEncoded();
    const auto [status, printed] = run("[Vantiro]\nhosts=" + address + "\nuser=till\npassword=hunter2\n");
    EXPECT_EQ(status, 0) << printed;

    QString lines = QString::fromStdString(printed);
    lines.replace(QString::fromLatin1(address), u"URL"_s);
    lines.replace(QRegularExpression(u"\\d+ MiB"_s), u"N MiB"_s);
    EXPECT_EQ(lines.toStdString(),
              "ok      The configuration is CONFIG.\n"
              "ok      [Vantiro] sets hosts, user, password; everything else has its default.\n"
              "ok      A cashier waits for an answer 5 seconds at the longest: 1 server, 5 seconds each.\n"
              "ok      The data folder is FOLDER.\n"
              "ok      The database is not there yet; the till makes it when it starts.\n"
              "ok      N MiB are free for the data folder FOLDER.\n"
              "ok      The log FOLDER/till.log can be written.\n"
              "ok      Server 1 (URL): 127.0.0.1 resolves to 127.0.0.1.\n"
              "ok      Server 1 (URL): connects to 127.0.0.1 in N ms.\n"
              "ok      Server 1 (URL): the ping is answered in N ms.\n"
              "ok      Server 1 (URL): user and password are accepted.\n"
              "ok      The plug-in PLUGIN is loaded and started.\n"
              "ok      The plug-in reaches server 1 (сервер доступен - true).\n");
}

TEST_F(Doctor, WarningsLeaveStatusZero)
{
    const LoopbackServer server(healthyAnswer);
    const auto [status, printed] = run("[Vantiro]\nhosts=" + server.url().toEncoded() + "\ntimeout=0\n");
    EXPECT_EQ(status, 0);
    EXPECT_THAT(printed, HasSubstr("\nwarning timeout is no whole number of seconds above 0, so 5 seconds hold"));
}

TEST_F(Doctor, GoesOnAfterEachFailure)
{
    const ClosedPort closed;
    const LoopbackServer server(healthyAnswer);
    const auto [status, printed] = run("[Vantiro]\nhosts=nothing," + closed.url().toEncoded() + ','
                                       + server.url().toEncoded() + "\ntimeout=1\n");
    EXPECT_EQ(status, 1);
    EXPECT_THAT(printed,
                AllOf(HasSubstr("FAILED  Server 1 has no usable address"), HasSubstr("): the connection is refused"),
                      HasSubstr("): requests without user and password are accepted.\n"),
                      HasSubstr("ok      The plug-in reaches server 3 (сервер доступен - true).\n")));
}

TEST_F(Doctor, OneFailureGivesStatusOne)
{
    const LoopbackServer server(Answer::reply(401));
    EXPECT_EQ(run("[Vantiro]\nhosts=" + server.url().toEncoded() + '\n').first, 1);
}

TEST_F(Doctor, NeverPrintsASecret)
{
    const QByteArray fault = soapMessage("<s:Fault><faultstring>till:hunter2</faultstring></s:Fault>");
    const LoopbackServer server(Answer::reply(500, fault, { { "X-Echo", "hunter2" } }));
    QUrl withUser = server.url();
    withUser.setUserName("carol");
    withUser.setPassword("hunter2");
    const auto [status, printed] = run("[Vantiro]\nhosts=" + withUser.toEncoded()
                                       + ",alice:hunter2@host/\nuser=alice\npassword=hunter2\n"
                                         "pasword=hunter2\npassword: hunter2\nhunter2\nhunter2 rest=\n[hunter2]\n");
    EXPECT_EQ(status, 1);
    EXPECT_THAT(printed,
                AllOf(HasSubstr("user and password are accepted"), Not(HasSubstr("hunter2")), Not(HasSubstr("alice")),
                      Not(HasSubstr("carol")), Not(HasSubstr("YWxpY2U6aHVudGVyMg=="))));
}

TEST_F(Doctor, MissingConfigurationHasStatusOne)
{
    testing::internal::CaptureStdout();
    const int status = till::doctor({ u"/nowhere/till.ini"_s, folder.path(), QStringLiteral(VANTIRO_PLUGIN_FILE) });
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                HasSubstr("FAILED  There is no configuration /nowhere/till.ini; make it, or name another with --config "
                          "FILE.\n"));
    EXPECT_EQ(status, 1);
}

}
