#include "host/facilities/serder.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QObject>

#include <gtest/gtest.h>

#include <ctime>
#include <limits>

namespace {

/// A store that knows what JSON knows.
[[nodiscard]] QVariant throughJson(const QVariant& stored)
{
    const QByteArray file = QJsonDocument(QJsonObject { { QStringLiteral("value"), QJsonValue::fromVariant(stored) } })
                                .toJson(QJsonDocument::Compact);
    return QJsonDocument::fromJson(file).object().value(QStringLiteral("value")).toVariant();
}

[[nodiscard]] QVariant throughMemory(const QVariant& stored)
{
    return stored;
}

} // namespace

namespace serder_test {

/// The classes of the contract derive so: a base that has no meta-object comes first.
class Plain {
public:
    virtual ~Plain() = default;
    int untouched = 42;
};

class Record : public Plain {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(double sum MEMBER sum)
    Q_PROPERTY(int position MEMBER position)
    Q_PROPERTY(bool flag MEMBER flag)
    Q_PROPERTY(QDateTime moment MEMBER moment)
    Q_PROPERTY(QVariant rate MEMBER rate)
    Q_PROPERTY(QStringList coupons MEMBER coupons)
    Q_PROPERTY(Kind kind MEMBER kind)
    Q_PROPERTY(int notStored MEMBER notStored STORED false)
    Q_PROPERTY(int readOnly READ getReadOnly)

public:
    enum class Kind { percent = 1, sum = 7 };
    Q_ENUM(Kind)

    [[nodiscard]] int getReadOnly() const
    {
        return 13;
    }

    QString name;
    double sum = 0.0;
    int position = 0;
    bool flag = false;
    QDateTime moment;
    QVariant rate;
    QStringList coupons;
    Kind kind = Kind::percent;
    int notStored = 0;
};

class Derived : public Record {
    Q_GADGET
    Q_PROPERTY(int extra MEMBER extra)

public:
    int extra = 0;
};

} // namespace serder_test

namespace {

using serder_test::Derived;
using serder_test::Record;

[[nodiscard]] QVariant stored(const Record& record)
{
    QVariant result;
    serder::default_serder_type<Record>::strategy.serialize(&result, &record, Record::staticMetaObject);
    return result;
}

void restore(Record& record, const QVariant& source)
{
    serder::default_serder_type<Record>::strategy.deserialize(&record, source, Record::staticMetaObject);
}

/// While it lives, the till stands in a time zone, given as POSIX has it.
class TillTime {
public:
    explicit TillTime(const char* zone)
        : former(qEnvironmentVariableIsSet("TZ") ? qgetenv("TZ") : QByteArray())
    {
        set(zone);
    }

    ~TillTime()
    {
        set(former);
    }

private:
    Q_DISABLE_COPY_MOVE(TillTime)

    static void set(const QByteArray& zone)
    {
        if (zone.isNull()) {
            qunsetenv("TZ");
        } else {
            qputenv("TZ", zone);
        }
        tzset();
    }

    QByteArray former;
};

[[nodiscard]] QVariantMap one(const char* key, const QVariant& value)
{
    return { { QLatin1String(key), value } };
}

} // namespace

TEST(SerderTest, StoredAreTheReadableWritableStoredProperties)
{
    EXPECT_EQ(stored(Record()).toMap().keys(),
              (QStringList { "coupons", "flag", "kind", "moment", "name", "position", "rate", "sum" }));
}

namespace {

/// Every rule of this suite holds for values kept in memory and for values that went through a file.
class SerderTripTest : public ::testing::TestWithParam<QVariant (*)(const QVariant&)> {
protected:
    [[nodiscard]] static Record tripOf(const Record& record)
    {
        Record result;
        restore(result, GetParam()(stored(record)));
        return result;
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Stores, SerderTripTest, ::testing::Values(throughMemory, throughJson));

TEST_P(SerderTripTest, ValuesComeBack)
{
    Record record;
    record.name = QStringLiteral("Скидка \"10%\"\n№1");
    record.sum = 0.1;
    record.position = -3;
    record.flag = true;
    record.coupons = { "0042", "" };
    record.kind = Record::Kind::sum;

    const Record back = tripOf(record);

    EXPECT_EQ(back.name, QStringLiteral("Скидка \"10%\"\n№1"));
    EXPECT_EQ(back.sum, 0.1);
    EXPECT_EQ(back.position, -3);
    EXPECT_TRUE(back.flag);
    EXPECT_EQ(back.coupons, (QStringList { "0042", "" }));
    EXPECT_EQ(back.kind, Record::Kind::sum);
    EXPECT_EQ(back.untouched, 42);
}

TEST_P(SerderTripTest, WholeSumComesBackAsDouble)
{
    Record record;
    record.sum = 100.0;
    EXPECT_EQ(tripOf(record).sum, 100.0);
}

TEST_P(SerderTripTest, LargestIntegersComeBack)
{
    Record record;
    record.position = std::numeric_limits<int>::min();
    EXPECT_EQ(tripOf(record).position, std::numeric_limits<int>::min());
    record.position = std::numeric_limits<int>::max();
    EXPECT_EQ(tripOf(record).position, std::numeric_limits<int>::max());
}

TEST_P(SerderTripTest, PropertyOutsideTheStoreStaysAsItIs)
{
    Record record;
    record.notStored = 5;
    EXPECT_EQ(tripOf(record).notStored, 0);
}

TEST_P(SerderTripTest, LocalMomentComesBackAsTheSameLocalMoment)
{
    Record record;
    record.moment = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 7));
    const Record back = tripOf(record);
    EXPECT_EQ(back.moment, QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 7)));
    EXPECT_EQ(back.moment.timeSpec(), Qt::LocalTime);
}

TEST_P(SerderTripTest, MomentOfAnotherZoneComesBackInTheTimeOfTheTill)
{
    const TillTime moscow("MSK-3");
    Record record;
    record.moment = QDateTime::fromString(QStringLiteral("2024-02-29T23:59:58+05:00"), Qt::ISODate);
    EXPECT_EQ(tripOf(record).moment.toString(Qt::ISODate), QStringLiteral("2024-02-29T21:59:58"));
    record.moment = QDateTime::fromString(QStringLiteral("2024-02-29T20:59:58Z"), Qt::ISODate);
    EXPECT_EQ(tripOf(record).moment.toString(Qt::ISODate), QStringLiteral("2024-02-29T23:59:58"));
}

TEST_P(SerderTripTest, HourThatComesTwiceIsNotMixedUp)
{
    // Clocks went from 03:00 back to 02:00 that night.
    const TillTime berlin("CET-1CEST,M3.5.0,M10.5.0/3");
    for (const QString& moment : QStringList { "2024-10-27T00:30:00Z", "2024-10-27T01:30:00Z" }) {
        Record record;
        record.moment = QDateTime::fromString(moment, Qt::ISODate).toLocalTime();
        ASSERT_EQ(record.moment.toString(Qt::ISODate), QStringLiteral("2024-10-27T02:30:00"));
        EXPECT_EQ(tripOf(record).moment.toUTC().toString(Qt::ISODate), moment);
    }
}

TEST_P(SerderTripTest, InvalidMomentStaysInvalid)
{
    EXPECT_FALSE(tripOf(Record()).moment.isValid());
}

TEST_P(SerderTripTest, InvalidVariantStaysInvalid)
{
    EXPECT_FALSE(tripOf(Record()).rate.isValid());
}

TEST_P(SerderTripTest, InvalidVariantReplacesAValue)
{
    Record record;
    record.rate = 7;
    restore(record, GetParam()(stored(Record())));
    EXPECT_FALSE(record.rate.isValid());
}

TEST_P(SerderTripTest, IntegerInAVariantReadsAsTheSameInteger)
{
    Record record;
    record.rate = 1234567;
    EXPECT_EQ(tripOf(record).rate.toInt(), 1234567);
}

TEST_P(SerderTripTest, DoubleInAVariantReadsAsTheSameDouble)
{
    Record record;
    record.rate = 12.5;
    EXPECT_EQ(tripOf(record).rate.toDouble(), 12.5);
}

TEST_P(SerderTripTest, MapsAndListsInAVariantComeBack)
{
    Record record;
    record.rate = QVariantMap { { "7", QVariantList { "a", QVariant(), true } } };
    const QVariantList list = tripOf(record).rate.toMap().value(QStringLiteral("7")).toList();
    ASSERT_EQ(list.size(), 3);
    EXPECT_EQ(list.at(0).toString(), QStringLiteral("a"));
    EXPECT_TRUE(list.at(1).isNull());
    EXPECT_TRUE(list.at(2).toBool());
}

TEST(SerderTest, MemoryKeepsTheTypeInsideAVariant)
{
    Record record;
    record.rate = QString();
    Record back;
    restore(back, stored(record));
    EXPECT_EQ(back.rate.metaType(), QMetaType::fromType<QString>());
}

TEST(SerderTest, MomentIsStoredToTheMillisecondWithAllItsDigits)
{
    for (const char* const moment :
         { "0001-01-01T00:00:00.000Z", "2024-02-29T09:08:07.006Z", "2024-12-31T23:59:59.999+03:00",
           "2024-03-05T04:05:06.070-09:30", "9999-12-31T23:59:59.120+05:45", "2024-03-05T04:05:06.700-11:00" }) {
        Record record;
        record.moment = QDateTime::fromString(QString::fromLatin1(moment), Qt::ISODateWithMs);
        EXPECT_EQ(stored(record).toMap().value(QStringLiteral("moment")).toString().toStdString(), moment);
    }
}

TEST(SerderTest, MomentIsStoredAsQtWritesItInEveryHourAndYear)
{
    const QDateTime first(QDate(-20, 1, 1), QTime(0, 0), Qt::UTC);
    constexpr qint64 step = 86'400'000LL * 97 + 3'723'457; // some three months, at another time of the day
    for (int i = 0; i < 40'000; ++i) {
        Record record;
        record.moment = first.addMSecs(i * step).toOffsetFromUtc((i % 57 - 28) * 1800);
        const QString text = record.moment.toString(Qt::ISODateWithMs);
        ASSERT_EQ(stored(record).toMap().value(QStringLiteral("moment")).toString().toStdString(), text.toStdString());
    }
}

TEST(SerderTest, MomentIsStoredWithItsDistanceFromUtc)
{
    Record record;
    record.moment = QDateTime::fromString(QStringLiteral("2024-02-29T23:59:58.120+05:00"), Qt::ISODateWithMs);
    EXPECT_EQ(stored(record).toMap().value(QStringLiteral("moment")),
              QVariant(QStringLiteral("2024-02-29T23:59:58.120+05:00")));
}

TEST(SerderTest, InheritedPropertiesAreStoredToo)
{
    Derived record;
    record.name = QStringLiteral("имя");
    record.extra = 9;
    QVariant form;
    serder::default_serder_type<Derived>::strategy.serialize(&form, &record, Derived::staticMetaObject);
    Derived back;
    serder::default_serder_type<Derived>::strategy.deserialize(&back, throughJson(form), Derived::staticMetaObject);
    EXPECT_EQ(back.name, QStringLiteral("имя"));
    EXPECT_EQ(back.extra, 9);
}

TEST(SerderTest, StrategyOfTheBaseLeavesWhatTheDerivedClassAdds)
{
    Derived record;
    record.extra = 9;
    restore(record, one("name", QStringLiteral("имя")));
    EXPECT_EQ(record.name, QStringLiteral("имя"));
    EXPECT_EQ(record.extra, 9);
}

TEST(SerderTest, KeysThatAreMissingLeaveTheirProperties)
{
    Record record;
    record.name = QStringLiteral("имя");
    record.rate = 3;
    restore(record, one("position", 4));
    EXPECT_EQ(record.name, QStringLiteral("имя"));
    EXPECT_EQ(record.rate, QVariant(3));
    EXPECT_EQ(record.position, 4);
}

TEST(SerderTest, UnknownKeysAreIgnored)
{
    Record record;
    restore(record, QVariantMap { { "later", 1 }, { "notStored", 5 }, { "position", 4 } });
    EXPECT_EQ(record.position, 4);
    EXPECT_EQ(record.notStored, 0);
}

TEST(SerderTest, HashServesAsWellAsMap)
{
    Record record;
    restore(record, QVariantHash { { "position", 4 } });
    EXPECT_EQ(record.position, 4);
}

TEST(SerderTest, SourceThatIsNoMapChangesNothing)
{
    Record record;
    record.position = 4;
    for (const QVariant& source :
         { QVariant(), QVariant::fromValue(nullptr), QVariant(7), QVariant("text"), QVariant(QVariantList { 1 }) }) {
        restore(record, source);
    }
    EXPECT_EQ(record.position, 4);
}

namespace {

struct Unreadable {
    const char* key;
    QVariant value;
};

class SerderUnreadableTest : public ::testing::TestWithParam<Unreadable> { };

} // namespace

TEST_P(SerderUnreadableTest, PropertyStaysAsItIs)
{
    Record record;
    record.name = QStringLiteral("имя");
    record.position = 3;
    record.sum = 1.5;
    record.moment = QDateTime(QDate(2024, 2, 29), QTime(12, 0));
    record.kind = Record::Kind::sum;
    record.coupons = QStringList { "0042" };

    restore(record, one(GetParam().key, GetParam().value));

    EXPECT_EQ(record.name, QStringLiteral("имя"));
    EXPECT_EQ(record.position, 3);
    EXPECT_EQ(record.sum, 1.5);
    EXPECT_EQ(record.moment, QDateTime(QDate(2024, 2, 29), QTime(12, 0)));
    EXPECT_EQ(record.kind, Record::Kind::sum);
    EXPECT_EQ(record.coupons, QStringList { "0042" });
}

INSTANTIATE_TEST_SUITE_P(
    Values, SerderUnreadableTest,
    ::testing::Values(Unreadable { "position", QVariant() }, Unreadable { "position", QVariant::fromValue(nullptr) },
                      Unreadable { "position", "x" }, Unreadable { "position", 1.5 }, Unreadable { "position", 3e9 },
                      Unreadable { "position", -3e9 },
                      Unreadable { "position", std::numeric_limits<double>::quiet_NaN() },
                      Unreadable { "position", QVariantMap() }, Unreadable { "sum", "x" },
                      Unreadable { "sum", QVariant::fromValue(nullptr) }, Unreadable { "moment", "yesterday" },
                      Unreadable { "moment", QVariant::fromValue(nullptr) },
                      Unreadable { "name", QVariant::fromValue(nullptr) }, Unreadable { "name", QVariantMap() },
                      Unreadable { "kind", "x" }, Unreadable { "coupons", QVariant::fromValue(nullptr) }));

TEST(SerderTest, DoubleThatIsAnIntegerIsReadAsOne)
{
    Record record;
    restore(record, QVariantMap { { "position", 7.0 }, { "kind", 7.0 } });
    EXPECT_EQ(record.position, 7);
    EXPECT_EQ(record.kind, Record::Kind::sum);
}

TEST(SerderTest, CopyOfAStrategyDoesTheSame)
{
    serder::details::Strategy strategy = serder::details::Strategy::create(Derived::staticMetaObject);
    strategy = serder::default_serder_type<Record>::strategy;
    Record record;
    strategy.deserialize(&record, one("position", 4), Record::staticMetaObject);
    EXPECT_EQ(record.position, 4);
}

#include "facilities_serder_test.moc"
