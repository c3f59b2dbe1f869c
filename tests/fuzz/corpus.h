#pragma once

#include "tests/fuzz/target.h"

#include <string>
#include <string_view>
#include <vector>

/// The files beside the targets.
namespace fuzz {

/// An input that is kept. A plain value.
struct KeptInput {
    const Target* target = nullptr;
    std::string name; // "seeds/balance/comma.xml"
    std::string text;
};

/// All seeds, and all that was ever found, of all targets, in the order of their names. An unknown folder among them is
/// a mistake: throws `std::invalid_argument`.
[[nodiscard]] const std::vector<KeptInput>& keptInputs();

/// The input of that name; throws `std::invalid_argument` when there is none.
[[nodiscard]] const KeptInput& keptInput(std::string_view name);

} // namespace fuzz
