#include "tests/support/document_builder.h"
#include "till/document/plugin_values.h"
#include "till/store/document_json.h"
#include "till/store/json_text.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// Maps that were written before are not written again, and that shows in nothing but the time.

namespace {

/// A map of eight entries, the fewest that are kept: `{"a":1,…,"h":8}` with the last one of that value.
[[nodiscard]] QVariantMap large(const QVariant& last = 8)
{
    QVariantMap map;
    for (int i = 1; i < 8; ++i) {
        map.insert(QString(QChar(u'a' + i - 1)), i);
    }
    map.insert(u"h"_s, last);
    return map;
}

const std::string largeText = R"({"a":1,"b":2,"c":3,"d":4,"e":5,"f":6,"g":7,"h":8})";

[[nodiscard]] std::string written(const QVariant& value, till::KeptMaps& kept)
{
    till::JsonText json;
    json.keepMaps(&kept);
    json.any(value);
    json.keepMaps(nullptr);
    return json.take().toStdString();
}

[[nodiscard]] std::string writtenAnew(const QVariant& value)
{
    till::JsonText json;
    json.any(value);
    return json.take().toStdString();
}

[[nodiscard]] std::string textOf(const QSharedPointer<AbstractDocument>& document)
{
    return till::toJson(document).toStdString();
}

} // namespace

TEST(KeptMaps, SameMapIsTakenFromThere)
{
    till::KeptMaps kept;
    const QVariantMap map = large();
    EXPECT_EQ(written(map, kept), largeText);
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(kept[0].text.toStdString(), largeText);
    kept[0].text = R"({"from":"there"})";
    EXPECT_EQ(written(QVariantList { 1, map, 2 }, kept), R"([1,{"from":"there"},2])");
    EXPECT_EQ(written(QVariantMap { { u"x"_s, map } }, kept), R"({"x":{"from":"there"}})");
}

TEST(KeptMaps, MapThatWasChangedIsWrittenAsItIs)
{
    till::KeptMaps kept;
    QVariantMap map = large();
    EXPECT_EQ(written(map, kept), largeText);
    map.insert(u"h"_s, u"other"_s);
    EXPECT_EQ(written(map, kept), R"({"a":1,"b":2,"c":3,"d":4,"e":5,"f":6,"g":7,"h":"other"})");
    ASSERT_EQ(kept.size(), 1);
    EXPECT_TRUE(kept[0].map.isSharedWith(map));
    map.insert(u"h"_s, 8);
    EXPECT_EQ(written(map, kept), largeText);
}

TEST(KeptMaps, MapsThatComeAndGoAreWrittenAsTheyAre)
{
    till::KeptMaps kept;
    const QVariantMap one = large(u"1"_s);
    const QVariantMap two = large(u"2"_s);
    const QVariantMap three = large(u"3"_s);
    const QList<QVariantList> lists { { one, two, three }, { one, three }, { three, one }, { two, three, one }, {},
                                      { one, one },        { one, two },   { two } };
    for (const QVariantList& list : lists) {
        EXPECT_EQ(written(list, kept), writtenAnew(list));
        EXPECT_EQ(kept.size(), list.size());
    }
}

TEST(KeptMaps, OnlyLargeMapsOfPlainValuesAreKept)
{
    till::KeptMaps kept;
    QVariantMap small = large();
    small.remove(u"a"_s);
    const QVariantList others { small, large(QVariantMap()), large(QVariantList { 1 }), large(QDate(2024, 3, 5)) };
    EXPECT_EQ(written(others, kept), writtenAnew(others));
    EXPECT_EQ(kept.size(), 0);
    const QVariantMap inner = large();
    EXPECT_EQ(written(large(inner), kept), R"({"a":1,"b":2,"c":3,"d":4,"e":5,"f":6,"g":7,"h":)" + largeText + '}');
    ASSERT_EQ(kept.size(), 1);
    EXPECT_TRUE(kept[0].map.isSharedWith(inner));
}

TEST(KeptMaps, WhatAPlugInStoresAnewIsInTheNextTextOfTheDocument)
{
    const QSharedPointer<till::Cheque> document = DocumentBuilder().line(Goods(1, u"0042"_s, 10.5)).build();
    document->setValue(u"vantiro"_s, u"state"_s, QVariantList { large(), large() });
    const std::string first = textOf(document);
    EXPECT_NE(first.find(R"("pluginValues":{"vantiro":{"state":[)" + largeText + ',' + largeText + "]}}"),
              std::string::npos)
        << first;
    EXPECT_EQ(textOf(document), first);

    till::pluginValuesOf(*document)[u"vantiro"_s][u"state"_s] = QVariantList { large(), large(9.5), large() };
    const std::string second = textOf(document);
    EXPECT_NE(second.find(largeText + R"(,{"a":1,"b":2,"c":3,"d":4,"e":5,"f":6,"g":7,"h":9.5},)" + largeText + "]}}"),
              std::string::npos)
        << second;

    till::pluginValuesOf(*document).clear();
    EXPECT_NE(textOf(document).find(R"("pluginValues":{},)"), std::string::npos);
}
