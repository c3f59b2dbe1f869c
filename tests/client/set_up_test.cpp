#include "host/facilities/log_manager.h"
#include "tests/support/client_under_test.h"
#include "tests/support/log_recorder.h"

#include <QJsonObject>
#include <QMetaMethod>
#include <QUrl>

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

namespace {

class NamedClient : public VantiroInterface {
public:
    using VantiroInterface::logger;
    using VantiroInterface::VantiroInterface;
    ~NamedClient() override = default;
};

static_assert(std::is_abstract_v<VantiroInterface>);
static_assert(std::is_base_of_v<QObject, VantiroInterface>);
static_assert(std::is_base_of_v<VantiroInterface, VantiroBonusInterface>);
static_assert(!std::is_abstract_v<VantiroBonusInterface>);

const QList<QUrl> threeServers { QUrl(QStringLiteral("http://first/")), QUrl(QStringLiteral("http://second/")),
                                 QUrl(QStringLiteral("http://third/")) };

}

TEST(ClientConstruction, LeavesEverythingEmpty)
{
    const ClientUnderTest client({});

    EXPECT_TRUE(client.authorizationHeader.isEmpty());
    EXPECT_EQ(client.currentServerIndex, 0);
    EXPECT_TRUE(client.hosts.isEmpty());
    EXPECT_EQ(client.timeout, 0);
    EXPECT_EQ(client.noBonusForMinprice, 0);
    EXPECT_FALSE(client.forbidDiscountForDiscountedPosition);
    EXPECT_TRUE(client.checkData.isEmpty());
    EXPECT_EQ(client.parent(), nullptr);
}

TEST(ClientConstruction, ConcreteClassLogsToVantiro)
{
    const ClientUnderTest client({});

    EXPECT_EQ(client.logger, Log4Qt::LogManager::logger(QStringLiteral("vantiro"), QString()));
}

TEST(ClientConstruction, BaseLogsToTheNameItIsGiven)
{
    const NamedClient client(QStringLiteral("another"));

    EXPECT_EQ(client.logger, Log4Qt::LogManager::logger(QStringLiteral("another"), QString()));
    EXPECT_NE(client.logger, Log4Qt::LogManager::logger(QStringLiteral("vantiro"), QString()));
}

TEST(ClientConstruction, AsksNoServerAndLogsNothing)
{
    const ScriptedRestClient server;
    const LogRecorder log;
    const ClientUnderTest client({});

    EXPECT_EQ(readable(server.calls()), "");
    EXPECT_EQ(readable(log.lines()), "");
}

TEST(ClientMetaObject, HasTheOneSlotChangeServer)
{
    const QMetaObject& meta = VantiroInterface::staticMetaObject;

    ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod method = meta.method(meta.methodOffset());
    EXPECT_EQ(method.methodType(), QMetaMethod::Slot);
    EXPECT_EQ(method.methodSignature().toStdString(), "changeServer(int)");
    ASSERT_EQ(method.parameterNames().size(), 1);
    EXPECT_EQ(method.parameterNames().constFirst().toStdString(), "serverIndex");
}

TEST(ClientMetaObject, ConcreteClassAddsNothing)
{
    const QMetaObject& meta = VantiroBonusInterface::staticMetaObject;

    EXPECT_EQ(meta.methodCount(), meta.methodOffset());
    EXPECT_EQ(meta.superClass(), &VantiroInterface::staticMetaObject);
}

TEST(ClientSetters, AssignTheWholeValue)
{
    ClientUnderTest client({});

    client.setHosts(threeServers);
    client.setTimeout(17);
    client.setAuthorizationHeader(QStringLiteral("Basic Og=="));

    EXPECT_EQ(client.hosts, threeServers);
    EXPECT_EQ(client.timeout, 17);
    EXPECT_EQ(readable(client.authorizationHeader), "Basic Og==");
}

TEST(ClientSetters, CheckNothing)
{
    ClientUnderTest client({});

    for (const int seconds : { 0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() }) {
        client.setTimeout(seconds);
        EXPECT_EQ(client.timeout, seconds);
    }
    client.setHosts({ QUrl() });
    EXPECT_EQ(client.hosts, QList<QUrl> { QUrl() });
    client.setAuthorizationHeader(QStringLiteral("anything %1\n"));
    EXPECT_EQ(readable(client.authorizationHeader), "anything %1\n");
}

TEST(ClientSetters, HostsLeaveTheServerInUse)
{
    ClientUnderTest client({});
    client.setHosts(threeServers);
    client.changeServer(2);

    client.setHosts({ QUrl(QStringLiteral("http://only/")) });

    EXPECT_EQ(client.currentServerIndex, 2);
}

TEST(ClientSetters, CheckDataIsReplacedAsAWhole)
{
    ClientUnderTest client({});
    client.setCheckData(
        { { QStringLiteral("chequeNo"), QStringLiteral("7") }, { QStringLiteral("shiftNo"), QStringLiteral("3") } });
    const QJsonObject later { { QStringLiteral("chequeUid"), QStringLiteral("ABC") } };

    client.setCheckData(later);
    EXPECT_EQ(client.checkData, later);

    client.setCheckData({});
    EXPECT_TRUE(client.checkData.isEmpty());
}

TEST(ClientSetters, LogNothing)
{
    ClientUnderTest client({});
    const LogRecorder log;

    client.setHosts(threeServers);
    client.setTimeout(-1);
    client.setAuthorizationHeader(QStringLiteral("Basic Og=="));
    client.setCheckData({ { QStringLiteral("chequeNo"), QStringLiteral("7") } });
    client.changeServer(-1);

    EXPECT_EQ(readable(log.lines()), "");
}
