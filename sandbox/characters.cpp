#include "sandbox/characters.h"

#include <algorithm>

namespace sandbox {

namespace {

/// The number of bytes that follow a first byte, or -1 when it cannot be one.
[[nodiscard]] int following(unsigned char first)
{
    if (first < 0x80) {
        return 0;
    }
    if (first >= 0xc2 && first < 0xe0) {
        return 1;
    }
    if (first >= 0xe0 && first < 0xf0) {
        return 2;
    }
    return first >= 0xf0 && first < 0xf5 ? 3 : -1;
}

}

bool isXmlCharacter(std::uint32_t character)
{
    return character == '\t' || character == '\n' || character == '\r' || (character >= 0x20 && character < 0xd800)
        || (character >= 0xe000 && character < 0xfffe) || (character >= 0x10000 && character < 0x110000);
}

bool isXmlText(std::string_view bytes)
{
    static constexpr std::uint32_t shortestOf[] = { 0, 0x80, 0x800, 0x10000 };
    std::size_t i = 0;
    while (i < bytes.size()) {
        const auto first = static_cast<unsigned char>(bytes[i++]);
        const int more = following(first);
        if (more < 0 || bytes.size() - i < static_cast<std::size_t>(more)) {
            return false;
        }
        std::uint32_t character = more == 0 ? first : first & (0x3fU >> static_cast<unsigned>(more));
        for (int n = 0; n < more; ++n) {
            const auto next = static_cast<unsigned char>(bytes[i++]);
            if ((next & 0xc0U) != 0x80U) {
                return false;
            }
            character = (character << 6U) | (next & 0x3fU);
        }
        if (character < shortestOf[more] || !isXmlCharacter(character)) {
            return false;
        }
    }
    return true;
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isBlank(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return isBlank(c); });
}

bool isNameStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':'
        || static_cast<unsigned char>(c) >= 0x80;
}

bool isNamePart(char c)
{
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

}
