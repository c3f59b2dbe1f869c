#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Texts of the rule file with names in braces, as in "Баланс {balance}".
namespace sandbox {

using Placeholders = std::map<std::string, std::string, std::less<>>;

/// The names in braces, in order. [any-thread]
[[nodiscard]] std::vector<std::string> placeholdersOf(std::string_view text);

/// The text with every name replaced by its value, in one step: braces inside a value stay what they are. A name
/// without a value stays as well. [any-thread]
[[nodiscard]] std::string filled(std::string_view text, const Placeholders& values);

/// What may stand in a message and in a slip. [any-thread]
[[nodiscard]] const std::vector<std::string>& messagePlaceholders();
[[nodiscard]] const std::vector<std::string>& slipPlaceholders();

}
