#include "host/facilities/finally.h"
#include "tests/support/log_recorder.h"

#include <gtest/gtest.h>

#include <stdexcept>

TEST(FinallyTest, RunsOnceAtTheEndOfTheScope)
{
    int runs = 0;
    {
        const Finally guard([&runs] { ++runs; });
        EXPECT_EQ(runs, 0);
    }
    EXPECT_EQ(runs, 1);
}

TEST(FinallyTest, RunsWhenTheScopeIsLeftByAnException)
{
    int runs = 0;
    const auto leave = [&runs] {
        const Finally guard([&runs] { ++runs; });
        throw std::runtime_error("leave");
    };
    EXPECT_THROW(leave(), std::runtime_error);
    EXPECT_EQ(runs, 1);
}

TEST(FinallyTest, RunsInReverseOrder)
{
    QString order;
    {
        const Finally first([&order] { order += u'1'; });
        const Finally second([&order] { order += u'2'; });
    }
    EXPECT_EQ(order, QStringLiteral("21"));
}

TEST(FinallyTest, ExceptionOfTheFunctionIsLoggedAndEndsThere)
{
    const LogRecorder log;
    EXPECT_NO_THROW({ const Finally guard([] { throw std::runtime_error("диск полон"); }); });
    EXPECT_EQ(log.of(QStringLiteral("till")),
              QStringList { QStringLiteral("error: Завершающее действие закончилось исключением: диск полон") });
}

TEST(FinallyTest, ThrownThingThatIsNoExceptionEndsThereToo)
{
    const LogRecorder log;
    EXPECT_NO_THROW({ const Finally guard([] { throw 1; }); });
    EXPECT_EQ(log.of(QStringLiteral("till")),
              QStringList { QStringLiteral("error: Завершающее действие закончилось исключением") });
}

TEST(FinallyTest, ExceptionOfTheFunctionDoesNotReplaceTheOneOnItsWay)
{
    const auto leave = [] {
        const Finally guard([] { throw std::runtime_error("second"); });
        throw std::logic_error("first");
    };
    EXPECT_THROW(leave(), std::logic_error);
}

TEST(FinallyTest, EmptyFunctionIsNothingToDo)
{
    const LogRecorder log;
    {
        const Finally guard(nullptr);
    }
    EXPECT_EQ(log.lines(), QStringList());
}
