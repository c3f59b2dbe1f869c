#include <gmock/gmock.h>

#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

// What the library gives and needs. A symbol too many is an accident waiting in somebody else's process.

namespace {

[[nodiscard]] QStringList linesOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments + QStringList { QStringLiteral(VANTIRO_PLUGIN_FILE) });
    EXPECT_TRUE(process.waitForFinished(30'000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

/// Sanitizers add their run-time libraries and symbols.
[[nodiscard]] bool isOfSanitizer(const QString& name)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(lib[atu]?[bs]?san\\.so.*|__(asan|ubsan|tsan|sanitizer|lsan|gcov)_.*)$"));
    return pattern.match(name).hasMatch();
}

} // namespace

TEST(PluginSymbols, ExportsTheTwoEntryPointsAndNothingElse)
{
    QSet<QString> names;
    for (const QString& line : linesOf(QStringLiteral("nm"), { QStringLiteral("-DP"), QStringLiteral("--defined-only") })) {
        names.insert(line.section(u' ', 0, 0));
    }
    EXPECT_EQ(names,
              QSet<QString>({ QStringLiteral("qt_plugin_instance"), QStringLiteral("qt_plugin_query_metadata_v2") }));
}

TEST(PluginSymbols, NeedsQtCoreXmlCore5CompatAndTheRuntimes)
{
    static const QRegularExpression needed(QStringLiteral("\\(NEEDED\\).*\\[(.*)\\]"));
    QStringList libraries;
    for (const QString& line : linesOf(QStringLiteral("readelf"), { QStringLiteral("-d") })) {
        const QRegularExpressionMatch match = needed.match(line);
        if (match.hasMatch() && !isOfSanitizer(match.captured(1))) {
            libraries.append(match.captured(1));
        }
    }
    libraries.removeAll(QStringLiteral("libm.so.6")); // part of the C runtime; not every optimisation level calls it
    EXPECT_THAT(libraries,
                testing::UnorderedElementsAre(QStringLiteral("libQt6Core.so.6"), QStringLiteral("libQt6Xml.so.6"),
                                              QStringLiteral("libQt6Core5Compat.so.6"),
                                              QStringLiteral("libstdc++.so.6"), QStringLiteral("libgcc_s.so.1"),
                                              QStringLiteral("libc.so.6")));
}

TEST(PluginSymbols, LeavesUndefinedOnlyTheContract)
{
    // The classes of the contract that the plug-in stands on. Another one here is a new duty of every host.
    static const QStringList contract {
        QStringLiteral("tr::Tr"),
        QStringLiteral("BasicException"),
        QStringLiteral("DocumentException"),
        QStringLiteral("CouponException"),
        QStringLiteral("CouponAddException"),
        QStringLiteral("Singleton<(Config|ActivityNotifier|DBQueueBroker|DocumentsDao|Session)>"),
        QStringLiteral("MockFactory<(RestClient|Dialog|TextPrinter|CouponLogic|CurrentTime|SaveToFileLogic)>"),
        QStringLiteral("Config"),
        QStringLiteral("ActivityNotifier"),
        QStringLiteral("DBQueueBroker"),
        QStringLiteral("DocumentsDao"),
        QStringLiteral("Session"),
        QStringLiteral("RestClient"),
        QStringLiteral("Dialog"),
        QStringLiteral("TextPrinter"),
        QStringLiteral("CouponLogic"),
        QStringLiteral("CurrentTime"),
        QStringLiteral("SaveToFileLogic"),
        QStringLiteral("Log4Qt::(Logger|LogManager)"),
        QStringLiteral("Finally"),
        QStringLiteral("serder::details::Strategy"),
        QStringLiteral("core::BasicDialog::Result"),
        QStringLiteral("control::Action"),
        QStringLiteral("ActionTrigger"),
        QStringLiteral("ActionHandler"),
        QStringLiteral("Event"),
        QStringLiteral("BaseActivityListener"),
        QStringLiteral("BasicPlugin"),
        QStringLiteral("BasicLoyaltySystem"),
        QStringLiteral("DocumentWatcher"),
        QStringLiteral("TaskResult"),
        QStringLiteral("BasicTask"),
        QStringLiteral("CustomTask"),
        QStringLiteral("AbstractDocument"),
        QStringLiteral("BackBySaleDocument"),
        QStringLiteral("GoodsItem"),
        QStringLiteral("MoneyItem"),
        QStringLiteral("DocumentCardRecord"),
        QStringLiteral("Coupon"),
        QStringLiteral("PluginData"),
        QStringLiteral("DocumentImpact"),
        QStringLiteral("DocumentImpactDetail"),
        QStringLiteral("DiscountImpact"),
        QStringLiteral("BonusImpact"),
        QStringLiteral("ModifiersContainer"),
    };
    const QRegularExpression ofContract(
        QStringLiteral("^((non-)?virtual thunk to |(typeinfo|vtable|VTT|typeinfo name|construction vtable) for )?(%1)(::.*)?$")
            .arg(contract.join(u'|')));
    // Qt's compatibility library has no versions, and what a sanitizer replaces loses its own.
    static const QRegularExpression ofRuntimes(
        QStringLiteral("@(Qt_6|GLIBC|GLIBCXX|CXXABI|GCC)|^QRegExp::|^operator (new|delete)(\\[\\])?\\(|^__cxa_"
                       "|^(mem(cpy|move|set|cmp)|str(cmp|len))$"));

    QStringList strangers;
    int known = 0;
    for (const QString& line :
         linesOf(QStringLiteral("nm"), { QStringLiteral("-DC"), QStringLiteral("--undefined-only") })) {
        const QString kind = line.trimmed().section(u' ', 0, 0);
        const QString name = line.trimmed().section(u' ', 1);
        if (kind != u"U" || ofRuntimes.match(name).hasMatch() || isOfSanitizer(name)) {
            continue; // weak ones may stay undefined
        }
        if (ofContract.match(name).hasMatch()) {
            ++known;
        } else {
            strangers.append(name);
        }
    }
    EXPECT_EQ(strangers.join(u'\n').toStdString(), "");
    EXPECT_GT(known, 50) << "the list is not read as it should be";
}
