#include "host/facilities/config.h"
#include "tests/support/log_recorder.h"
#include "till/facilities/config_file.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <climits>
#include <thread>
#include <vector>

namespace {

class ConfigTest : public ::testing::Test {
protected:
    ~ConfigTest() override
    {
        till::setConfigFile(QString());
    }

    void configure(const QByteArray& content)
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
        file.close();
        till::setConfigFile(path());
    }

    [[nodiscard]] QString path() const
    {
        return folder.filePath(QStringLiteral("till.ini"));
    }

    [[nodiscard]] QString text(const char* name)
    {
        return config.getString(QStringLiteral("Vantiro:") + QLatin1String(name), QStringLiteral("default"));
    }

    [[nodiscard]] int number(const char* name)
    {
        return config.getInt(QStringLiteral("Vantiro:") + QLatin1String(name), 5);
    }

    QTemporaryDir folder;
    Config config;
};

} // namespace

TEST_F(ConfigTest, NothingConfiguredGivesDefaults)
{
    till::setConfigFile(QString());
    EXPECT_EQ(text("hosts"), QStringLiteral("default"));
    EXPECT_EQ(number("timeout"), 5);
    EXPECT_TRUE(config.getBool(QStringLiteral("Vantiro:flag"), true));
    EXPECT_FALSE(config.getBool(QStringLiteral("Vantiro:flag"), false));
}

TEST_F(ConfigTest, MissingFileGivesDefaultsAndIsLogged)
{
    const LogRecorder log;
    till::setConfigFile(QStringLiteral("/nonexistent/till.ini"));
    EXPECT_EQ(text("hosts"), QStringLiteral("default"));
    EXPECT_EQ(log.of(QStringLiteral("till/config")),
              QStringList {
                  QStringLiteral("error: Нет файла настроек /nonexistent/till.ini, действуют значения по умолчанию") });
}

TEST_F(ConfigTest, FolderInPlaceOfAFileGivesDefaults)
{
    till::setConfigFile(folder.path());
    EXPECT_EQ(text("hosts"), QStringLiteral("default"));
}

TEST_F(ConfigTest, AnotherFileForgetsTheFormerOne)
{
    configure("[Vantiro]\nuser=shop\n");
    ASSERT_EQ(text("user"), QStringLiteral("shop"));
    till::setConfigFile(QString());
    EXPECT_EQ(text("user"), QStringLiteral("default"));
}

namespace {

struct Line {
    const char* line;
    const char* value;
};

class ConfigTextTest : public ConfigTest, public ::testing::WithParamInterface<Line> { };

} // namespace

TEST_P(ConfigTextTest, ValueComesOutAsItStands)
{
    const LogRecorder log;
    configure(QByteArray("[Vantiro]\n") + GetParam().line + "\n");
    EXPECT_EQ(text("name"), QString::fromUtf8(GetParam().value));
    EXPECT_EQ(log.lines(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ConfigTextTest,
    ::testing::Values(Line { "name=value", "value" }, //
                      Line { "name = value ", "value" }, //
                      Line { "\tname\t=\tvalue\t", "value" }, //
                      Line { "name=value\r", "value" }, // lines of another system
                      Line { "name=", "" }, // configured as empty, which is not the default
                      Line { "name=\"\"", "" }, //
                      Line { "name=a,,b", "a,,b" }, // an empty part holds its place among the servers
                      Line { "name=a, b ,c", "a, b ,c" }, //
                      Line { "name=,a,", ",a," }, //
                      Line { "name=\" http://a,http://b \"", " http://a,http://b " }, // blanks stay inside quotes
                      Line { "name=http://h/?a=1;b=2#c", "http://h/?a=1;b=2#c" }, //
                      Line { "name=http://h/%20%41", "http://h/%20%41" }, //
                      Line { "name=a\\b\\n\\x41", "a\\b\\n\\x41" }, //
                      Line { "name=a\"b", "a\"b" }, //
                      Line { "name=\"a", "\"a" }, //
                      Line { "name=\"", "\"" }, //
                      Line { "name=\"a\",\"b\"", "a\",\"b" }, // only the outer pair counts
                      Line { "name=\"\"a\"\"", "\"a\"" }, //
                      Line { "name=@Invalid()", "@Invalid()" }, //
                      Line { "name=a=b==", "a=b==" }, //
                      Line { "name=пароль №1 💳", "пароль №1 💳" }, //
                      Line { "name=\xC2\xA0x\xC2\xA0", "\xC2\xA0x\xC2\xA0" }, // only plain blanks are taken off
                      Line { "name=first\nname=last", "last" }, //
                      Line { "# name=remark\n; name=remark\n  # x\n\nname=value", "value" }, //
                      Line { "[Other]\nname=other\n[Vantiro]\nname=value\n[Third]\nname=third", "value" }, //
                      Line { "[ Other ]\nname=x\n [ Vantiro ] \nname=value", "value" }));

TEST_F(ConfigTest, ByteOrderMarkIsNoPartOfTheFile)
{
    configure("\xEF\xBB\xBF[Vantiro]\nuser=shop\n");
    EXPECT_EQ(text("user"), QStringLiteral("shop"));
}

TEST_F(ConfigTest, LastLineNeedsNoEnd)
{
    configure("[Vantiro]\nuser=shop");
    EXPECT_EQ(text("user"), QStringLiteral("shop"));
}

TEST_F(ConfigTest, NamesAreExact)
{
    configure("[Vantiro]\nuser=shop\n");
    EXPECT_EQ(text("User"), QStringLiteral("default"));
    EXPECT_EQ(config.getString(QStringLiteral("vantiro:user"), QStringLiteral("default")), QStringLiteral("default"));
    EXPECT_EQ(config.getString(QStringLiteral("user"), QStringLiteral("default")), QStringLiteral("default"));
}

TEST_F(ConfigTest, KeyWithoutSectionStandsAboveAllSections)
{
    configure("user=shop\n[Vantiro]\nx=y\n");
    EXPECT_EQ(config.getString(QStringLiteral("user"), QString()), QStringLiteral("shop"));
}

TEST_F(ConfigTest, DamagedLineIsLoggedByNumberAndTheRestHolds)
{
    const LogRecorder log;
    configure("[Vantiro]\npassword secret\nuser=shop\n=x\n");
    EXPECT_EQ(text("user"), QStringLiteral("shop"));
    EXPECT_EQ(log.of(QStringLiteral("till/config")),
              (QStringList { QStringLiteral("error: Не разобрана и не действует строка 2 файла настроек"),
                             QStringLiteral("error: Не разобрана и не действует строка 4 файла настроек") }));
}

TEST_F(ConfigTest, ValueInAnotherEncodingIsRefused)
{
    const LogRecorder log;
    configure("[Vantiro]\npassword=\xEF\xE0\xF0\xEE\xEB\xFC\nuser=shop\n");
    EXPECT_EQ(text("password"), QStringLiteral("default"));
    EXPECT_EQ(text("user"), QStringLiteral("shop"));
    EXPECT_EQ(log.of(QStringLiteral("till/config")),
              QStringList { QStringLiteral("error: Не разобрана и не действует строка 2 файла настроек") });
}

TEST_F(ConfigTest, DamagedSectionHeadDoesNotLendItsValuesToTheOneBefore)
{
    configure("[Vantiro]\nuser=shop\n[Other\nuser=other\n[Third]\nuser=third\n");
    EXPECT_EQ(text("user"), QStringLiteral("shop"));
    EXPECT_EQ(config.getString(QStringLiteral("Third:user"), QString()), QStringLiteral("third"));
}

namespace {

struct Number {
    const char* text;
    int value;
};

class ConfigNumberTest : public ConfigTest, public ::testing::WithParamInterface<Number> { };

} // namespace

TEST_P(ConfigNumberTest, IntegerOrDefault)
{
    configure(QByteArray("[Vantiro]\ntimeout=") + GetParam().text + "\n");
    EXPECT_EQ(number("timeout"), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Integers, ConfigNumberTest,
                         ::testing::Values(Number { "7", 7 }, Number { "0", 0 }, Number { "-1", -1 },
                                           Number { "\"7\"", 7 }, Number { "010", 10 },
                                           Number { "2147483647", INT_MAX }, Number { "-2147483648", INT_MIN },
                                           // no integers: the default 5
                                           Number { "", 5 }, Number { "7s", 5 }, Number { "7.0", 5 },
                                           Number { "0x10", 5 }, Number { "2147483648", 5 }, Number { "7,8", 5 },
                                           Number { "true", 5 }));

TEST_F(ConfigTest, ValueThatIsNoIntegerIsLoggedByItsKey)
{
    configure("[Vantiro]\ntimeout=7s\n");
    const LogRecorder log;
    EXPECT_EQ(number("timeout"), 5);
    EXPECT_EQ(log.of(QStringLiteral("till/config")),
              QStringList {
                  QStringLiteral("error: Настройка Vantiro:timeout не целое число, действует значение по умолчанию") });
}

namespace {

struct Flag {
    const char* text;
    bool whenDefaultIsFalse;
    bool whenDefaultIsTrue;
};

class ConfigFlagTest : public ConfigTest, public ::testing::WithParamInterface<Flag> { };

} // namespace

TEST_P(ConfigFlagTest, BooleanOrDefault)
{
    configure(QByteArray("[Vantiro]\nflag=") + GetParam().text + "\n");
    EXPECT_EQ(config.getBool(QStringLiteral("Vantiro:flag"), false), GetParam().whenDefaultIsFalse);
    EXPECT_EQ(config.getBool(QStringLiteral("Vantiro:flag"), true), GetParam().whenDefaultIsTrue);
}

INSTANTIATE_TEST_SUITE_P(Booleans, ConfigFlagTest,
                         ::testing::Values(Flag { "true", true, true }, Flag { "True", true, true },
                                           Flag { "1", true, true }, Flag { "yes", true, true },
                                           Flag { "ON", true, true }, Flag { "false", false, false },
                                           Flag { "FALSE", false, false }, Flag { "0", false, false },
                                           Flag { "no", false, false }, Flag { "off", false, false },
                                           // neither: the default
                                           Flag { "", false, true }, Flag { "2", false, true },
                                           Flag { "maybe", false, true }));

TEST_F(ConfigTest, ValueThatIsNoBooleanIsLoggedByItsKey)
{
    configure("[Vantiro]\nflag=maybe\n");
    const LogRecorder log;
    EXPECT_TRUE(config.getBool(QStringLiteral("Vantiro:flag"), true));
    EXPECT_EQ(log.of(QStringLiteral("till/config")),
              QStringList {
                  QStringLiteral("error: Настройка Vantiro:flag не да и не нет, действует значение по умолчанию") });
}

TEST_F(ConfigTest, ReadersSeeOneFileOrTheOther)
{
    configure("[Vantiro]\nuser=shop\n");
    std::vector<std::thread> readers;
    std::vector<int> wrong(3);
    for (int& count : wrong) {
        readers.emplace_back([this, &count] {
            for (int i = 0; i < 2000; ++i) {
                const QString user = text("user");
                count += user == QStringLiteral("shop") || user == QStringLiteral("default") ? 0 : 1;
            }
        });
    }
    for (int i = 0; i < 100; ++i) {
        till::setConfigFile(i % 2 == 0 ? QString() : path());
    }
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(wrong, (std::vector<int> { 0, 0, 0 }));
}
