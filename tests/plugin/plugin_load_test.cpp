#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace {

/// What the probe has found: the real library, loaded once, in a process of its own.
[[nodiscard]] const QJsonObject& facts()
{
    static const QJsonObject found = [] {
        QProcess probe;
        probe.start(QStringLiteral(VANTIRO_PLUGIN_PROBE), { QStringLiteral(VANTIRO_PLUGIN_FILE) });
        EXPECT_TRUE(probe.waitForFinished(30'000));
        EXPECT_EQ(probe.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(probe.exitCode(), 0) << probe.readAllStandardError().toStdString();
        return QJsonDocument::fromJson(probe.readAllStandardOutput()).object();
    }();
    return found;
}

[[nodiscard]] std::string text(const QJsonObject& object, const char* key)
{
    return object.value(QString::fromLatin1(key)).toString().toStdString();
}

[[nodiscard]] std::string list(const char* key)
{
    QStringList entries;
    for (const QJsonValue& entry : facts().value(QString::fromLatin1(key)).toArray()) {
        entries.append(entry.toString());
    }
    return entries.join(u' ').toStdString();
}

} // namespace

TEST(PluginLoad, MetadataNamesInterfaceClassAndLicence)
{
    const QJsonObject metaData = facts().value(QStringLiteral("metaData")).toObject();
    EXPECT_EQ(text(metaData, "IID"), "Vantiro");
    EXPECT_EQ(text(metaData, "className"), "Vantiro");
    const QJsonObject user = metaData.value(QStringLiteral("MetaData")).toObject();
    EXPECT_EQ(user.keys(), QStringList { QStringLiteral("licensed") });
    EXPECT_EQ(user.value(QStringLiteral("licensed")), QJsonValue(true));
}

TEST(PluginLoad, InstanceIsTheClassWithoutParent)
{
    EXPECT_EQ(text(facts(), "className"), "Vantiro");
    EXPECT_EQ(text(facts(), "parent"), "null");
}

TEST(PluginLoad, MetacastAnswersItsFiveNamesAndLeavesTheRestToTheBase)
{
    const QJsonObject casts = facts().value(QStringLiteral("casts")).toObject();
    EXPECT_EQ(text(casts, "(null pointer)"), "null");
    EXPECT_EQ(text(casts, "Vantiro"), "object");
    EXPECT_EQ(text(casts, "BasicLoyaltySystem"), "BasicLoyaltySystem");
    EXPECT_EQ(text(casts, "LoyaltySystem"), "BasicLoyaltySystem");
    EXPECT_EQ(text(casts, "norvik.AbstractPlugin"), "BasicPlugin");
    EXPECT_EQ(text(casts, "BaseActivityListener"), "object"); // answered by the base
    EXPECT_EQ(text(casts, "QObject"), "object");
    EXPECT_EQ(text(casts, "vantiro"), "null");
}

TEST(PluginLoad, TwoCallsOfTheEntryGiveOneObjectAndAFreshOneAfterItsDestruction)
{
    EXPECT_EQ(text(facts(), "secondCall"), "same");
    EXPECT_TRUE(facts().value(QStringLiteral("afterDestruction")).toBool());
    EXPECT_EQ(text(facts(), "afterDestructionTwice"), "same");
}

TEST(PluginLoad, LoadingReadsNoConfiguration)
{
    EXPECT_EQ(list("keysBeforeInit"), "");
}

TEST(PluginLoad, InitReadsTheOneConfigOfTheProcessEachKeyOnceInOrder)
{
    EXPECT_EQ(list("keys"),
              "Vantiro:hosts Vantiro:timeout Vantiro:noBonusForMinprice Vantiro:user Vantiro:password "
              "Vantiro:forbidDiscountForDiscountedPosition Vantiro:checkCouponPrefix Vantiro:checkCouponMask "
              "Vantiro:positionCouponPrefix Vantiro:positionCouponMask Vantiro:restoreLoyaltyState");
}

TEST(PluginLoad, InitRegistersTheSystemOfCardModeSeven)
{
    EXPECT_TRUE(facts().value(QStringLiteral("init")).toBool());
    EXPECT_TRUE(facts().value(QStringLiteral("registered")).toBool());
}

TEST(PluginLoad, PingTaskUsesTheOneMockFactoryOfTheProcess)
{
    EXPECT_EQ(list("urls"), "http://first/ http://second/");
    EXPECT_EQ(text(facts(), "check"), "сервер доступен - true");
}

TEST(PluginLoad, CheckForAnotherPluginGetsNoTask)
{
    EXPECT_EQ(text(facts(), "checkOfAnother"), "no task");
}
