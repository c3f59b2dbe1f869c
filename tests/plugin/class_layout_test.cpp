#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>

// The order of bases and virtual operations is binary contract between hosts and plug-ins that were built years apart.
// What is pinned here is the compiler's own account of it.

namespace {

/// The dump of all classes, made once.
[[nodiscard]] const QString& dump()
{
    static const QString text = [] {
        const QTemporaryDir folder;
        QProcess compiler;
        compiler.setWorkingDirectory(folder.path());
        QStringList arguments = QStringLiteral(VANTIRO_LAYOUT_FLAGS).split(u' ', Qt::SkipEmptyParts);
        arguments += { QStringLiteral("-std=c++20"),
                       QStringLiteral("-fPIC"),
                       QStringLiteral("-w"),
                       QStringLiteral("-I") + QStringLiteral(VANTIRO_SOURCE_FOLDER),
                       QStringLiteral("-fdump-lang-class=classes.txt"),
                       QStringLiteral("-c"),
                       QStringLiteral("-o"),
                       QStringLiteral("probe.o"),
                       QStringLiteral(VANTIRO_SOURCE_FOLDER "/tests/plugin/layout_probe.cpp") };
        compiler.start(QStringLiteral(VANTIRO_COMPILER), arguments);
        EXPECT_TRUE(compiler.waitForFinished(100'000));
        EXPECT_EQ(compiler.exitCode(), 0) << compiler.readAllStandardError().toStdString();
        QFile file(folder.filePath(QStringLiteral("classes.txt")));
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        return QString::fromUtf8(file.readAll());
    }();
    return text;
}

/// The names in the primary table of the class, in slot order, without the class that implements them.
[[nodiscard]] QStringList slotsOf(const QString& className)
{
    const qsizetype start = dump().indexOf(QStringLiteral("\nVtable for ") + className + u'\n');
    EXPECT_GE(start, 0) << className.toStdString() << " has no table";
    static const QRegularExpression function(QStringLiteral("\\)\\(\\.\\.\\.\\)\\)(?:.*::)?(~?\\w+)$"));
    QStringList names;
    bool inSlots = false;
    for (const QString& line : dump().sliced(start + 1).split(u'\n')) {
        if (line.contains(u"(& _ZTI")) {
            if (inSlots) {
                break;
            }
            inSlots = true;
            continue;
        }
        if (!inSlots) {
            continue;
        }
        if (line.endsWith(u" 0") && names.count(QStringLiteral("~")) < 2) {
            names.append(QStringLiteral("~")); // the destructors of an abstract class have no address in its table
            continue;
        }
        const QRegularExpressionMatch match = function.match(line);
        if (!match.hasMatch() || match.captured(1).at(0).isDigit()) {
            break; // the table of another base
        }
        names.append(match.captured(1).startsWith(u'~') ? QStringLiteral("~") : match.captured(1));
    }
    return names;
}

/// The bases of the class and, behind each, the bases of that, in their order; virtual ones are marked.
[[nodiscard]] QStringList basesOf(const QString& className)
{
    const qsizetype start = dump().indexOf(QStringLiteral("\nClass ") + className + u'\n');
    EXPECT_GE(start, 0);
    static const QRegularExpression base(QStringLiteral("^(\\w+) \\(0x\\w+\\) \\d+( virtual)?$"));
    QStringList names;
    for (const QString& line : dump().sliced(start + 1).split(u'\n')) {
        if (line.isEmpty()) {
            break;
        }
        if (const QRegularExpressionMatch match = base.match(line); match.hasMatch()) {
            names.append(match.captured(1) + match.captured(2));
        }
    }
    names.removeFirst(); // the class itself
    return names;
}

[[nodiscard]] std::string joined(const QStringList& names)
{
    return names.join(u'\n').toStdString();
}

const QStringList objectSlots { "metaObject", "qt_metacast", "qt_metacall", "~",           "~",
                                "event",      "eventFilter", "timerEvent",  "childEvent",  "customEvent",
                                "connectNotify", "disconnectNotify" };

} // namespace

TEST(ClassLayout, Vantiro)
{
    EXPECT_EQ(joined(basesOf("Vantiro")), "BaseActivityListener\nQObject\nBasicLoyaltySystem\nDocumentWatcher\nBasicPlugin virtual");
    EXPECT_EQ(joined(slotsOf("Vantiro")),
              joined(objectSlots
                     + QStringList { "handleEvent", "init", "identifyByCard", "request", "commit", "rollback", "cancel",
                                     "spendPoints", "hasPointsForSpend", "getPointsForSpend", "setPointsForSpend",
                                     "getCardInfo", "isAllowPartialPointsSpend", "getCardNumber",
                                     "restoreLoyaltySystem", "clearAfterClose", "couponBelongsToSystem",
                                     "beforePutoutCheck", "revealCheck", "clearLoyaltyData", "clearCoupons",
                                     "backOrBackBySale", "updatePluginData", "updateCouponsPluginData", "addCoupon",
                                     "deleteCoupons", "dispatchCouponAddError", "isOfflineMode",
                                     "isCheckCouponNumber", "isPositionCouponNumber" }));
}

const QStringList clientSlots { "initialize", "isCardValid", "getCardBalance", "actualizeServer",
                                "cancelSubtractBonus", "getChequeUID", "setCheckData", "setHosts", "setTimeout",
                                "setAuthorizationHeader", "processSoapMessage", "createHttpHeaders",
                                "createXmlRequest", "createXmlAnswer", "getCardDiscountAmount", "buildXmlCheck",
                                "buildAccrualXmlCheck", "sendOfflineAccrualRequest" };

TEST(ClassLayout, VantiroInterface)
{
    EXPECT_EQ(joined(basesOf("VantiroInterface")), "QObject");
    QStringList expected = objectSlots + clientSlots;
    expected[3] = expected[4] = QStringLiteral("__cxa_pure_virtual"); // what makes the class abstract
    EXPECT_EQ(joined(slotsOf("VantiroInterface")), joined(expected));
}

TEST(ClassLayout, VantiroBonusInterface)
{
    EXPECT_EQ(joined(basesOf("VantiroBonusInterface")), "VantiroInterface\nQObject");
    EXPECT_EQ(joined(slotsOf("VantiroBonusInterface")),
              joined(objectSlots + clientSlots
                     + QStringList { "getCardDiscountAmount", "getMessages", "getDiscounts", "subtractBonus", "accrual",
                                     "offlineAccrual", "accrual", "offlineAccrual", "transformReport",
                                     "transformReports", "getReport", "getReports", "getCardNumberAndCodeByPhone",
                                     "isCouponValid", "accrualAnyCheck", "offlineAccrualAnyCheck",
                                     "accrualCanceledCheck", "offlineAccrualCanceledCheck", "cancelSubtractBonus",
                                     "buildBackXmlCheck", "buildOnlineOrOfflineAccrualRequest",
                                     "buildOnlineOrOfflineAccrualRequest", "fillReport",
                                     "buildOnlineOrOfflineAccrualAnyCheckRequest", "buildAccrualAnyXmlCheck",
                                     "buildOnlineOrOfflineAccrualCanceledCheckRequest",
                                     "buildAccrualCanceledXmlCheck" }));
}

TEST(ClassLayout, BasicLoyaltySystem)
{
    EXPECT_EQ(joined(basesOf("BasicLoyaltySystem")), "DocumentWatcher\nBasicPlugin virtual");
    EXPECT_EQ(
        joined(slotsOf("BasicLoyaltySystem")),
        joined({ "~", "~", "setDocument", "identifyByCard", "request", "requestCommit", "commit", "rollback", "cancel",
                 "spendPoints", "recalculatePointsForEarn", "calculatePointsForEarnByQualifier", "removeEarnByValutCode",
                 "removeEarnAfterClose", "recalculateAllPoints", "hasPointsForSpend", "getPointsForSpend",
                 "hasPointsForEarn", "getPointsForEarn", "hasBonusImpacts", "getDiscountImpacts",
                 "getBonusImpactsForSpend", "getBonusRecords", "getMessagesToCashier", "getMessagesToClient",
                 "getMessagesToClientDisplay", "getLastErrorString", "clearLastErrorString", "takeForCustomer",
                 "getCardInfo", "restoreLoyaltySystem", "isAllowPartialPointsSpend", "setPointsForSpend",
                 "getRoundPrecisionForSpend", "setRoundPrecisionForSpend", "isAllowInternalDiscount",
                 "useDiscOnChangeWithBonusPayment", "fillCardOwnerInfo", "getCardNumber", "getCardMode", "getSlips",
                 "cardReplace", "getCardNumberTypeToAddCardInSubtotal", "checkOption",
                 "requestInputPointsForSpendByLoyalty", "registerCheck", "couponBelongsToSystem", "clearAfterClose",
                 "payCheck", "recalculatePointsForSpend", "beforePutoutCheck", "afterPutoutCheck", "revealCheck", "init",
                 "deinit", "distributeBonusRecord", "getBonusImpactsLimits", "getCard", "hasCard",
                 "registerLoyaltySystem", "deregisterLoyaltySystem", "setOption", "getStoreDataKey", "setPluginData",
                 "setPluginData", "getPluginData", "getPluginData", "clearData", "clearLoyaltyData" }));
}

TEST(ClassLayout, BasicPlugin)
{
    EXPECT_EQ(joined(slotsOf("BasicPlugin")),
              joined({ "~", "~", "__cxa_pure_virtual", "__cxa_pure_virtual", "isFeatureMatched", "setFeature",
                       "addHandler", "addTrigger", "disableTriggers", "enableTriggers" }));
}

TEST(ClassLayout, AbstractDocument) // through a document that implements all of it, as a pure table has no names
{
    EXPECT_EQ(joined(basesOf("AbstractDocument")), "QObject\nPluginData");
    EXPECT_EQ(joined(slotsOf("till::Cheque")),
              joined(objectSlots
                     + QStringList { "getOpenTime", "canGoOffline", "hasCardRecord", "getDocumentIdentity", "hasCoupon",
                                     "hasCardRecordOfType", "getCardRecord", "getSumToPay", "getCurrentPosition",
                                     "getBonusRecords", "getDocumentType", "getChequeNumber", "getShiftNumber",
                                     "getCloseTime", "getDocumentSum", "getSourceDocumentId", "getGoodsItems",
                                     "getDeletedGoodsItems", "getMoneyItems", "getPositionCount", "getDocumentImpacts",
                                     "isDeferred", "setPluginDataJson", "getPluginDataJson" }));
    EXPECT_EQ(slotsOf("AbstractDocument").size(), 36);
}

TEST(ClassLayout, Config)
{
    QStringList names = slotsOf("Config");
    names.removeAll(QStringLiteral("~"));
    EXPECT_EQ(joined(names), "getString\ngetInt\ngetBool");
}

TEST(ClassLayout, RestClient)
{
    EXPECT_EQ(joined(basesOf("RestClient")), "QObject");
    EXPECT_EQ(joined(slotsOf("RestClient")),
              joined(objectSlots
                     + QStringList { "post", "getHttpStatus", "getErrorText", "getResponseBody", "setTimeout",
                                     "isSuccess", "hasConnectionError", "hasHttpError" }));
}
