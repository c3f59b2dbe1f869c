#include "host/document/plugin_data.h"
#include "till/document/plugin_values.h"

#include <gtest/gtest.h>

namespace {

const QString group = QStringLiteral("Vantiro");
const QString key = QStringLiteral("offlineMode");

TEST(PluginData, GivesTheDefaultForAnUnknownKey)
{
    PluginData data;
    EXPECT_EQ(data.getValue(group, key, QVariant(7)), QVariant(7));

    data.setValue(group, QStringLiteral("other"), QVariant(1));
    EXPECT_EQ(data.getValue(group, key, QVariant(7)), QVariant(7));
}

TEST(PluginData, GivesTheLastStoredValue)
{
    PluginData data;
    data.setValue(group, key, QVariant(false));
    data.setValue(group, key, QVariant(true));

    EXPECT_EQ(data.getValue(group, key, QVariant()), QVariant(true));
}

TEST(PluginData, StoredInvalidValueIsNoDefault)
{
    PluginData data;
    data.setValue(group, key, QVariant());

    EXPECT_FALSE(data.getValue(group, key, QVariant(7)).isValid());
}

TEST(PluginData, GroupsAreApart)
{
    PluginData data;
    data.setValue(group, key, QVariant(1));
    data.setValue(QStringLiteral("Other"), key, QVariant(2));

    EXPECT_EQ(data.getValue(group, key, QVariant()), QVariant(1));
    EXPECT_EQ(data.getValue(QStringLiteral("Other"), key, QVariant()), QVariant(2));
}

TEST(PluginData, CopyIsIndependent)
{
    PluginData data;
    data.setValue(group, key, QVariant(1));
    PluginData copy(data);
    copy.setValue(group, key, QVariant(2));

    EXPECT_EQ(data.getValue(group, key, QVariant()), QVariant(1));
    EXPECT_EQ(copy.getValue(group, key, QVariant()), QVariant(2));
}

TEST(PluginData, ValuesOfAnObjectAreThoseThatItGivesOut)
{
    PluginData data;
    data.setValue(group, key, QVariant(1));

    EXPECT_EQ(till::pluginValuesOf(data).value(group), (QMap<QString, QVariant> { { key, QVariant(1) } }));

    till::pluginValuesOf(data).remove(group);
    EXPECT_FALSE(data.getValue(group, key, QVariant()).isValid());
}

}
