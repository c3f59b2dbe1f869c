#include "tests/store/json_samples.h"
#include "tests/store/store_test.h"
#include "till/store/document_json.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using ::testing::StartsWith;

namespace {

constexpr const char* refused = "Документ не записывается и не читается: ";

[[nodiscard]] std::string refusalOf(const QByteArray& text)
{
    return refusal([&text] { (void)till::documentFromJson(text); });
}

[[nodiscard]] std::string refusalOf(const QJsonValue& document)
{
    return refusalOf(QJsonDocument(document.toObject()).toJson());
}

[[nodiscard]] QJsonObject sample()
{
    return QJsonDocument::fromJson(storedReturn).object();
}

/// The value with one entry replaced, or removed by `QJsonValue::Undefined`. Paths are keys and indices: "lines/0/sum".
[[nodiscard]] QJsonValue with(const QJsonValue& value, const QStringList& path, const QJsonValue& entry)
{
    if (path.isEmpty()) {
        return entry;
    }
    const QString& key = path.constFirst();
    if (value.isArray()) {
        QJsonArray array = value.toArray();
        array[key.toInt()] = with(array.at(key.toInt()), path.mid(1), entry);
        return array;
    }
    QJsonObject object = value.toObject();
    const QJsonValue changed = with(object.value(key), path.mid(1), entry);
    if (changed.isUndefined()) {
        object.remove(key);
    } else {
        object.insert(key, changed);
    }
    return object;
}

/// Every entry of every object that the form itself knows: what plug-ins and `serder` have put in is theirs.
[[nodiscard]] QStringList pathsWithin(const QJsonValue& value, const QString& path = {})
{
    static const QStringList free { u"impacts/0/values"_s, u"impacts/0/impact"_s, u"pluginValues"_s };
    QStringList paths;
    if (free.contains(path)) {
        return paths;
    }
    const QString prefix = path.isEmpty() ? QString() : path + u'/';
    const QJsonObject object = value.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        paths.append(prefix + entry.key());
        paths.append(pathsWithin(entry.value(), prefix + entry.key()));
    }
    const QJsonArray array = value.toArray();
    for (int index = 0; index < array.size(); ++index) {
        paths.append(pathsWithin(array.at(index), prefix + QString::number(index)));
    }
    return paths;
}

// Where nothing may stand.
const QStringList optional { u"sale"_s,           u"sale/openTime"_s,         u"sale/closeTime"_s,
                             u"head/closeTime"_s, u"head/sourceDocumentId"_s, u"head/documentSum"_s,
                             u"head/sumToPay"_s,  u"lines/0/sum"_s,           u"deletedLines/0/sum"_s,
                             u"cards/0/number"_s, u"cards/0/bonusBalance"_s,  u"bonusRecords/0/dateTime"_s };

// Where any value may stand.
const QStringList anything { u"head/sourceDocumentId"_s, u"cards/0/number"_s, u"cards/0/bonusBalance"_s };

struct Damage {
    const char* name;
    const char* path;
    QJsonValue entry;
};

void PrintTo(const Damage& row, std::ostream* stream)
{
    *stream << row.path;
}

class DamagedDocument : public ::testing::TestWithParam<Damage> { };

} // namespace

TEST(DamagedDocumentTest, SampleIsReadWhenItIsWhole)
{
    EXPECT_EQ(refusalOf(storedReturn), "(none)");
    EXPECT_EQ(refusalOf(QJsonValue(sample())), "(none)");
}

TEST(DamagedDocumentTest, TextCutAnywhereIsRefused)
{
    for (int size = 0; size < storedReturn.size(); ++size) {
        ASSERT_THAT(refusalOf(storedReturn.left(size)), StartsWith(refused)) << "cut after " << size;
    }
}

TEST(DamagedDocumentTest, TextWithAByteOverwrittenAnywhereNeverCrashes)
{
    int refusals = 0;
    for (int place = 0; place < storedReturn.size(); ++place) {
        for (const char byte : { '\0', '"', '9', '}', '\xff' }) {
            QByteArray text = storedReturn;
            text[place] = byte;
            refusals += refusalOf(text) == "(none)" ? 0 : 1;
        }
    }
    EXPECT_GT(refusals, storedReturn.size()); // within texts and numbers many of them are not to be seen
}

TEST(DamagedDocumentTest, TextThatIsNoDocumentIsRefused)
{
    for (const char* text :
         { "", " ", "null", "1", "\"text\"", "[]", "{}", "[{\"version\":1}]", "text", "<a/>", "{]", "\xef\xbb\xbf" }) {
        EXPECT_THAT(refusalOf(QByteArray(text)), StartsWith(refused)) << text;
    }
    EXPECT_THAT(refusalOf('[' + storedReturn + ']'), StartsWith(refused));
    EXPECT_THAT(refusalOf(QByteArray(100'000, '[')), StartsWith(refused));
    EXPECT_THAT(refusalOf(QByteArray("{\"a\":").repeated(100'000)), StartsWith(refused));
}

TEST(DamagedDocumentTest, MissingEntryIsRefusedAndNamed)
{
    const QStringList paths = pathsWithin(sample());
    ASSERT_EQ(paths.size(), 68);
    for (const QString& path : paths) {
        const QString key = path.section(u'/', -1);

        EXPECT_EQ(refusalOf(with(sample(), path.split(u'/'), QJsonValue::Undefined)),
                  refused + u"\"%1\" is missing or damaged"_s.arg(key).toStdString())
            << path.toStdString();
    }
}

TEST(DamagedDocumentTest, EntryOfAnotherTypeIsRefusedAndNamed)
{
    const QList<QJsonValue> values {
        true, u"text"_s, 1, QJsonArray { 1 }, QJsonObject { { u"a"_s, 1 } }, QJsonValue::Null
    };
    for (const QString& path : pathsWithin(sample())) {
        const QString key = path.section(u'/', -1);
        QJsonValue standing = sample();
        for (const QString& step : path.split(u'/')) {
            standing = standing.isArray() ? standing[step.toInt()] : standing[step];
        }
        for (const QJsonValue& value : values) {
            if (value.type() == standing.type() || anything.contains(path)
                || (value.isNull() && optional.contains(path)) || standing.isNull()) {
                continue;
            }
            EXPECT_EQ(refusalOf(with(sample(), path.split(u'/'), value)),
                      refused + u"\"%1\" is missing or damaged"_s.arg(key).toStdString())
                << path.toStdString() << ' ' << static_cast<int>(value.type());
        }
    }
}

TEST(DamagedDocumentTest, OptionalEntryMayBeNothing)
{
    for (const QString& path : optional) {
        EXPECT_EQ(refusalOf(with(sample(), path.split(u'/'), QJsonValue::Null)), "(none)") << path.toStdString();
    }
}

TEST_P(DamagedDocument, IsRefused)
{
    const QStringList path = QString::fromLatin1(GetParam().path).split(u'/');

    EXPECT_THAT(refusalOf(with(sample(), path, GetParam().entry)), StartsWith(refused));
}

INSTANTIATE_TEST_SUITE_P(
    Values, DamagedDocument,
    ::testing::Values(
        Damage { "LaterVersion", "version", 2 }, Damage { "VersionZero", "version", 0 },
        Damage { "VersionWithAFraction", "version", 1.5 }, Damage { "EmptyIdentity", "identity", u""_s },
        Damage { "NumberWithAFraction", "head/number", 10.5 },
        Damage { "NumberBeyondInt", "head/number", 2147483648.0 },
        Damage { "NumberBelowInt", "head/number", -2147483649.0 }, Damage { "NumberBeyondAll", "head/number", 1e300 },
        Damage { "OpenTimeUnreadable", "head/openTime", u"yesterday"_s },
        Damage { "OpenTimeOfNoDay", "head/openTime", u"2024-02-30T10:00:00.000"_s },
        Damage { "CloseTimeEmpty", "head/closeTime", u""_s }, Damage { "SumAsText", "head/sumToPay", u"1"_s },
        Damage { "PositionTwice", "deletedLines/0/posnum", 2 },
        Damage { "CurrentPositionDeleted", "currentPosition", 1 },
        Damage { "CurrentPositionUnknown", "currentPosition", 9 }, Damage { "LineIsText", "lines/0", u"text"_s },
        Damage { "LineIsNothing", "lines/0", QJsonValue::Null }, Damage { "CouponIsNumber", "coupons/0", 10 },
        Damage { "CardIsList", "cards/0", QJsonArray() }, Damage { "KindUnknown", "impacts/0/kind", u"gift"_s },
        Damage { "GroupIsText", "pluginValues/Vantiro", u"text"_s },
        Damage { "GroupOfAnImpactIsList", "impacts/0/values/Vantiro", QJsonArray() }),
    [](const ::testing::TestParamInfo<Damage>& row) { return std::string(row.param.name); });
