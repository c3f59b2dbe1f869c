#include "host/facilities/serder.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

[[nodiscard]] QStringList listFrom(const QVariant& source)
{
    QStringList list { "former" };
    serder::default_serder_type<QList<QString>>::deserialize(&list, source);
    return list;
}

} // namespace

TEST(SerderListTest, ListIsStoredAsListOfTexts)
{
    QVariant target;
    serder::default_serder_type<QList<QString>>::serialize(&target, { "0042", "", "№1" });
    EXPECT_EQ(target.metaType(), QMetaType::fromType<QList<QString>>());
    EXPECT_EQ(target.toStringList(), (QStringList { "0042", "", "№1" }));
}

TEST(SerderListTest, ListIsReadFromAnyListOfAStore)
{
    EXPECT_EQ(listFrom(QStringList { "0042", "" }), (QStringList { "0042", "" }));
    EXPECT_EQ(listFrom(QVariantList { "0042", "" }), (QStringList { "0042", "" }));
    EXPECT_EQ(listFrom(QJsonArray { "0042", "" }.toVariantList()), (QStringList { "0042", "" }));
}

TEST(SerderListTest, NothingStoredReadsAsEmptyList)
{
    EXPECT_EQ(listFrom(QVariant()), QStringList());
    EXPECT_EQ(listFrom(QVariant::fromValue(nullptr)), QStringList());
    EXPECT_EQ(listFrom(QStringList()), QStringList());
}
