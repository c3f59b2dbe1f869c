#pragma once

#include <stdexcept>
#include <string>

namespace sandbox {

/// A request that is refused: it has changed nothing, and the reply is a SOAP fault with this text, which the cashier
/// reads.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}
