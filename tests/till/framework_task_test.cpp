#include "host/framework/task.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

TEST(Task, ResultIsEmptyAtFirst)
{
    const TaskResult result;

    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(result.data.isEmpty());
    EXPECT_EQ(result.error.ru(), QString());
    EXPECT_EQ(result.toString(), QString());
}

TEST(Task, CustomTaskRunsItsFunction)
{
    const auto result = QSharedPointer<TaskResult>::create();
    int runs = 0;
    CustomTask task([&] {
        ++runs;
        return result;
    });
    EXPECT_EQ(runs, 0);

    EXPECT_EQ(task.run(), result);
    EXPECT_EQ(runs, 1);
}

TEST(Task, HandlersGetTheResultInTheOrderOfTheirAdding)
{
    const auto result = QSharedPointer<TaskResult>::create();
    CustomTask task([] { return nullptr; });
    QList<int> calls;
    for (const int number : { 1, 2, 3 }) {
        task.addTaskResultHandler([&calls, &result, number](const QSharedPointer<TaskResult>& delivered) {
            EXPECT_EQ(delivered, result);
            calls.append(number);
        });
    }
    task.deliver(result);

    EXPECT_EQ(calls, (QList<int> { 1, 2, 3 }));
}

TEST(Task, HandlerAddedDuringDeliveryDoesNotRun)
{
    CustomTask task([] { return nullptr; });
    QStringList calls;
    task.addTaskResultHandler([&task, &calls](const auto&) {
        calls.append(QStringLiteral("first"));
        // Many, so that the task's list moves in memory.
        for (int number = 0; number < 100; ++number) {
            task.addTaskResultHandler([&calls](const auto&) { calls.append(QStringLiteral("late")); });
        }
    });
    task.addTaskResultHandler([&calls](const auto&) { calls.append(QStringLiteral("second")); });
    task.deliver(QSharedPointer<TaskResult>::create());

    EXPECT_EQ(calls, (QStringList { QStringLiteral("first"), QStringLiteral("second") }));
}

}
