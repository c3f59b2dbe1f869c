#pragma once

#include <cstdint>
#include <string_view>

namespace sandbox {

/// Whether XML allows the character at all. [any-thread]
[[nodiscard]] bool isXmlCharacter(std::uint32_t character);

/// Whether the bytes are UTF-8, in its shortest forms, of characters that XML allows. [any-thread]
[[nodiscard]] bool isXmlText(std::string_view bytes);

[[nodiscard]] bool isBlank(char c);
[[nodiscard]] bool isBlank(std::string_view text);

/// Characters of names, taking every one beyond ASCII as a letter. [any-thread]
[[nodiscard]] bool isNameStart(char c);
[[nodiscard]] bool isNamePart(char c);

}
