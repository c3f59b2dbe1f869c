#include "till/framework/contract.h"

#include <atomic>
#include <thread>

namespace till {

namespace {

std::string nameOf(Side side)
{
    return side == Side::host ? "host" : "plug-in";
}

std::atomic<std::thread::id>& chequeThread()
{
    static std::atomic<std::thread::id> thread = std::this_thread::get_id();
    return thread;
}

// Asked for here so that it is the loading thread that is remembered, and not whichever happens to be checked first.
[[maybe_unused]] const std::thread::id loadingThread = chequeThread();

}

ContractBreach::ContractBreach(Side breakingSide, const std::string& breach)
    : std::logic_error("the " + nameOf(breakingSide) + " has broken the contract: " + breach)
    , side(breakingSide)
{
}

ContractBreach::ContractBreach(const ContractBreach& other) = default;
ContractBreach& ContractBreach::operator=(const ContractBreach& other) = default;
ContractBreach::~ContractBreach() = default;

Side ContractBreach::getSide() const
{
    return side;
}

void takeChequeThread()
{
    chequeThread() = std::this_thread::get_id();
}

void requireChequeThread(Side side, const char* operation)
{
    if (chequeThread() != std::this_thread::get_id()) {
        throw ContractBreach(side, std::string(operation) + " is called off the thread of cheque operations");
    }
}

}
