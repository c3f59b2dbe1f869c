#include "tests/fuzz/other_json.h"

#include <algorithm>

namespace fuzz {

nlohmann::json otherJson(std::string_view text)
{
    std::string plain(text);
    std::ranges::replace_if(
        plain, [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
    for (std::size_t at = plain.find('\\'); at != std::string::npos; at = plain.find('\\', at + 2)) {
        const std::string_view escape = std::string_view(plain).substr(at, 4);
        const bool isHalf = escape.size() == 4 && escape[1] == 'u' && (escape[2] == 'd' || escape[2] == 'D')
            && std::string_view("89abcdefABCDEF").find(escape[3]) != std::string_view::npos;
        if (isHalf) {
            plain[at + 2] = '0';
        }
    }
    return nlohmann::json::parse(plain, nullptr, false);
}

} // namespace fuzz
