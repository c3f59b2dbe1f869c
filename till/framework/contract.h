#pragma once

#include "host/export.h"

#include <stdexcept>
#include <string>

namespace till {

/// The two that are bound by the contract.
enum class Side { host, plugin };

/// One side has called the other in a way that the contract forbids. It is a bug of that side, never a condition to
/// recover from: no hook and no part of the till catches it by name. [any-thread]
class VANTIRO_HOST_API ContractBreach : public std::logic_error {
public:
    /// `what()` names the side and then the breach.
    ContractBreach(Side breakingSide, const std::string& breach);
    ContractBreach(const ContractBreach& other);
    ContractBreach& operator=(const ContractBreach& other);
    ~ContractBreach() override;

    [[nodiscard]] Side getSide() const;

private:
    Side side;
};

/// Makes the calling thread the thread of cheque operations. Until it is called, that is the thread that has loaded the
/// till. [any-thread]
VANTIRO_HOST_API void takeChequeThread();

/// Throws `ContractBreach` of the side unless it is called on the thread of cheque operations. [any-thread]
VANTIRO_HOST_API void requireChequeThread(Side side, const char* operation);

}
