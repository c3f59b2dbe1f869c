#include "tests/documents/page.h"
#include "tests/front/till_at_work.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// The page for integrators and the README name the very keys that the code reads.

namespace {

[[nodiscard]] const Page& integrators()
{
    static const Page page(projectText(u"docs/integrators.md"_s));
    return page;
}

[[nodiscard]] QString valueOf(const QString& cell)
{
    return cell == u"empty" ? QString() : codeOf(cell);
}

/// As `ScriptedConfig` tells of a question.
[[nodiscard]] QString questionOf(const Row& row)
{
    static const QMap<QString, QString> types { { u"text"_s, u"string %1, else '%2'"_s },
                                                { u"integer"_s, u"int %1, else %2"_s },
                                                { u"flag"_s, u"bool %1, else %2"_s } };
    return types.value(row.cells[1]).arg(codeOf(row.cells[0]), valueOf(row.cells[2]));
}

/// The keys of that group that the text names.
[[nodiscard]] QStringList keysIn(const QString& text, const QString& group)
{
    QStringList keys;
    const QRegularExpression key(u"\\b(%1:[A-Za-z]\\w*)"_s.arg(group));
    for (const QRegularExpressionMatch& match : key.globalMatch(text)) {
        keys.append(match.captured(1));
    }
    keys.removeDuplicates();
    keys.sort();
    return keys;
}

[[nodiscard]] QStringList keysInSources(const QStringList& folders, const QString& group)
{
    QString text;
    for (const QString& folder : folders) {
        for (const QString& file : projectFiles(folder, { u"*.cpp"_s, u"*.h"_s })) {
            text += projectText(file);
        }
    }
    return keysIn(text, group);
}

/// The one value that the text gives by that name, empty when it gives none.
[[nodiscard]] QString settingIn(const QString& text, const QString& name)
{
    return QRegularExpression(u"%1 `([^`]*)`"_s.arg(name)).match(text).captured(1);
}

} // namespace

TEST(ConfigurationTable, HasTheKeysTypesAndDefaultsThatThePlugInAsksFor)
{
    QStringList told;
    for (const Row& row : integrators().rows()) {
        if (row.head.constFirst() == u"key") {
            told.append(questionOf(row));
        }
    }
    ScriptedConfig config;
    Vantiro plugin;
    ASSERT_TRUE(plugin.init());

    QStringList asked = config.questions();
    EXPECT_EQ(asked.removeDuplicates(), 0);
    asked.sort();
    told.sort();
    EXPECT_EQ(told.join(u'\n').toStdString(), asked.join(u'\n').toStdString());
}

TEST(ConfigurationTable, HasEveryKeyThatStandsInTheSourcesOfThePlugIn)
{
    QStringList told;
    for (const Row& row : integrators().rows()) {
        told += keysIn(row.cells.constFirst(), u"Vantiro"_s);
    }
    told.sort();
    const QStringList read
        = keysInSources({ u"front"_s, u"client"_s, u"cheque"_s, u"bonus"_s, u"reports"_s }, u"Vantiro"_s);
    EXPECT_EQ(told.join(u' ').toStdString(), read.join(u' ').toStdString());
}

TEST(Configuration, NoPageNamesAKeyThatNobodyReads)
{
    const QStringList known
        = keysInSources({ u"front"_s, u"client"_s }, u"Vantiro"_s) + keysInSources({ u"till"_s }, u"Till"_s);
    EXPECT_GE(known.size(), 13);
    for (const QString& page : projectPages()) {
        const QString text = projectText(page);
        for (const QString& key : keysIn(text, u"Vantiro"_s) + keysIn(text, u"Till"_s)) {
            EXPECT_TRUE(known.contains(key)) << page.toStdString() << " names " << key.toStdString();
        }
    }
}

TEST(CouponTable, SaysWhatThePlugInDoes)
{
    int cells = 0;
    for (const Row& row : integrators().rows()) {
        if (row.head.constFirst() != u"setting") {
            continue;
        }
        const TillAtWork till(TillAtWork::saleWithCard(),
                              { { u"Vantiro:checkCouponMask"_s, settingIn(row.cells[0], u"mask"_s) },
                                { u"Vantiro:checkCouponPrefix"_s, settingIn(row.cells[0], u"prefix"_s) } });
        for (qsizetype column = 1; column < row.cells.size(); ++column) {
            const QString number = codeOf(row.head[column]);
            EXPECT_EQ(till.plugin.isCheckCouponNumber(number) ? "yes" : "no", row.cells[column].toStdString())
                << row.cells[0].toStdString() << ", number " << number.toStdString();
            ++cells;
        }
    }
    EXPECT_EQ(cells, 30);
}
