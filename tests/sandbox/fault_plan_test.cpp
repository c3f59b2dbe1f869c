#include "sandbox/fault_plan.h"

#include <gtest/gtest.h>

using sandbox::FaultKind;
using sandbox::parseFault;

namespace {

[[nodiscard]] std::string mistake(const std::string& text)
{
    try {
        static_cast<void>(parseFault(text));
    } catch (const sandbox::FaultMistake& found) {
        return found.what();
    }
    return {};
}

}

TEST(FaultPlan, PartsMayBeLeftOut)
{
    EXPECT_EQ(parseFault("delay").kind, FaultKind::delay);
    EXPECT_EQ(parseFault("delay").number(), 3000);
    EXPECT_EQ(parseFault("delay:::250").number(), 250);
    EXPECT_FALSE(parseFault("delay:::250").times.has_value());
    EXPECT_EQ(parseFault("drop:Accrual").operation, "Accrual");
    EXPECT_EQ(parseFault("drop:*:3").operation, "");
    EXPECT_EQ(parseFault("drop:*:3").times, 3);
}

TEST(FaultPlan, TextsMayHoldColons)
{
    EXPECT_EQ(parseFault("500:Accrual:1:Ошибка: сервер").argument, "Ошибка: сервер");
}

TEST(FaultPlan, MistakesSayWhatToWrite)
{
    EXPECT_EQ(
        mistake("explode"),
        "unknown fault \"explode\"; known are refuse, silence, delay, reset, drop, 404, 503, 500, prefix, truncated, "
        "not-xml, giant, nested");
    EXPECT_EQ(mistake("drop:Sale"),
              "unknown operation \"Sale\" in fault \"drop:Sale\"; write one of the service, such as Accrual, or * for "
              "every one");
    EXPECT_EQ(mistake("drop::0"), "TIMES of fault \"drop::0\" must be a whole number from 1, or empty for always");
    EXPECT_EQ(mistake("drop::x"), "TIMES of fault \"drop::x\" must be a whole number from 1, or empty for always");
    EXPECT_EQ(mistake("delay:::soon"), "ARG of fault \"delay:::soon\" must be a whole number from 1");
    EXPECT_EQ(mistake("drop:::1"), "fault \"drop\" takes no ARG; leave \"1\" out");
    EXPECT_EQ(mistake("refuse:Accrual"),
              "fault \"refuse\" takes neither OPERATION nor TIMES: connections are refused before anything is asked");
    EXPECT_EQ(mistake("").substr(0, 16), "unknown fault \"\"");
}

TEST(FaultPlan, FirstFittingFaultIsTakenAndUsedUp)
{
    sandbox::FaultPlan plan;
    plan.add(parseFault("drop:Accrual:1"));
    plan.add(parseFault("503::2"));
    EXPECT_EQ(plan.take("Ping")->kind, FaultKind::status503);
    EXPECT_EQ(plan.take("Accrual")->kind, FaultKind::drop);
    EXPECT_EQ(plan.take("Accrual")->kind, FaultKind::status503);
    EXPECT_FALSE(plan.take("Accrual").has_value());
}

TEST(FaultPlan, RefusalIsNoFaultOfARequest)
{
    sandbox::FaultPlan plan;
    EXPECT_FALSE(plan.refusesConnections());
    const auto id = plan.add(parseFault("refuse"));
    EXPECT_TRUE(plan.refusesConnections());
    EXPECT_FALSE(plan.take("Ping").has_value());
    EXPECT_TRUE(plan.remove(id));
    EXPECT_FALSE(plan.remove(id));
    EXPECT_FALSE(plan.refusesConnections());
}
