#include "tests/secrets/canary_shop.h"
#include "tests/support/loopback_server.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using vantiro_test::Answer;
using vantiro_test::HttpRequest;
using vantiro_test::LoopbackServer;

// User and password are where they belong, and nowhere else: not in a log, not on a screen, not in a slip, not in what
// the service keeps; in the till's database as long as a message waits.

namespace {

/// What the database holds of them while a message waits: its header, as it goes over the wire.
constexpr auto inTheQueue = "till/till.sqlite: password in base64\n"
                            "till/till.sqlite: user in base64";

const QByteArray outage = "server first stop\n"
                          "server second stop\n"
                          "open sale 1200\n"
                          "scan 4601234567893 x3 @120.00 code 3001\n"
                          "pay cash\n"
                          "close\n"
                          "expect ok\n"
                          "expect queue 1 pending\n"
                          "show queue\n"
                          "show wire\n";

[[nodiscard]] QByteArray contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

[[nodiscard]] QByteArray chapter(const QString& name)
{
    return contentOf(QStringLiteral(VANTIRO_EXAMPLES "/") + name);
}

/// Changes the message that waits, as a failing disk might.
void damage(const QString& database, const QString& statement)
{
    {
        QSqlDatabase connection = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"damage"_s);
        connection.setDatabaseName(database);
        ASSERT_TRUE(connection.open());
        QSqlQuery query(connection);
        ASSERT_TRUE(query.exec(statement)) << query.lastError().text().toStdString();
        ASSERT_EQ(query.numRowsAffected(), 1);
        query.clear();
        connection.close();
    }
    QSqlDatabase::removeDatabase(u"damage"_s);
}

class Secrets : public CanaryShop {
protected:
    /// A message waits, and nothing else is wrong.
    void queueOne()
    {
        startService();
        configure(hosts());
        ASSERT_EQ(play(outage), 0) << said();
        ASSERT_EQ(leaks(), inTheQueue);
    }
};

}

TEST_F(Secrets, OfAWholeStoryAreInTheConfigurationAlone)
{
    startService();
    configure(hosts());
    const QStringList chapters
        = QDir(QStringLiteral(VANTIRO_EXAMPLES)).entryList({ u"*.till"_s }, QDir::Files, QDir::Name);
    ASSERT_GE(chapters.size(), 10);
    for (const QString& name : chapters) {
        EXPECT_EQ(play(chapter(name)), 0) << name.toStdString() << '\n' << said();
    }
    EXPECT_EQ(leaks(), "");
    EXPECT_EQ(open(), "");
    EXPECT_TRUE(QFile::exists(path(u"slips/slip-001.png"_s)));
    EXPECT_TRUE(QFile::exists(path(u"till/till.log"_s)));
}

TEST_F(Secrets, OfAMessageThatWaitsAreInTheDatabase)
{
    queueOne();
    EXPECT_EQ(open(), "");
    EXPECT_THAT(said(), HasSubstr("  pending"));
}

TEST_F(Secrets, AreGoneFromTheDatabaseWithTheDelivery)
{
    queueOne();
    ASSERT_EQ(play("server first start\nserver second start\ndeliver\nexpect ok\nexpect queue 0\n"), 0) << said();
    EXPECT_EQ(leaks(), "");
}

TEST_F(Secrets, AreNotShownByTheTillsOwnCommands)
{
    queueOne();
    EXPECT_EQ(till({ u"queue"_s, u"list"_s }), 0) << said();
    EXPECT_EQ(till({ u"queue"_s, u"show"_s, u"1"_s }), 0) << said();
    EXPECT_THAT(said(), HasSubstr("Authorization: ***"));
    EXPECT_EQ(till({ u"queue"_s, u"export"_s }), 0) << said();
    EXPECT_EQ(till({ u"queue"_s, u"export"_s, u"--output"_s, path(u"export.json"_s) }), 0) << said();
    EXPECT_EQ(till({ u"queue"_s, u"hold"_s, u"1"_s }), 0) << said();
    EXPECT_EQ(till({ u"queue"_s, u"send"_s, u"1"_s }), 1) << said();
    EXPECT_EQ(till({ u"doctor"_s }), 1) << said();
    EXPECT_EQ(till(QStringList { u"reconcile"_s } + sandboxes()), 0) << said();
    EXPECT_EQ(till(QStringList { u"shell"_s, u"--wire"_s } + sandboxes(),
                   "show queue\nopen sale 1201\nscan 4601234567893 @10.00\ncard 9000000001\nshow wire\nshow cheque\n"),
              0)
        << said();
    EXPECT_EQ(leaks(), inTheQueue);
    EXPECT_EQ(open(), "");
}

TEST_F(Secrets, AreNotShownByTheDoctorOfAHealthyService)
{
    startService();
    configure(hosts());
    EXPECT_EQ(till({ u"doctor"_s }), 0) << said();
    EXPECT_EQ(leaks(), "");
}

TEST_F(Secrets, OfAKilledTillAreInTheDatabaseAlone)
{
    startService();
    configure(hosts());
    ASSERT_EQ(
        play(outage + "crash\nexpect queue 1 pending\nopen sale 1202\nscan 4601234567893 @10.00\ncrash\nshow cheque\n"),
        0)
        << said();
    EXPECT_EQ(leaks(), inTheQueue);
    EXPECT_EQ(open(), "");
}

// What a program has in memory would all be in it.
TEST_F(Secrets, OfATillThatAbortsAreInNoCore)
{
    startService();
    configure(hosts());
    QProcess till;
    till.setWorkingDirectory(path(u"said"_s));
    till.setChildProcessModifier([] {
        rlimit limit {};
        ::getrlimit(RLIMIT_CORE, &limit);
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_CORE, &limit);
    });
    till.start(QStringLiteral(VANTIRO_TILL_PROGRAM),
               QStringList { u"shell"_s, u"--data"_s, path(u"till"_s), u"--config"_s, path(u"config/till.ini"_s) }
                   + sandboxes());
    till.write("open sale 1230\nscan 4601234567893 @10.00\ncard 9000000001\n");
    QByteArray told;
    while (!told.contains("9000000001") && till.waitForReadyRead(20'000)) {
        told += till.readAll();
    }
    ASSERT_THAT(told.toStdString(), HasSubstr("9000000001")) << "the till is at work, with the header in its memory";

    const std::string limits = contentOf(u"/proc/%1/limits"_s.arg(till.processId())).toStdString();
    ASSERT_EQ(::kill(static_cast<pid_t>(till.processId()), SIGABRT), 0);
    ASSERT_TRUE(till.waitForFinished());
    EXPECT_EQ(till.exitStatus(), QProcess::CrashExit);

    EXPECT_THAT(limits, testing::ContainsRegex("Max core file size +0 ")) << "whatever this machine does with cores";
    EXPECT_EQ(leaks(), "");
}

// The demonstration writes a configuration as well, with the user and the password of its own service.
TEST_F(Secrets, OfTheDemonstrationAreClosedToOthers)
{
    const QString demo = path(u"demo"_s);
    QProcess process;
    process.setStandardOutputFile(path(u"said/demo.out"_s));
    process.start(
        QStringLiteral(VANTIRO_TILL_PROGRAM),
        { u"demo"_s, u"06-no-card"_s, u"--output"_s, demo, u"--examples"_s, QStringLiteral(VANTIRO_EXAMPLES) });
    ASSERT_TRUE(process.waitForFinished(60'000));
    ASSERT_EQ(process.exitCode(), 0);
    const SecretSearch header({ { u"header"_s, "till:secret" }, { u"line"_s, "password=secret" } });
    EXPECT_EQ(header.foundBelow(demo).join(u'\n').toStdString(), "vantiro-till.ini: line as it is");
    EXPECT_EQ(openToOthers(header, demo).join(u'\n').toStdString(), "");
}

// A record that cannot be read is shown, so that somebody can do something about it; not what nobody but the server may
// see.
TEST_F(Secrets, OfADamagedMessageAreNotShown)
{
    queueOne();
    damage(path(u"till/till.sqlite"_s), u"UPDATE queue SET message = substr(message, 1, length(message) - 1)"_s);
    EXPECT_EQ(till({ u"queue"_s, u"send"_s }), 1) << said();
    EXPECT_EQ(till({ u"queue"_s, u"list"_s }), 0) << said();
    EXPECT_THAT(said(), HasSubstr("damaged"));
    EXPECT_EQ(till({ u"queue"_s, u"show"_s, u"1"_s }), 0) << said();
    EXPECT_EQ(till({ u"queue"_s, u"export"_s }), 0) << said();
    EXPECT_EQ(leaks(), inTheQueue);
}

TEST_F(Secrets, OfAMessageWithoutItsBodyAreNotShown)
{
    queueOne();
    damage(path(u"till/till.sqlite"_s), uR"(UPDATE queue SET message = json_set(message, '$.body', ''))"_s);
    EXPECT_EQ(till({ u"queue"_s, u"send"_s }), 1) << said();
    EXPECT_EQ(till({ u"queue"_s, u"show"_s, u"1"_s }), 0) << said();
    EXPECT_THAT(said(), HasSubstr("damaged"));
    EXPECT_EQ(till({ u"queue"_s, u"export"_s }), 0) << said();
    EXPECT_EQ(leaks(), inTheQueue);
}

// Some write user and password into the address. They are not sent, and not shown either.
TEST_F(Secrets, InAnAddressAreNotShown)
{
    startService();
    QStringList addresses;
    for (const QString& host : hosts()) {
        addresses.append(QString(host).replace(
            u"http://"_s,
            u"http://"_s + QString::fromUtf8(user.toPercentEncoding() + ':' + password.toPercentEncoding()) + u'@'));
    }
    configure(addresses);
    ASSERT_EQ(play("open sale 1210\nscan 4601234567893 @10.00\ncard 9000000001\nrequest\npay cash\nclose\nexpect "
                   "ok\nshow wire\n"),
              0)
        << said();
    ASSERT_EQ(play(outage), 0) << said();
    static_cast<void>(till({ u"doctor"_s }));
    EXPECT_EQ(till({ u"queue"_s, u"list"_s }), 0) << said();
    EXPECT_EQ(till({ u"queue"_s, u"show"_s, u"1"_s }), 0) << said();
    EXPECT_EQ(till({ u"queue"_s, u"export"_s }), 0) << said();
    QStringList outside = QString::fromStdString(leaks()).split(u'\n');
    outside.removeIf([](const QString& line) { return line.startsWith(u"till/till.sqlite: "); });
    EXPECT_EQ(outside.join(u'\n').toStdString(), "");
}

namespace {

/// Tells its caller what it has been sent, in every way in which a service can tell something.
class Echo {
public:
    explicit Echo(const QByteArray& status, const QByteArray& before, const QByteArray& behind)
        : server([=](const HttpRequest& request) {
            const QByteArray body = before + "Authorization: " + request.header("Authorization") + behind;
            return Answer::raw("HTTP/1.1 " + status + "\r\nX-Echo: " + request.header("Authorization")
                               + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body)
                .hangUp();
        })
    {
    }

    LoopbackServer server;
};

struct Echoing {
    const char* rule;
    const char* status;
    const char* before;
    const char* behind;
};

void PrintTo(const Echoing& row, std::ostream* out)
{
    *out << row.rule;
}

class EchoedSecrets : public CanaryShop, public testing::WithParamInterface<Echoing> {
protected:
    /// The leaks but for the database: a message may wait in it.
    [[nodiscard]] std::string outside() const
    {
        QStringList lines = QString::fromStdString(leaks()).split(u'\n', Qt::SkipEmptyParts);
        lines.removeIf([](const QString& line) { return line.startsWith(u"till/till.sqlite: "); });
        return lines.join(u'\n').toStdString();
    }
};

}

TEST_P(EchoedSecrets, AreNotShown)
{
    const Echo echo(GetParam().status, GetParam().before, GetParam().behind);
    configure({ echo.server.url().toString() });
    const QByteArray lines = "open sale 1220\nscan 4601234567893 @10.00\ncard 9000000001\nphone +79990000001 code 1\n"
                             "request\ncoupon vantiro-10\nshow wire\npay cash\nclose\nopen sale 1221\n"
                             "scan 4601234567893 @10.00\ncancel\ndeliver\nshow queue\n";
    EXPECT_EQ(till({ u"shell"_s }, lines), 0) << said();
    static_cast<void>(till({ u"doctor"_s }));
    static_cast<void>(till({ u"queue"_s, u"send"_s }));
    static_cast<void>(till({ u"queue"_s, u"list"_s }));
    EXPECT_FALSE(echo.server.requests().isEmpty());
    EXPECT_EQ(outside(), "");
    EXPECT_EQ(till({ u"shell"_s, u"--wire"_s }, lines), 0) << said();
    EXPECT_EQ(outside(), "") << "with all that goes over the wire shown";
}

INSTANTIATE_TEST_SUITE_P(
    Reply, EchoedSecrets,
    testing::Values(
        Echoing { "Unauthorized", "401 Unauthorized", "<html>", "</html>" },
        Echoing { "Page", "200 OK", "<html><br>", "\n</html>" },
        Echoing { "Fault", "500 Internal Server Error",
                  R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><s:Fault><faultstring>)",
                  "</faultstring></s:Fault></s:Body></s:Envelope>" },
        Echoing { "Unavailable", "503 Service Unavailable", "", "" }),
    [](const auto& row) { return std::string(row.param.rule); });
