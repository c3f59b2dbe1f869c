#include "tests/doctor/doctor_support.h"
#include "till/program/doctor_plugin.h"

#include <QLibraryInfo>

#include <gmock/gmock.h>

using namespace till::diagnosis;
using namespace vantiro_test;
using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

[[nodiscard]] std::string pluginLines(const QString& file = QStringLiteral(VANTIRO_PLUGIN_FILE))
{
    till::Places places;
    places.plugin = file;
    QString lines = QString::fromStdString(linesOf(checkPlugin(places, std::chrono::seconds(2))));
    return lines.replace(QStringLiteral(VANTIRO_PLUGIN_FILE), u"PLUGIN"_s).toStdString();
}

[[nodiscard]] QByteArray configuration(const QList<QUrl>& servers)
{
    QStringList hosts;
    for (const QUrl& server : servers) {
        hosts.append(server.toString());
    }
    return "[Vantiro]\ntimeout=1\nhosts=" + hosts.join(u',').toUtf8() + '\n';
}

constexpr auto loaded = "ok      The plug-in PLUGIN is loaded and started.\n";

TEST(DoctorPlugin, PingsItsServers)
{
    const LoopbackServer server(healthyAnswer);
    const ConfigFile config(configuration({ server.url() }));
    EXPECT_EQ(pluginLines(), std::string(loaded) + "ok      The plug-in reaches server 1 (сервер доступен - true).\n");
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.requests()[0].header("SOAPAction"), "http://tempuri.org/IVantiroService/Ping");
}

TEST(DoctorPlugin, TellsTheServerThatAnswered)
{
    const ClosedPort closed;
    const LoopbackServer server(healthyAnswer);
    const ConfigFile config(configuration({ closed.url(), server.url() }));
    EXPECT_EQ(pluginLines(), std::string(loaded) + "ok      The plug-in reaches server 2 (сервер доступен - true).\n");
}

TEST(DoctorPlugin, ThatReachesNoServerFails)
{
    const ClosedPort closed;
    const DeafPort deaf;
    const ConfigFile config(configuration({ closed.url(), deaf.url() }));
    EXPECT_EQ(pluginLines(),
              std::string(loaded)
                  + "FAILED  The plug-in reaches no server (сервер доступен - false); see what the servers' own lines "
                    "say.\n");
}

TEST(DoctorPlugin, CanBeCheckedAgain)
{
    const LoopbackServer server(healthyAnswer);
    const ConfigFile config(configuration({ server.url() }));
    const std::string first = pluginLines();
    EXPECT_EQ(pluginLines(), first);
    EXPECT_EQ(server.requests().size(), 2);
}

TEST(DoctorPlugin, ThatIsMissingFails)
{
    EXPECT_EQ(
        pluginLines(u"/nowhere/libvantiro.so"_s),
        "FAILED  The plug-in does not work: there is no plug-in /nowhere/libvantiro.so; name it with --plugin FILE.\n");
}

TEST(DoctorPlugin, ThatIsNoLibraryFails)
{
    EXPECT_THAT(pluginLines(u"/etc/passwd"_s),
                StartsWith("FAILED  The plug-in does not work: the plug-in cannot be loaded: "));
}

TEST(DoctorPlugin, OfAnotherKindFails)
{
    const QString other = QLibraryInfo::path(QLibraryInfo::PluginsPath) + u"/sqldrivers/libqsqlite.so"_s;
    EXPECT_THAT(pluginLines(other),
                AllOf(StartsWith("FAILED  The plug-in does not work: "),
                      HasSubstr("is a Qt plug-in, but none of this till"),
                      EndsWith("name libvantiro.so with --plugin FILE.\n")));
}

}
