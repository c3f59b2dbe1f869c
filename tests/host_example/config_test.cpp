#include "host/facilities/config.h"

#include <gtest/gtest.h>

// A class of the contract as the page shows it, seen from the other side of a library boundary.

namespace {

[[nodiscard]] std::string text(const char* key)
{
    return Singleton<Config>::get()->getString(QString::fromLatin1(key), QStringLiteral("default")).toStdString();
}

[[nodiscard]] int number(const char* key)
{
    return Singleton<Config>::get()->getInt(QString::fromLatin1(key), 7);
}

} // namespace

TEST(HostExampleConfig, IsMadeOnFirstUseAndOnce)
{
    Config* const first = Singleton<Config>::get();
    EXPECT_EQ(Singleton<Config>::instance, first);
    EXPECT_EQ(Singleton<Config>::get(), first);
}

TEST(HostExampleConfig, GivesWhatIsConfigured)
{
    EXPECT_EQ(text("Vantiro:hosts"), "https://first.example/,https://second.example/");
    EXPECT_EQ(number("Vantiro:timeout"), 3);
    EXPECT_TRUE(Singleton<Config>::get()->getBool(QStringLiteral("Vantiro:restoreLoyaltyState"), false));
}

TEST(HostExampleConfig, MissingKeyGivesTheDefault)
{
    EXPECT_EQ(text("Vantiro:user"), "default");
    EXPECT_EQ(number("Vantiro:noBonusForMinprice"), 7);
    EXPECT_TRUE(Singleton<Config>::get()->getBool(QStringLiteral("Vantiro:other"), true));
    EXPECT_FALSE(Singleton<Config>::get()->getBool(QStringLiteral("Vantiro:other"), false));
}

TEST(HostExampleConfig, ValueOfAnotherTypeGivesTheDefault)
{
    EXPECT_EQ(number("Vantiro:hosts"), 7);
    EXPECT_TRUE(Singleton<Config>::get()->getBool(QStringLiteral("Vantiro:timeout"), true));
    EXPECT_FALSE(Singleton<Config>::get()->getBool(QStringLiteral("Vantiro:timeout"), false));
}

TEST(HostExampleConfig, CanBeDerivedFromElsewhere)
{
    class Other : public Config {
    public:
        int getInt(const QString& /*key*/, int /*defaultValue*/) override
        {
            return 11;
        }
    };
    Other other;
    Config& config = other;
    EXPECT_EQ(config.getInt(QStringLiteral("Vantiro:timeout"), 7), 11);
    EXPECT_NE(dynamic_cast<Other*>(&config), nullptr);
}
