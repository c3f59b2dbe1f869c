#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace fuzz {

/// The product's parser takes names with signs in them that names of XML may not have, as `a$b`. They are never names
/// that mean anything to us, so that is no harm, but other parsers refuse the whole text for it. Both functions write
/// such signs in another way, so that the rest of a text can be compared.
///
/// A name with every sign that a name may not have, and every byte beyond ASCII, in hexadecimal between underscores.
[[nodiscard]] std::string plainName(std::string_view name);

/// A text with the names of its tags and instructions made plain. Signs that the product's parser takes for the end of
/// a name stay as they are. In UTF-8.
[[nodiscard]] std::string withPlainNames(std::string_view text);
/// A text in UTF-8 whose first bytes, or whose declaration, tell of another encoding; nothing when they tell of none.
/// Empty when the bytes do not fit it, or nobody knows it.
[[nodiscard]] std::optional<std::string> fromOtherEncoding(std::string_view text);

} // namespace fuzz
