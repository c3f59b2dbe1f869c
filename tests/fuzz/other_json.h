#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace fuzz {

/// JSON as another parser reads it; discarded when it is none. Two things that the product's parser takes are no fault:
/// tabs and line ends within texts count as blanks, and an escaped half of a surrogate pair as a letter.
[[nodiscard]] nlohmann::json otherJson(std::string_view text);

} // namespace fuzz
