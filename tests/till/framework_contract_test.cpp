#include "till/framework/contract.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace {

using till::ContractBreach;
using till::Side;

template <class Function>
std::string breachOf(Function function)
{
    try {
        function();
    } catch (const ContractBreach& breach) {
        return breach.what();
    }
    return {};
}

template <class Function>
void onAnotherThread(Function function)
{
    std::thread(function).join();
}

TEST(Contract, LoadingThreadIsTheChequeThread)
{
    EXPECT_NO_THROW(till::requireChequeThread(Side::host, "carryOut"));
}

TEST(Contract, BreachNamesTheSideAndTheOperation)
{
    onAnotherThread([] {
        EXPECT_EQ(breachOf([] { till::requireChequeThread(Side::host, "carryOut"); }),
                  "the host has broken the contract: carryOut is called off the thread of cheque operations");
        EXPECT_EQ(breachOf([] { till::requireChequeThread(Side::plugin, "subscribe"); }),
                  "the plug-in has broken the contract: subscribe is called off the thread of cheque operations");
    });
}

TEST(Contract, BreachTellsItsSide)
{
    EXPECT_EQ(ContractBreach(Side::host, "").getSide(), Side::host);
    EXPECT_EQ(ContractBreach(Side::plugin, "").getSide(), Side::plugin);
}

TEST(Contract, ChequeThreadCanBeTaken)
{
    onAnotherThread([] {
        till::takeChequeThread();
        EXPECT_NO_THROW(till::requireChequeThread(Side::host, "carryOut"));
    });
    EXPECT_THROW(till::requireChequeThread(Side::host, "carryOut"), ContractBreach);

    till::takeChequeThread();
    EXPECT_NO_THROW(till::requireChequeThread(Side::host, "carryOut"));
}

}
