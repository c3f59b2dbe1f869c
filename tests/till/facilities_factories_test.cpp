#include "host/facilities/config.h"
#include "host/facilities/current_time.h"

#include <gtest/gtest.h>

namespace {

class StoppedTime : public CurrentTime {
public:
    explicit StoppedTime(bool& destroyedFlag)
        : destroyed(destroyedFlag)
    {
    }

    ~StoppedTime() override
    {
        destroyed = true;
    }

    [[nodiscard]] QDateTime getCurrentTime() const override
    {
        return QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58));
    }

private:
    bool& destroyed;
};

class SubstituteConfig : public Config { };

} // namespace

TEST(MockFactoryTest, WithoutSubstituteEachCallGivesANewObject)
{
    ASSERT_EQ(MockFactory<CurrentTime>::mocked, nullptr);
    const QSharedPointer<CurrentTime> first = MockFactory<CurrentTime>::create();
    const QSharedPointer<CurrentTime> second = MockFactory<CurrentTime>::create();
    EXPECT_NE(first, second);
}

TEST(MockFactoryTest, SubstituteIsGivenOutAndNeverDeleted)
{
    bool destroyed = false;
    StoppedTime time(destroyed);
    MockFactory<CurrentTime>::mocked = &time;
    {
        const QSharedPointer<CurrentTime> given = MockFactory<CurrentTime>::create();
        EXPECT_EQ(given.data(), &time);
        EXPECT_EQ(given->getCurrentTime(), QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58)));
    }
    MockFactory<CurrentTime>::mocked = nullptr;
    EXPECT_FALSE(destroyed);
}

TEST(CurrentTimeTest, IsNowInTheTimeOfTheTill)
{
    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime now = MockFactory<CurrentTime>::create()->getCurrentTime();
    const QDateTime after = QDateTime::currentDateTime();
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
    EXPECT_EQ(now.timeSpec(), Qt::LocalTime);
}

TEST(SingletonTest, ObjectIsMadeOnFirstUseAndKept)
{
    Config* const former = Singleton<Config>::instance;
    Singleton<Config>::instance = nullptr;
    const QScopedPointer<Config> made(Singleton<Config>::get());
    EXPECT_NE(made.data(), nullptr);
    EXPECT_EQ(Singleton<Config>::instance, made.data());
    EXPECT_EQ(Singleton<Config>::get(), made.data());
    Singleton<Config>::instance = former;
}

TEST(SingletonTest, ObjectStoredBeforehandIsTheOne)
{
    Config* const former = Singleton<Config>::instance;
    SubstituteConfig substitute;
    Singleton<Config>::instance = &substitute;
    EXPECT_EQ(Singleton<Config>::get(), &substitute);
    Singleton<Config>::instance = former;
}
